#include "platform/autostart_entry.h"
#include "platform/autostart_login_items.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gio/gdesktopappinfo.h>
#include <sys/stat.h>

using namespace tockwise;

namespace {

const QString kOwn = QStringLiteral("com.quillstone.Tockwise.desktop");

void writeFile(const QString& path, const QByteArray& bytes) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
  file.write(bytes);
}

QByteArray readFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void makeProgram(const QString& path) {
  writeFile(path, "#!/bin/sh\n: > \"$MARKER\"\n");
  QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// Folders of the user and of the system, and an installed program.
struct Home {
  QTemporaryDir folder;
  QString user = path("config/autostart");
  QString system = path("etc/xdg/autostart");
  QString program = path("opt/tockwise/bin/tockwise");

  Home() {
    makeProgram(program);
    QDir().mkpath(path("bin"));
  }
  QString path(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }
  AutostartLoginItems items() const { return items(program); }
  AutostartLoginItems items(const QString& started) const {
    return {{user, {system}, {path("bin")}, {path("bin")}, {QStringLiteral("XFCE")}}, started};
  }
  QString entry(const QString& name = kOwn) const { return user + u'/' + name; }
  void writeEntry(const QString& where, const QString& exec, const char* more = "") const {
    writeFile(where,
              "[Desktop Entry]\nType=Application\nName=X\nExec=" + exec.toUtf8() + '\n' + more);
  }
};

} // namespace

class AutostartLoginItemsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void nothingIsPresentWithoutFolders();
  void addingMakesOneEntryThatIsPresent();
  void addingAgainWritesNothing();
  void addingLeavesAnEntryOfTheUsersOwnAlone();
  void addingMendsAnEntryWhoseProgramMoved();
  void addingTakesTheNameOfAnInstalledProgram();
  void addingReplacesALinkAndNotWhatItLeadsTo();
  void addingFailsWhereTheFolderCannotBeMade();
  void theSessionStartsProgramsOfAwkwardNames_data();
  void theSessionStartsProgramsOfAwkwardNames();
  void entriesThatStartNothingDoNotCount_data();
  void entriesThatStartNothingDoNotCount();
  void entriesThatStartThisProgramCount_data();
  void entriesThatStartThisProgramCount();
  void removingTakesEveryDuplicate();
  void removingTakesALinkAndNotWhatItLeadsTo();
  void removingTakesAnOwnEntryWhoseProgramMoved();
  void removingWithoutEntriesDoesNothing();
  void foreignEntriesStayAsTheyAre_data();
  void foreignEntriesStayAsTheyAre();
  void entriesOfTheSystemAreHidden();
  void entriesOfTheSystemStayAsTheyAreWithoutUs();
  void addingComesBackFromHiding();
  void aPipeIsNotWaitedFor();
};

void AutostartLoginItemsTest::nothingIsPresentWithoutFolders() {
  const Home home;
  QVERIFY(!home.items().isPresent());
}

void AutostartLoginItemsTest::addingMakesOneEntryThatIsPresent() {
  const Home home;
  QVERIFY(home.items().add().ok());
  QVERIFY(home.items().isPresent());
  QCOMPARE(QDir(home.user).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
           QStringList(kOwn));
  QCOMPARE(QFile::permissions(home.entry()) & (QFile::WriteOther | QFile::WriteGroup),
           QFile::Permissions());
}

void AutostartLoginItemsTest::addingAgainWritesNothing() {
  const Home home;
  QVERIFY(home.items().add().ok());
  const QByteArray changed = readFile(home.entry()) + "X-GNOME-Autostart-Delay=10\n";
  writeFile(home.entry(), changed);
  QVERIFY(home.items().add().ok());
  QCOMPARE(readFile(home.entry()), changed);
}

void AutostartLoginItemsTest::addingLeavesAnEntryOfTheUsersOwnAlone() {
  const Home home;
  home.writeEntry(home.entry(QStringLiteral("mine.desktop")), home.program);
  QVERIFY(home.items().add().ok());
  QVERIFY2(!QFile::exists(home.entry()), "it would be started twice");
}

