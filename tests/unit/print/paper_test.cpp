#include "print/paper.h"

#include <QTest>

using namespace tockwise;

class PaperTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() {
    for (const char* variable : {"LC_ALL", "LC_PAPER", "LANG"})
      qunsetenv(variable);
  }

  void theLocaleTellsThePaper_data() {
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QPageSize::PageSizeId>("size");
    QTest::newRow("Germany") << QStringLiteral("de_DE") << QPageSize::A4;
    QTest::newRow("United Kingdom") << QStringLiteral("en_GB") << QPageSize::A4;
    QTest::newRow("United States") << QStringLiteral("en_US") << QPageSize::Letter;
    QTest::newRow("Canada") << QStringLiteral("fr_CA") << QPageSize::Letter;
    QTest::newRow("none") << QStringLiteral("C") << QPageSize::A4;
    QTest::newRow("nonsense") << QStringLiteral("%%//") << QPageSize::A4;
  }
  void theLocaleTellsThePaper() {
    QFETCH(const QString, locale);
    QTEST(paperSizeOfLocale(locale).id(), "size");
  }

  void theVariablesOfTheUserAreAskedInTheirOrder() {
    QCOMPARE(paperSizeOfUser().id(), QPageSize::A4);
    qputenv("LANG", "en_US.UTF-8");
    QCOMPARE(paperSizeOfUser().id(), QPageSize::Letter);
    qputenv("LC_PAPER", "de_DE.UTF-8");
    QCOMPARE(paperSizeOfUser().id(), QPageSize::A4);
    qputenv("LC_ALL", "es_MX.UTF-8");
    QCOMPARE(paperSizeOfUser().id(), QPageSize::Letter);
  }

  void theMarginsAreTwoCentimetres() {
    const QPageLayout paper = paperOfSize(QPageSize(QPageSize::A4));
    QCOMPARE(paper.margins(QPageLayout::Millimeter), QMarginsF(20, 20, 20, 20));
    QCOMPARE(paper.orientation(), QPageLayout::Portrait);
  }
};

QTEST_GUILESS_MAIN(PaperTest)
#include "paper_test.moc"
