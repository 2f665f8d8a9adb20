#include "dates/calendar.h"
#include "dates/user_environment.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace tockwise;

namespace {

void write(const QString& path, const QByteArray& content) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(content);
}

/// Sets an environment variable, or unsets it, for as long as it lives.
class Variable {
 public:
  Variable(const char* name, const char* value) : m_name(name), m_before(qgetenv(name)) {
    m_wasSet = qEnvironmentVariableIsSet(name);
    value ? qputenv(name, value) : qunsetenv(name);
  }
  ~Variable() { m_wasSet ? qputenv(m_name, m_before) : qunsetenv(m_name); }
  Q_DISABLE_COPY_MOVE(Variable)

 private:
  const char* m_name;
  QByteArray m_before;
  bool m_wasSet = false;
};

// A zone file's end: the rule of its future.
const QByteArray kZoneFile = QByteArray("TZif2") + QByteArray(39, '\0') + "\nIST-5:30\n";

} // namespace

class UserEnvironmentTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() {
    m_home = std::make_unique<TestEnvironment>();
    m_files = {QFile::encodeName(m_home->path(QStringLiteral("localtime"))),
               QFile::encodeName(m_home->path(QStringLiteral("timezone")))};
  }

  void TZNamesTheZone_data() {
    QTest::addColumn<QByteArray>("TZ");
    QTest::addColumn<QString>("zone");
    const auto row = [](const char* TZ, const char* zone) {
      QTest::newRow(TZ) << QByteArray(TZ) << QString::fromLatin1(zone);
    };
    row("Europe/Berlin", "Europe/Berlin");
    row(":Europe/Berlin", "Europe/Berlin");
    row("", "UTC");
    row(":", "UTC");
    row("/usr/share/zoneinfo/Europe/Berlin", "Europe/Berlin");
    row(":/usr/share/zoneinfo/posix/Asia/Kolkata", "Asia/Kolkata");
    row("/no/such/file", "UTC");
    row("CET-1CEST,M3.5.0,M10.5.0/3", "CET-1CEST,M3.5.0,M10.5.0/3");
  }
  void TZNamesTheZone() {
    QFETCH(QByteArray, TZ);
    QFETCH(QString, zone);
    QCOMPARE(zoneFromVariable(TZ), zone);
  }

  void aLinkedLocaltimeNamesTheZone() {
    QVERIFY(QFile::link(QStringLiteral("/usr/share/zoneinfo/Australia/Lord_Howe"),
                        QFile::decodeName(m_files.localtime)));
    QCOMPARE(zoneFromFiles(m_files), QStringLiteral("Australia/Lord_Howe"));
  }

  void aRelativeLinkNamesTheZone() {
    QVERIFY(QDir().mkpath(m_home->path(QStringLiteral("share/zoneinfo/Europe"))));
    write(m_home->path(QStringLiteral("share/zoneinfo/Europe/Berlin")), kZoneFile);
    QCOMPARE(::symlink("share/zoneinfo/Europe/Berlin", m_files.localtime.constData()), 0);
    QCOMPARE(zoneFromFiles(m_files), QStringLiteral("Europe/Berlin"));
  }

  void ofACopiedLocaltimeTheTimezoneFileTells() {
    write(QFile::decodeName(m_files.localtime), kZoneFile);
    write(QFile::decodeName(m_files.timezone), "Pacific/Apia\n");
    QCOMPARE(zoneFromFiles(m_files), QStringLiteral("Pacific/Apia"));
  }

  void aCopiedLocaltimeAloneTellsItsRule() {
    write(QFile::decodeName(m_files.localtime), kZoneFile);
    QCOMPARE(zoneFromFiles(m_files), QStringLiteral("IST-5:30"));
    const Calendar calendar(zoneFromFiles(m_files), QStringLiteral("en_US"));
    QCOMPARE(calendar.components({0}), (DateComponents{2001, 1, 1, 5, 30, 0, 1}));
  }

  void withoutAnyFileTheZoneIsUTC() { QCOMPARE(zoneFromFiles(m_files), QStringLiteral("UTC")); }

  void localesAreReadAsWritten_data() {
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("locale");
    const auto row = [](const char* value, const char* locale) {
      QTest::newRow(value) << QByteArray(value) << QString::fromLatin1(locale);
    };
    row("", "en_US");
    row("C", "en_US");
    row("C.UTF-8", "en_US");
    row("POSIX", "en_US");
    row("de_DE.UTF-8", "de_DE");
    row("de_DE@euro", "de_DE");
    row("sr_RS.UTF-8@latin", "sr_Latn_RS");
    row("sr@latin", "sr_Latn");
    row("fr", "fr");
  }
  void localesAreReadAsWritten() {
    QFETCH(QByteArray, value);
    QFETCH(QString, locale);
    QCOMPARE(localeFromVariable(value), locale);
  }

  void theFirstLocaleVariableThatIsSetDecides() {
    const Variable all("LC_ALL", "");
    const Variable time("LC_TIME", "fr_FR.UTF-8");
    const Variable lang("LANG", "de_DE.UTF-8");
    UserEnvironment environment(m_files);
    QVERIFY(environment.refresh());
    QCOMPARE(environment.locale(), QStringLiteral("fr_FR"));
    qputenv("LC_ALL", "C");
    QVERIFY(environment.refresh());
    QCOMPARE(environment.locale(), QStringLiteral("en_US"));
    QVERIFY(!environment.refresh());
  }

  void aReplacedLocaltimeIsSeenAtTheNextLook() {
    const Variable TZ("TZ", nullptr);
    QVERIFY(QFile::link(QStringLiteral("/usr/share/zoneinfo/Europe/Berlin"),
                        QFile::decodeName(m_files.localtime)));
    UserEnvironment environment(m_files);
    QVERIFY(environment.refresh());
    QVERIFY(!environment.refresh());
    QCOMPARE(environment.zone(), QStringLiteral("Europe/Berlin"));
    // As timedatectl does it: a new link renamed over the old one.
    const QString fresh = m_home->path(QStringLiteral("localtime.new"));
    QVERIFY(QFile::link(QStringLiteral("/usr/share/zoneinfo/Asia/Kolkata"), fresh));
    QCOMPARE(::rename(QFile::encodeName(fresh).constData(), m_files.localtime.constData()), 0);
    QVERIFY(environment.refresh());
    QCOMPARE(environment.zone(), QStringLiteral("Asia/Kolkata"));
  }

  void theVariableGoesBeforeTheFile() {
    QVERIFY(QFile::link(QStringLiteral("/usr/share/zoneinfo/Europe/Berlin"),
                        QFile::decodeName(m_files.localtime)));
    UserEnvironment environment(m_files);
    const Variable TZ("TZ", "America/New_York");
    QVERIFY(environment.refresh());
    QCOMPARE(environment.zone(), QStringLiteral("America/New_York"));
    qunsetenv("TZ");
    QVERIFY(environment.refresh());
    QCOMPARE(environment.zone(), QStringLiteral("Europe/Berlin"));
  }

  void theCurrentCalendarFollowsTheVariable() {
    const Variable TZ("TZ", "Asia/Kolkata");
    const quint64 identity = Calendar::current().identity();
    QCOMPARE(Calendar::current().components({0}).minute, 30);
    QCOMPARE(Calendar::current().identity(), identity);
    qputenv("TZ", "UTC");
    QVERIFY(Calendar::current().identity() != identity);
    QCOMPARE(Calendar::current().components({0}), (DateComponents{2001, 1, 1, 0, 0, 0, 1}));
  }

 private:
  std::unique_ptr<TestEnvironment> m_home;
  ZoneFiles m_files;
};

QTEST_GUILESS_MAIN(UserEnvironmentTest)
#include "user_environment_test.moc"
