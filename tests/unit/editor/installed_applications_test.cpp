// Which applications are offered for a task.
#include "editor/installed_applications.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace tockwise;

class InstalledApplicationsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;

  void write(const QString& name, const QByteArray& text) {
    const QString path = m_environment->path(name);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
  }
  QStringList names() {
    return installedApplications({m_environment->path(QStringLiteral("own")),
                                  m_environment->path(QStringLiteral("system"))});
  }

 private Q_SLOTS:
  void init() { m_environment = std::make_unique<TestEnvironment>(); }

  void theNamesOfTheMenusEntriesAreSorted() {
    write(QStringLiteral("system/b.desktop"),
          "[Desktop Entry]\nType=Application\nName=Zebra\nName[de]=Zebra auf Deutsch\n");
    write(QStringLiteral("system/kde/a.desktop"),
          "# a comment\n[Desktop Entry]\nName = apple \nExec=apple\n");
    QCOMPARE(names(), (QStringList{QStringLiteral("apple"), QStringLiteral("Zebra")}));
  }

  void entriesThatMenusLeaveOutAreLeftOut_data() {
    QTest::addColumn<QByteArray>("entry");
    QTest::newRow("not shown") << QByteArray("[Desktop Entry]\nName=A\nNoDisplay=true\n");
    QTest::newRow("hidden") << QByteArray("[Desktop Entry]\nName=A\nHidden=true\n");
    QTest::newRow("a link") << QByteArray("[Desktop Entry]\nType=Link\nName=A\n");
    QTest::newRow("a name of an action only")
        << QByteArray("[Desktop Entry]\nExec=a\n[Desktop Action New]\nName=A\n");
    QTest::newRow("no entry at all") << QByteArray("\x00\xff[[[=\n=\n", 9);
    QTest::newRow("empty") << QByteArray();
  }
  void entriesThatMenusLeaveOutAreLeftOut() {
    QFETCH(QByteArray, entry);
    write(QStringLiteral("system/a.desktop"), entry);
    QCOMPARE(names(), QStringList());
  }

  void theUsersEntryHidesTheSystems() {
    write(QStringLiteral("own/a.desktop"), "[Desktop Entry]\nName=A\nHidden=true\n");
    write(QStringLiteral("system/a.desktop"), "[Desktop Entry]\nName=A\n");
    QCOMPARE(names(), QStringList());
  }
};

QTEST_GUILESS_MAIN(InstalledApplicationsTest)
#include "installed_applications_test.moc"
