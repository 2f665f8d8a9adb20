#include "doctor/doctor.h"

#include <QTest>

#include <algorithm>

using namespace tockwise;

namespace {

QString text(const char* latin1) {
  return QString::fromLatin1(latin1);
}

/// A desktop on which everything works.
DesktopFacts goodDesktop() {
  DesktopFacts facts;
  facts.applicationRuns = true;
  facts.display = true;
  facts.sessionBus = true;
  facts.trayKind = text("StatusNotifierItem");
  facts.notifications = {true, true, text("dunst 1.9.0")};
  facts.hotKeys = {true, true, text("X11"), {}};
  facts.hotKeys.states.fill(HotKeys::State::Registered);
  facts.secretStore = SecretStore::State::Available;
  facts.loginItemWanted = true;
  facts.loginItemPresent = true;
  const FolderFacts folder{text("/home/tea"), true, true, false, qint64(1) << 30};
  facts.store.file = text("/home/tea/store.plist");
  facts.store.folder = folder;
  facts.store.backups = folder;
  facts.store.lastBackup = text("Sat 11/21/2026 08:00 AM");
  facts.timeZone = text("Europe/Berlin");
  facts.timeZoneKnown = true;
  return facts;
}

using Change = void (*)(DesktopFacts&);

QStringList failing(const DesktopFacts& facts) {
  QStringList names;
  for (const DesktopCheck& check : diagnose(facts)) {
    if (!check.ok)
      names += check.name;
  }
  return names;
}

DesktopCheck check(const DesktopFacts& facts, const char* name) {
  for (const DesktopCheck& each : diagnose(facts)) {
    if (each.name == text(name))
      return each;
  }
  return {};
}

} // namespace

Q_DECLARE_METATYPE(Change)

class DoctorTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aDesktopWithEverythingPassesEveryCheckInItsOrder() {
    QStringList names;
    for (const DesktopCheck& each : diagnose(goodDesktop())) {
      names += each.name;
      QVERIFY2(each.ok, qPrintable(each.name + text(": ") + each.detail));
    }
    QCOMPARE(names, QStringList({text("tray host"), text("session bus"),
                                 text("notification service"), text("sound"), text("hot keys"),
                                 text("secret service"), text("autostart"), text("store writable"),
                                 text("last backup"), text("time zone")}));
  }

  void whatIsMissingFailsItsOwnCheckOnly_data() {
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* title, Change change, const char* name) {
      QTest::newRow(title) << change << text(name);
    };
    row(
        "tray", [](DesktopFacts& f) { f.trayKind.clear(); }, "tray host");
    row(
        "bus", [](DesktopFacts& f) { f.sessionBus = false; }, "session bus");
    row(
        "notifications", [](DesktopFacts& f) { f.notifications = {}; }, "notification service");
    row(
        "sound", [](DesktopFacts& f) { f.soundProblem = text("No card."); }, "sound");
    row(
        "taken", [](DesktopFacts& f) { f.hotKeys.states[1] = HotKeys::State::Taken; }, "hot keys");
    row(
        "no keys", [](DesktopFacts& f) { f.hotKeys.available = false; }, "hot keys");
    row(
        "pending", [](DesktopFacts& f) { f.hotKeys.states.fill(HotKeys::State::Pending); },
        "hot keys");
    row(
        "locked", [](DesktopFacts& f) { f.secretStore = SecretStore::State::Locked; },
        "secret service");
    row(
        "no secrets", [](DesktopFacts& f) { f.secretStore = SecretStore::State::NotAvailable; },
        "secret service");
    row(
        "entry missing", [](DesktopFacts& f) { f.loginItemPresent = false; }, "autostart");
    row(
        "entry too many", [](DesktopFacts& f) { f.loginItemWanted = false; }, "autostart");
    row(
        "read-only", [](DesktopFacts& f) { f.store.folder.diskIsReadOnly = true; },
        "store writable");
    row(
        "failure", [](DesktopFacts& f) { f.store.failure = text("No such file"); },
        "store writable");
    row(
        "held", [](DesktopFacts& f) { f.store.held = true; }, "store writable");
    row(
        "damage", [](DesktopFacts& f) { f.store.damage = text("It is damaged."); },
        "store writable");
    row(
        "backups", [](DesktopFacts& f) { f.store.backups.mayWrite = false; }, "last backup");
    row(
        "zone", [](DesktopFacts& f) { f.timeZoneKnown = false; }, "time zone");
  }
  void whatIsMissingFailsItsOwnCheckOnly() {
    QFETCH(const Change, change);
    QFETCH(const QString, name);
    DesktopFacts facts = goodDesktop();
    change(facts);
    QCOMPARE(failing(facts), QStringList{name});
  }

  void everyFailureHasARemedyAndEveryLineIsOneSentenceAtLeast() {
    for (const DesktopFacts& facts : {goodDesktop(), DesktopFacts()}) {
      for (const DesktopCheck& each : diagnose(facts)) {
        QVERIFY2(!each.detail.isEmpty(), qPrintable(each.name));
        QCOMPARE(each.remedy.isEmpty(), each.ok);
        QVERIFY2(!each.detail.contains(u'\n') && !each.remedy.contains(u'\n'),
                 qPrintable(each.name));
      }
    }
  }

  void hotKeysThatAreSwitchedOffAreWellWhateverTheDesktop() {
    DesktopFacts facts = goodDesktop();
    facts.hotKeys = {};
    QVERIFY(check(facts, "hot keys").ok);
  }

  void keysThatAreTakenAreNamed() {
    DesktopFacts facts = goodDesktop();
    facts.hotKeys.states = {HotKeys::State::Registered, HotKeys::State::Taken,
                            HotKeys::State::Registered, HotKeys::State::Taken};
    QCOMPARE(check(facts, "hot keys").detail,
             text("Another program has Ctrl+Super+S, Ctrl+Super+P."));
  }

  void aDesktopWithoutHotKeysSaysWhy() {
    DesktopFacts facts = goodDesktop();
    facts.hotKeys.available = false;
    facts.hotKeys.detail = text("it has no portal, it has no KGlobalAccel");
    QCOMPARE(check(facts, "hot keys").detail,
             text("This desktop gives programs no hot keys (it has no portal, it has no "
                  "KGlobalAccel)."));
    facts.hotKeys.detail.clear();
    QCOMPARE(check(facts, "hot keys").detail, text("This desktop gives programs no hot keys."));
  }

  void withoutAnApplicationTheKeysWaitForIt() {
    DesktopFacts facts = goodDesktop();
    facts.applicationRuns = false;
    facts.hotKeys.states.fill(HotKeys::State::Off);
    QVERIFY(check(facts, "hot keys").ok);
  }

  void aServiceThatIsStartedWhenNeededIsWell() {
    DesktopFacts facts = goodDesktop();
    facts.notifications = {false, true, {}};
    QVERIFY(check(facts, "notification service").ok);
  }

  void whyNothingCanBeWrittenIsSaid_data() {
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("detail");
    const auto row = [](const char* title, Change change, const char* detail) {
      QTest::newRow(title) << change << text(detail);
    };
    row(
        "no folder", [](DesktopFacts& f) { f.store.folder.isFolder = false; },
        "/home/tea is no folder.");
    row(
        "no permission", [](DesktopFacts& f) { f.store.folder.mayWrite = false; },
        "You may not write in /home/tea.");
    row(
        "read-only", [](DesktopFacts& f) { f.store.folder.diskIsReadOnly = true; },
        "The disk of /home/tea is read-only.");
    row(
        "full", [](DesktopFacts& f) { f.store.folder.bytesAvailable = 5 * 1024 * 1024 - 1; },
        "The disk of /home/tea is full.");
    row(
        "just enough", [](DesktopFacts& f) { f.store.folder.bytesAvailable = 5 * 1024 * 1024; },
        "/home/tea/store.plist can be written.");
    row(
        "not known", [](DesktopFacts& f) { f.store.folder.bytesAvailable = -1; },
        "/home/tea/store.plist can be written.");
    row(
        "the store's own words come first",
        [](DesktopFacts& f) {
          f.store.folder.mayWrite = false;
          f.store.failure = text("store.plist: Input/output error");
        },
        "store.plist: Input/output error.");
  }
  void whyNothingCanBeWrittenIsSaid() {
    QFETCH(const Change, change);
    DesktopFacts facts = goodDesktop();
    change(facts);
    QTEST(check(facts, "store writable").detail, "detail");
  }

  void aNewStoreHasNoBackupYetAndThatIsWell() {
    DesktopFacts facts = goodDesktop();
    facts.store.lastBackup.clear();
    QVERIFY(check(facts, "last backup").ok);
  }
};

QTEST_GUILESS_MAIN(DoctorTest)
#include "doctor_test.moc"