void AutostartLoginItemsTest::addingMendsAnEntryWhoseProgramMoved() {
  const Home home;
  const QString old = home.path("old/tockwise");
  makeProgram(old);
  QVERIFY(home.items(old).add().ok());
  QFile::remove(old);
  QVERIFY(!home.items().isPresent());
  QVERIFY(home.items().add().ok());
  QVERIFY(home.items().isPresent());
  QVERIFY(!readFile(home.entry()).contains(old.toUtf8()));
}

void AutostartLoginItemsTest::addingTakesTheNameOfAnInstalledProgram() {
  const Home home;
  QVERIFY(QFile::link(home.program, home.path("bin/tockwise")));
  QVERIFY(home.items().add().ok());
  QVERIFY(readFile(home.entry()).contains("\nExec=tockwise\n"));
  QVERIFY(home.items().isPresent());
  QFile::remove(home.path("bin/tockwise"));
  QVERIFY(!home.items().isPresent());
}

void AutostartLoginItemsTest::addingReplacesALinkAndNotWhatItLeadsTo() {
  const Home home;
  const QString target = home.path("share/entry.desktop");
  home.writeEntry(target, QStringLiteral("/usr/bin/other"));
  const QByteArray before = readFile(target);
  QDir().mkpath(home.user);
  QVERIFY(QFile::link(target, home.entry()));
  QVERIFY(home.items().add().ok());
  QVERIFY(!QFileInfo(home.entry()).isSymLink());
  QVERIFY(home.items().isPresent());
  QCOMPARE(readFile(target), before);
}

void AutostartLoginItemsTest::addingFailsWhereTheFolderCannotBeMade() {
  const Home home;
  writeFile(home.path("config"), "a file in the way");
  const auto added = home.items().add();
  QVERIFY(!added.ok());
  QCOMPARE(added.error().kind, Error::Kind::Storage);
  QVERIFY(added.error().message.contains(home.user));
  QVERIFY(!home.items().isPresent());
}

void AutostartLoginItemsTest::theSessionStartsProgramsOfAwkwardNames_data() {
  QTest::addColumn<QString>("name");
  for (const char* name :
       {"plain", "with blanks", " blank in front", "100%", "%U", "%%f", "quote\"quote",
        "apostrophe's", "back\\slash", "back\\\\slashes", "dollar$HOME", "back`tick`", "semi;colon",
        "a&b|c<d>e(f)g*h?i#j~k", "tab\tline\nend", "größer", "a=b"})
    QTest::newRow(name) << QString::fromUtf8(name);
}

// As GIO takes an entry apart, which GNOME and others start them with.
void AutostartLoginItemsTest::theSessionStartsProgramsOfAwkwardNames() {
  QFETCH(const QString, name);
  const Home home;
  const QString program = home.folder.filePath(QStringLiteral("a folder/") + name);
  makeProgram(program);
  QVERIFY(home.items(program).add().ok());
  QVERIFY(home.items(program).isPresent());
  GDesktopAppInfo* info =
      g_desktop_app_info_new_from_filename(QFile::encodeName(home.entry()).constData());
  QVERIFY(info);
  const QString marker = home.path("started");
  qputenv("MARKER", QFile::encodeName(marker));
  GError* error = nullptr;
  const bool started = g_app_info_launch(G_APP_INFO(info), nullptr, nullptr, &error);
  QVERIFY2(started, error ? error->message : "");
  g_object_unref(info);
  QTRY_VERIFY(QFile::exists(marker));
  QVERIFY(home.items(program).remove().ok());
  QVERIFY(!QFile::exists(home.entry()));
}

void AutostartLoginItemsTest::entriesThatStartNothingDoNotCount_data() {
  QTest::addColumn<QString>("exec");
  QTest::addColumn<QByteArray>("more");
  const QString us = QStringLiteral("US");
  QTest::newRow("hidden") << us << QByteArray("Hidden=true\n");
  QTest::newRow("switched off") << us << QByteArray("X-GNOME-Autostart-enabled=false\n");
  QTest::newRow("not installed") << us << QByteArray("TryExec=/nowhere/tockwise\n");
  QTest::newRow("not in the path") << us << QByteArray("TryExec=no-such-program\n");
  QTest::newRow("for others") << us << QByteArray("OnlyShowIn=GNOME;KDE;\n");
  QTest::newRow("not for this one") << us << QByteArray("NotShowIn=KDE;XFCE;\n");
  QTest::newRow("an open quote") << QStringLiteral("\"US") << QByteArray();
  QTest::newRow("nothing") << QString() << QByteArray();
  QTest::newRow("a command") << QStringLiteral("US quit") << QByteArray();
  QTest::newRow("another folder") << QStringLiteral("/elsewhere/tockwise") << QByteArray();
  QTest::newRow("another group") << QString() << QByteArray("[Desktop Action x]\nExec=US\n");
}

