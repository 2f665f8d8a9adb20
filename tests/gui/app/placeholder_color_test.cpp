#include "app/placeholder_color.h"

#include <QApplication>
#include <QTest>

using namespace tockwise;

namespace {

QPalette fields(const QColor& ground, const QColor& text, const QColor& placeholder) {
  QPalette palette;
  palette.setColor(QPalette::Base, ground);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::PlaceholderText, placeholder);
  return palette;
}

} // namespace

class PlaceholderColorTest : public QObject {
  Q_OBJECT

  QPalette m_before;

 private Q_SLOTS:
  void init() { m_before = QApplication::palette(); }
  void cleanup() { QApplication::setPalette(m_before); }

  void whatCanBeReadIsKept_data() {
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("placeholder");
    QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black) << QColor(0, 0, 0, 128);
    QTest::newRow("dark") << QColor(27, 30, 32) << QColor(252, 252, 252) << QColor(161, 169, 177);
  }

  void whatCanBeReadIsKept() {
    QFETCH(QColor, ground);
    QFETCH(QColor, text);
    QFETCH(QColor, placeholder);
    QCOMPARE(placeholderColor(fields(ground, text, placeholder)), placeholder);
  }

  void blackOnDarkBecomesTheTextsColour() {
    QColor expected(252, 252, 252);
    expected.setAlphaF(0.5F);
    const QPalette dark = fields(QColor(27, 30, 32), QColor(252, 252, 252), QColor(0, 0, 0, 128));
    QCOMPARE(placeholderColor(dark), expected);
  }

  void theApplicationsPaletteIsCorrectedWheneverItChanges() {
    const PlaceholderColor keeper;
    const QColor ground(27, 30, 32);
    QApplication::setPalette(fields(ground, Qt::white, QColor(0, 0, 0, 128)));
    QTRY_COMPARE(QApplication::palette().color(QPalette::PlaceholderText).red(), 255);
    QCOMPARE(QApplication::palette().color(QPalette::Base), ground);
    QApplication::setPalette(fields(Qt::white, Qt::black, QColor(255, 255, 255, 128)));
    QTRY_COMPARE(QApplication::palette().color(QPalette::PlaceholderText).red(), 0);
  }
};

QTEST_MAIN(PlaceholderColorTest)
#include "placeholder_color_test.moc"
