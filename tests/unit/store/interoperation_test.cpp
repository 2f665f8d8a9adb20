// What other programs write we read, and they read what we write: Python's plistlib and plistutil.
#include "store/reminder_store.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

// Runs a program and returns what it printed; fails the test when it fails.
QByteArray run(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  if (!process.waitForFinished(30000) || process.exitCode() != 0) {
    qWarning().noquote() << program << process.errorString() << process.readAllStandardError();
    return {};
  }
  return process.readAllStandardOutput();
}

constexpr char kCheck[] = R"(
import plistlib, sys, datetime
p = plistlib.load(open(sys.argv[1], 'rb'))
assert p['reminderDescriptions'] == ['Tea & <b>', 'Küche 😀'], p['reminderDescriptions']
assert p['reminderQueue'][0] == datetime.datetime(2025, 3, 4, 9, 5), p['reminderQueue']
assert p['reminderDateTimeFired'] == [datetime.datetime(1, 1, 1)] * 2
assert p['reminderRecent'] == [False, False]
assert p['reminderRecent'][0] is False
assert p['reminderIntervals'] == [[0, 1, 0, 0], [0, 0, 0, 0]]
assert p['reminderTasks'] == [{'type': 4, 'path': '/x'}, {'nil': 'nil'}]
assert p['reminderExtras'][1] == {'days': [True] * 7, 'times': [0] * 4}
assert p['reminderOffsets'] == [[0, 0, 0]] * 2
assert p['reminderRTFs'] == [b'', b'']
assert p['importedUIDs'] == ['', '']
assert p['useCountdown'] is False
assert len({len(p[k]) for k in p if k.startswith('reminder')}) == 1
print('sound')
)";

constexpr char kWrite[] = R"(
import plistlib, sys, datetime
d = datetime.datetime(2030, 1, 2, 3, 4, 5)
p = dict(reminderQueue=[d], reminderDescriptions=['from Python'], sortType=5,
         reminderIntervals=[[0, 7, 0, 0]], reminderRecent=[3])
plistlib.dump(p, open(sys.argv[1], 'wb'), fmt=getattr(plistlib, sys.argv[2]))
)";

} // namespace

class InteroperationTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};

  std::unique_ptr<ReminderStore> open() { return openUserStore(m_clock); }
  static QString file() { return PreferencesStore::Paths::ofUser().file; }

  void writeStore() {
    const auto store = open();
    Reminder first;
    first.reminderQueue = Date::fromUnixSeconds(1741079100);
    first.reminderDescriptions = text("Tea & <b>");
    first.reminderIntervals = {0, 1, 0, 0};
    first.reminderTasks = {false, 4, text("/x")};
    store->appendReminder(first, ReminderStore::RecentEntry::Add);
    Reminder second;
    second.reminderDescriptions = text("Küche 😀");
    store->appendReminder(second, ReminderStore::RecentEntry::Omit);
    store->preferences().setValue(text("useCountdown"), Value(false));
    store->preferences().synchronize();
  }

  void expectPythonsReminder() {
    const auto store = open();
    QVERIFY(store != nullptr);
    QVERIFY(store->loadReport().isEmpty());
    const auto reminder = store->queue().reminder(0);
    QVERIFY(reminder.ok());
    QCOMPARE(reminder->reminderDescriptions, text("from Python"));
    QCOMPARE(reminder->reminderQueue, Date::fromUnixSeconds(1893553445));
    QCOMPARE(reminder->reminderIntervals, (Interval{0, 7, 0, 0}));
    QCOMPARE(reminder->reminderRecent, 3);
    QCOMPARE(store->preferences().integer(text("sortType")), 5);
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    QVERIFY(open() != nullptr); // makes the folder
  }

  void pythonReadsWhatWeWrite() {
    writeStore();
    QCOMPARE(run(text("/usr/bin/python3"), {text("-c"), text(kCheck), file()}), "sound\n");
  }

  void whatOthersCouldNotReadIsNotWritten() {
    {
      const auto store = open();
      Reminder odd;
      odd.reminderQueue = Date{1e15};
      odd.reminderDescriptions = QString(1, QChar(0xD800)) + text("half");
      store->appendReminder(odd, ReminderStore::RecentEntry::Omit);
    }
    QCOMPARE(run(text("/usr/bin/python3"),
                 {text("-c"),
                  text("import plistlib,sys;p=plistlib.load(open(sys.argv[1],'rb'));"
                       "print(p['reminderQueue'][0].year, ascii(p['reminderDescriptions'][0]))"),
                  file()}),
             QByteArray("9999 '\\ufffdhalf'\n"));
  }

  void plistutilReadsWhatWeWrite() {
    writeStore();
    const QByteArray xml = run(text("plistutil"), {text("-i"), file()});
    QVERIFY(xml.contains("<string>Tea &amp; &lt;b&gt;</string>"));
  }

  void weReadWhatPythonWrites_data() {
    QTest::addColumn<QString>("format");
    QTest::newRow("binary") << text("FMT_BINARY");
    QTest::newRow("xml") << text("FMT_XML");
  }
  void weReadWhatPythonWrites() {
    QFETCH(QString, format);
    run(text("/usr/bin/python3"), {text("-c"), text(kWrite), file(), format});
    expectPythonsReminder();
  }

  void weReadWhatPlistutilWrites() {
    const QString xml = m_environment->path(text("x.plist"));
    run(text("/usr/bin/python3"), {text("-c"), text(kWrite), xml, text("FMT_XML")});
    run(text("plistutil"), {text("-i"), xml, text("-o"), file(), text("-f"), text("bin")});
    expectPythonsReminder();
  }
};

QTEST_GUILESS_MAIN(InteroperationTest)
#include "interoperation_test.moc"