void AutostartLoginItemsTest::entriesThatStartNothingDoNotCount() {
  QFETCH(QString, exec);
  QFETCH(QByteArray, more);
  const Home home;
  more.replace("US", home.program.toUtf8());
  home.writeEntry(home.entry(), exec.replace(QStringLiteral("US"), home.program), more.constData());
  QVERIFY(!home.items().isPresent());
  QVERIFY(home.items().add().ok());
  QVERIFY(home.items().isPresent());
}

void AutostartLoginItemsTest::entriesThatStartThisProgramCount_data() {
  QTest::addColumn<QString>("exec");
  QTest::addColumn<QByteArray>("more");
  const QString us = QStringLiteral("US");
  QTest::newRow("plain") << us << QByteArray();
  QTest::newRow("quoted") << QStringLiteral("\"US\"") << QByteArray();
  QTest::newRow("with a field code") << QStringLiteral("US %U") << QByteArray();
  QTest::newRow("with variables") << QStringLiteral("env QT_SCALE_FACTOR=2 US") << QByteArray();
  QTest::newRow("by another way") << QStringLiteral("ROOT/opt/../link") << QByteArray();
  QTest::newRow("by its name") << QStringLiteral("link") << QByteArray();
  QTest::newRow("for this desktop") << us << QByteArray("OnlyShowIn=GNOME;XFCE;\n");
  QTest::newRow("not for another") << us << QByteArray("NotShowIn=KDE;\n");
  QTest::newRow("installed") << us << QByteArray("TryExec=link\n");
  QTest::newRow("switched on") << us << QByteArray("X-GNOME-Autostart-enabled=true\n");
}

void AutostartLoginItemsTest::entriesThatStartThisProgramCount() {
  QFETCH(QString, exec);
  QFETCH(const QByteArray, more);
  const Home home;
  QVERIFY(QFile::link(home.program, home.path("link")));
  QVERIFY(QFile::link(home.program, home.path("bin/link")));
  exec.replace(QStringLiteral("US"), home.program);
  exec.replace(QStringLiteral("ROOT"), home.folder.path());
  const QString entry = home.entry(QStringLiteral("any name.desktop"));
  home.writeEntry(entry, exec, more.constData());
  QVERIFY(home.items().isPresent());
  QVERIFY(home.items().remove().ok());
  QVERIFY(!QFile::exists(entry));
  QVERIFY(!home.items().isPresent());
}

void AutostartLoginItemsTest::removingTakesEveryDuplicate() {
  const Home home;
  QVERIFY(home.items().add().ok());
  home.writeEntry(home.entry(QStringLiteral("tockwise.desktop")), home.program);
  home.writeEntry(home.entry(QStringLiteral("switched off.desktop")), home.program,
                  "X-GNOME-Autostart-enabled=false\n");
  QVERIFY(home.items().remove().ok());
  QVERIFY(QDir(home.user).isEmpty());
}

void AutostartLoginItemsTest::removingTakesALinkAndNotWhatItLeadsTo() {
  const Home home;
  const QString target = home.path("share/applications/mine.desktop");
  home.writeEntry(target, home.program);
  QDir().mkpath(home.user);
  QVERIFY(QFile::link(target, home.entry(QStringLiteral("mine.desktop"))));
  QVERIFY(QFile::link(home.path("nowhere"), home.entry()));
  QVERIFY(home.items().isPresent());
  QVERIFY(home.items().remove().ok());
  QVERIFY(QDir(home.user).isEmpty());
  QVERIFY(QFile::exists(target));
}

void AutostartLoginItemsTest::removingTakesAnOwnEntryWhoseProgramMoved() {
  const Home home;
  home.writeEntry(home.entry(), QStringLiteral("/gone/tockwise"));
  QVERIFY(home.items().remove().ok());
  QVERIFY(!QFile::exists(home.entry()));
}

