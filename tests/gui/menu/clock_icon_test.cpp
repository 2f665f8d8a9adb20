#include "menu/ui/clock_icon.h"

#include <QImage>
#include <QTest>

using namespace tockwise;

namespace {

QImage picture(const QIcon& icon, int size) {
  return icon.pixmap(QSize(size, size), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// How many pixels of the picture can be told from the ground.
int visiblePixels(const QImage& image, QColor ground) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor color = image.pixelColor(x, y);
      const double alpha = color.alphaF();
      const double difference = std::abs(color.lightnessF() - ground.lightnessF()) * alpha;
      count += difference > 0.25 ? 1 : 0;
    }
  }
  return count;
}

} // namespace

class ClockIconTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void theFourClocksDiffer() {
    for (int one = kFirstClock; one <= kLastClock; ++one) {
      for (int other = one + 1; other <= kLastClock; ++other)
        QVERIFY(picture(clockIcon(one), 22) != picture(clockIcon(other), 22));
    }
  }

  void everyClockIsSeenOnDarkAndLightPanels() {
    for (int clock = kFirstClock; clock <= kLastClock; ++clock) {
      for (const int size : {16, 22, 24, 32, 48, 64}) {
        const QImage image = picture(clockIcon(clock), size);
        QCOMPARE(image.size(), QSize(size, size));
        QVERIFY(visiblePixels(image, QColor(0x20, 0x22, 0x26)) > size * size / 8);
        QVERIFY(visiblePixels(image, QColor(0xf0, 0xf0, 0xf0)) > size * size / 8);
      }
    }
  }

  void aNumberIsDrawnAsABadge() {
    const QImage plain = picture(clockIcon(1), 22);
    const QImage three = picture(clockIcon(1, QStringLiteral("3")), 22);
    QVERIFY(plain != three);
    QVERIFY(three != picture(clockIcon(1, QStringLiteral("8")), 22));
    QVERIFY(picture(clockIcon(1, QStringLiteral("99")), 22) !=
            picture(clockIcon(1, QStringLiteral("100")), 22));
    QCOMPARE(picture(clockIcon(1, QStringLiteral("100")), 22),
             picture(clockIcon(1, QStringLiteral("4711")), 22));
  }

  void anIconTellsTheSizesOfPanels() {
    QVERIFY(clockIcon(1).availableSizes().contains(QSize(22, 22)));
    QVERIFY(!applicationIcon().isNull());
  }
};

QTEST_MAIN(ClockIconTest)
#include "clock_icon_test.moc"
