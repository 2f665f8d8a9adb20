#include "alerts/kept_alerts.h"
#include "alerts/kept_alerts_file.h"
#include "store/plist_writer.h"
#include "support/log_lines.h"
#include "support/open_alerts.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <optional>

using namespace tockwise;

namespace {

constexpr Date kDue{790000000.25};

AlertRequest alertOf(const char* text) {
  AlertRequest request;
  request.reminder = QString::fromUtf8(text);
  request.RTFData = QByteArray("rich\0", 5) + text;
  request.date = kDue;
  request.reminderType = QStringLiteral("regular");
  request.reminderUUID = QStringLiteral("UUID of ") + QString::fromUtf8(text);
  return request;
}

AlertState everything() {
  AlertRequest request = alertOf("Tee \xf0\x9f\x8d\xb5\nund <b>Kuchen</b>");
  request.sentEmail = true;
  request.sentSMS = true;
  request.rescheduled = true;
  return {request, AlertLevel::MainMenu, true};
}

/// The program, as far as alerts go, from one start to its end.
struct Run : OpenAlerts {
  explicit Run(QString file) : path(std::move(file)) {
    kept.emplace(alerts, path);
    kept->restore();
  }
  /// What is written is written; the rest is lost.
  void crash() { kept.reset(); }

  QStringList texts() const { return textsOf(alerts); }

  QString path;
  std::optional<KeptAlerts> kept;
};

QStringList list(std::initializer_list<const char*> texts) {
  QStringList result;
  for (const char* text : texts)
    result += QString::fromUtf8(text);
  return result;
}

QByteArray contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes) {
  QVERIFY(QDir().mkpath(QFileInfo(path).path()));
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(bytes);
}

QByteArray withValue(const QString& key, const Value& value) {
  Value::Dictionary alert{{QStringLiteral("reminder"), QStringLiteral("Tea")},
                          {QStringLiteral("date"), kDue},
                          {QStringLiteral("sentEmail"), false},
                          {QStringLiteral("sentSMS"), false},
                          {QStringLiteral("rescheduled"), false},
                          {QStringLiteral("reminderType"), QStringLiteral("regular")},
                          {QStringLiteral("reminderUUID"), QString()},
                          {QStringLiteral("level"), qint64(8)},
                          {QStringLiteral("hidden"), false}};
  for (auto& [name, held] : alert) {
    if (name == key)
      held = value;
  }
  plist::Writer writer;
  const auto root = writer.value(Value::Dictionary{
      {QStringLiteral("version"), qint64(1)}, {QStringLiteral("alerts"), Value::Array{alert}}});
  return writer.finish(root);
}

} // namespace

class KeptAlertsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  QString m_path;

  QStringList filesInFolder() const {
    return QDir(QFileInfo(m_path).path()).entryList(QDir::Files);
  }

 private Q_SLOTS:
  void initTestCase() { enableLogLines(); }
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_path = KeptAlerts::pathOfUser();
  }

  void theFileIsInTheStateFolderAndPrivate() {
    QVERIFY(m_path.startsWith(m_environment->path(QString())));
    QVERIFY(m_path.endsWith(QStringLiteral("/tockwise/alerts.plist")));
    Run run(m_path);
    run.alerts.open(alertOf("Tea"));
    run.kept->flush();
    const QFile::Permissions ofOthers =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QVERIFY(!(QFileInfo(m_path).permissions() & ofOthers));
  }

  void everyValueSurvives() {
    const std::vector<AlertState> states{everything(), {alertOf("plain")}};
    const auto read = readKeptAlerts(writeKeptAlerts(states));
    QVERIFY(read.ok());
    QCOMPARE(read->damaged, 0);
    QVERIFY(read->states == states);
  }

  void aFileOfTheFirstVersionIsRead() {
    const auto read =
        readKeptAlerts(contents(QStringLiteral(TOCKWISE_TEST_DATA "/kept-alerts/version-1.plist")));
    QVERIFY(read.ok());
    QCOMPARE(read->damaged, 0);
    QVERIFY(read->states == (std::vector<AlertState>{everything(), {alertOf("plain")}}));
  }

  void alertsComeBackAfterAKillInTheirOrder() {
    Run first(m_path);
    for (const char* text : {"Tea", "Cake", "Walk", "Read"})
      first.alerts.open(alertOf(text));
    QVERIFY(first.alerts.OK(1));
    QVERIFY(first.alerts.hide(1));
    QTRY_VERIFY(QFileInfo::exists(m_path)); // soon, by itself
    first.kept->flush();
    const QByteArray asKilled = contents(m_path);
    const std::vector<AlertState> states = first.alerts.states();
    first.crash();
    write(m_path, asKilled);

    Run second(m_path);
    QCOMPARE(second.texts(), list({"Tea", "Walk", "Read"}));
    QVERIFY(second.alerts.states() == states);
    QVERIFY(!second.alerts.entries()[1].shown);
    QCOMPARE(second.settings.synchronizations(), 0); // no sound
    QTRY_VERIFY(second.alerts.window(0)->isVisible() && second.alerts.window(2)->isVisible());
  }

  void theOrderlyEndOfASessionKeepsThem() {
    Run(m_path).alerts.open(alertOf("Tea"));
    QCOMPARE(Run(m_path).texts(), list({"Tea"}));
    QCOMPARE(Run(m_path).texts(), list({"Tea"})); // again and again
  }

  void alertsThatWereAnsweredDoNotComeBack() {
    {
      Run run(m_path);
      run.alerts.open(alertOf("Tea"));
      run.kept->flush();
      QVERIFY(QFileInfo::exists(m_path));
      QVERIFY(run.alerts.OK(0));
      QTRY_VERIFY(!QFileInfo::exists(m_path));
    }
    QVERIFY(Run(m_path).texts().isEmpty());
  }

  void aRestoredAlertIsAnsweredForGood() {
    Run(m_path).alerts.open(alertOf("Tea"));
    {
      Run run(m_path);
      QTest::mouseClick(run.alerts.window(0)->findChild<QPushButton*>(QStringLiteral("okButton")),
                        Qt::LeftButton);
    }
    QVERIFY(Run(m_path).texts().isEmpty());
  }

  void whoeverQuitsDespiteThemForgetsThem() {
    {
      Run run(m_path);
      run.alerts.open(alertOf("Tea"));
      run.kept->flush();
      run.alerts.open(alertOf("Cake"));
      run.kept->forget();
      QVERIFY(!QFileInfo::exists(m_path));
    }
    QVERIFY(filesInFolder().isEmpty());
    QVERIFY(Run(m_path).texts().isEmpty());
  }

  void alertsThatAQuestionHidesAreNotKeptAsHidden() {
    Run run(m_path);
    run.alerts.open(alertOf("Tea"));
    run.alerts.hideForQuestion(1);
    run.kept->flush();
    const auto read = readKeptAlerts(contents(m_path));
    QVERIFY(read.ok());
    QVERIFY(!read->states.front().hidden);
  }

  void nothingIsWrittenWhereNothingChanged() {
    Run run(m_path);
    run.alerts.open(alertOf("Tea"));
    run.kept->flush();
    QVERIFY(QFile::remove(m_path));
    QVERIFY(run.alerts.exposeCurrentAlert(0));
    run.alerts.showAllCurrentAlerts();
    run.kept->flush();
    QVERIFY(!QFileInfo::exists(m_path));
    QVERIFY(run.alerts.hide(0));
    run.kept->flush();
    QVERIFY(QFileInfo::exists(m_path));
  }

  void openingIsNotHeldUpByWriting() {
    Run run(m_path);
    run.alerts.open(alertOf("Tea"));
    QVERIFY(!QFileInfo::exists(m_path));
    QTRY_VERIFY(QFileInfo::exists(m_path));
  }

  void aDamagedFileIsPutAsideAndLogged_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("something else") << QByteArray("bplist00 and nothing of that kind");
    QTest::newRow("cut") << writeKeptAlerts({everything()}).chopped(20);
    plist::Writer writer;
    const auto root = writer.value(Value::Dictionary{{QStringLiteral("version"), qint64(2)}});
    QTest::newRow("newer") << writer.finish(root);
    plist::Writer other;
    const auto string = other.string(QStringLiteral("hello"));
    QTest::newRow("no dictionary") << other.finish(string);
  }

  void aDamagedFileIsPutAsideAndLogged() {
    QFETCH(QByteArray, bytes);
    write(m_path, bytes);
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral(
                                        "^Cannot read the kept alerts in .*alerts\\.plist: .*; the "
                                        "file is kept as .*alerts\\.plist\\.damaged$")));
    Run run(m_path);
    QVERIFY(run.texts().isEmpty());
    QCOMPARE(contents(m_path + QStringLiteral(".damaged")), bytes);
    run.alerts.open(alertOf("Tea"));
    run.kept->flush();
    QCOMPARE(readKeptAlerts(contents(m_path))->states.size(), size_t(1));
  }

  void aFileBeyondTheLimitIsPutAsideUnread() {
    write(m_path, QByteArray());
    QVERIFY(QFile::resize(m_path, kLargestKeptFile + 1)); // takes no room on the disk
    QTest::ignoreMessage(
        QtInfoMsg, QRegularExpression(QStringLiteral(
                       "^Cannot read the kept alerts in .* is larger than 256 MB; the file is "
                       "kept as .*alerts\\.plist\\.damaged$")));
    Run run(m_path);
    QVERIFY(run.texts().isEmpty());
    QVERIFY(!QFile::exists(m_path));
  }

  void damagedEntriesAreLeftOutAndTheOthersComeBack_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("isNumber");
    for (const char* key : {"reminder", "date", "sentEmail", "rescheduled", "reminderUUID"})
      QTest::newRow(key) << QString::fromLatin1(key) << true;
    QTest::newRow("level") << QStringLiteral("level") << false;
    QTest::newRow("unknown level") << QStringLiteral("level") << true;
  }

  void damagedEntriesAreLeftOutAndTheOthersComeBack() {
    QFETCH(QString, key);
    QFETCH(bool, isNumber);
    const QByteArray bytes =
        withValue(key, isNumber ? Value(qint64(5)) : Value(QStringLiteral("five")));
    const auto read = readKeptAlerts(bytes);
    QVERIFY(read.ok());
    QCOMPARE(read->damaged, 1);
    QVERIFY(read->states.empty());
    QVERIFY(readKeptAlerts(withValue(QString(), Value())).value().states.size() == 1);
    write(m_path, bytes);
    QTest::ignoreMessage(QtInfoMsg,
                         QRegularExpression(QStringLiteral("1 of its alerts cannot be read")));
    Run run(m_path);
    QCOMPARE(contents(m_path + QStringLiteral(".damaged")), bytes);
  }

  void aDateThatIsNoneIsDamage() {
    const auto read = readKeptAlerts(withValue(QStringLiteral("date"), Value(Date{qQNaN()})));
    QVERIFY(read.ok());
    QCOMPARE(read->damaged, 1);
  }

  void richTextsBeyondTheLimitAreKeptPlain() {
    AlertState large{alertOf("large")};
    large.request.RTFData = QByteArray(kMostKeptRichText - 10, 'x');
    AlertState small{alertOf("small")};
    small.request.RTFData = QByteArray(5, 'x');
    AlertState medium{alertOf("medium")};
    medium.request.RTFData = QByteArray(500, 'x');
    const auto read = readKeptAlerts(writeKeptAlerts({large, medium, small}));
    QVERIFY(read.ok());
    QCOMPARE(read->states.size(), size_t(3));
    QCOMPARE(read->states[0].request.RTFData.size(), kMostKeptRichText - 10);
    QVERIFY(read->states[1].request.RTFData.isEmpty());
    QCOMPARE(read->states[1].request.reminder, QStringLiteral("medium"));
    QCOMPARE(read->states[2].request.RTFData.size(), 5);
  }

  void aFailureToWriteIsLoggedOnceAndTriedAgain() {
    const QString folder = QFileInfo(m_path).path();
    QVERIFY(QDir().mkpath(QFileInfo(folder).path()));
    write(folder, "in the way");
    Run run(m_path);
    run.alerts.open(alertOf("Tea"));
    QTest::ignoreMessage(QtInfoMsg,
                         QRegularExpression(QStringLiteral("^Cannot keep the open alerts: ")));
    run.kept->flush();
    run.kept->flush();
    QVERIFY(QFile::remove(folder));
    run.kept->flush();
    QVERIFY(QFileInfo::exists(m_path));
  }

  void threeHundredAlertsComeBack() {
    std::vector<AlertState> states;
    for (int i = 0; i < 300; ++i)
      states.push_back({alertOf(qPrintable(QString::number(i)))});
    write(m_path, writeKeptAlerts(states));
    Run run(m_path);
    QCOMPARE(run.alerts.count(), 300);
    QVERIFY(run.alerts.states() == states);
  }
};

QTEST_MAIN(KeptAlertsTest)
#include "kept_alerts_test.moc"