void AutostartLoginItemsTest::removingWithoutEntriesDoesNothing() {
  const Home home;
  QVERIFY(home.items().remove().ok());
  QVERIFY(!QFile::exists(home.user));
}

void AutostartLoginItemsTest::foreignEntriesStayAsTheyAre_data() {
  QTest::addColumn<QByteArray>("bytes");
  const QByteArray head = "[Desktop Entry]\nType=Application\n";
  QTest::newRow("another program") << head + "Exec=/usr/bin/other\n";
  QTest::newRow("our name as an argument") << head + "Exec=/usr/bin/editor US\n";
  QTest::newRow("in a shell") << head + "Exec=sh -c \"sleep 10; US\"\n";
  QTest::newRow("a command of ours") << head + "Exec=US add Hello --in \"1 Minute\"\n";
  QTest::newRow("a longer name") << head + "Exec=US-backup\n";
  QTest::newRow("another folder") << head + "Exec=/elsewhere/tockwise\n";
  QTest::newRow("a comment") << head + "Name=tockwise\n#Exec=US\nExec=other\n";
  QTest::newRow("not an entry") << QByteArrayLiteral("tockwise\0\xff\xfe Exec=US");
  QTest::newRow("empty") << QByteArray();
  QTest::newRow("Windows line ends") << QByteArray("[Desktop Entry]\r\nExec=other US\r\n");
  QTest::newRow("large") << head + QByteArray(200000, '#') + "\nExec=other\n";
}

void AutostartLoginItemsTest::foreignEntriesStayAsTheyAre() {
  QFETCH(QByteArray, bytes);
  const Home home;
  bytes.replace("US", home.program.toUtf8());
  const QString entry = home.entry(QStringLiteral("foreign.desktop"));
  const QString noEntry = home.entry(QStringLiteral("notes.txt"));
  writeFile(entry, bytes);
  writeFile(noEntry, "[Desktop Entry]\nType=Application\nExec=" + home.program.toUtf8() + '\n');
  QVERIFY(!home.items().isPresent());
  QVERIFY(home.items().add().ok());
  QVERIFY(home.items().remove().ok());
  QCOMPARE(readFile(entry), bytes);
  QVERIFY(QFile::exists(noEntry));
}

void AutostartLoginItemsTest::entriesOfTheSystemAreHidden() {
  const Home home;
  const QString systems = home.system + QStringLiteral("/site.desktop");
  home.writeEntry(systems, home.program);
  const QByteArray before = readFile(systems);
  QVERIFY(home.items().isPresent());
  QVERIFY(home.items().remove().ok());
  QVERIFY(!home.items().isPresent());
  QCOMPARE(readFile(systems), before);
  QVERIFY(readFile(home.entry(QStringLiteral("site.desktop"))).contains("\nHidden=true\n"));
  QVERIFY(home.items().remove().ok());
  QVERIFY(!home.items().isPresent());
}

void AutostartLoginItemsTest::entriesOfTheSystemStayAsTheyAreWithoutUs() {
  const Home home;
  home.writeEntry(home.system + QStringLiteral("/other.desktop"), QStringLiteral("other"));
  QVERIFY(home.items().remove().ok());
  QVERIFY(!QFile::exists(home.entry(QStringLiteral("other.desktop"))));
}

void AutostartLoginItemsTest::addingComesBackFromHiding() {
  const Home home;
  home.writeEntry(home.system + u'/' + kOwn, home.program);
  QVERIFY(home.items().remove().ok());
  QVERIFY(!home.items().isPresent());
  QVERIFY(home.items().add().ok());
  QVERIFY(home.items().isPresent());
}

void AutostartLoginItemsTest::aPipeIsNotWaitedFor() {
  const Home home;
  QDir().mkpath(home.user);
  const QString pipe = home.entry(QStringLiteral("pipe.desktop"));
  QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  QVERIFY(!home.items().isPresent());
  QVERIFY(home.items().remove().ok());
  QVERIFY(QFileInfo(pipe).exists());
}

QTEST_GUILESS_MAIN(AutostartLoginItemsTest)
#include "autostart_login_items_test.moc"
