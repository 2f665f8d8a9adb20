#include "richtext/picture_reading.h"
#include "richtext/picture_scaling.h"
#include "support/pictures.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QImageReader>
#include <QScopeGuard>
#include <QTest>
#include <QThread>

using namespace tockwise;

namespace {

TextAttachment attachmentOf(const QByteArray& contents) {
  return {QStringLiteral("picture.png"), contents, {}};
}

AttributedText textWith(const std::vector<TextAttachment>& attachments) {
  AttributedText text;
  for (const TextAttachment& attachment : attachments) {
    TextAttributes attributes;
    attributes.attachment = attachment;
    text.text += QChar(AttributedText::kAttachmentCharacter);
    text.runs.push_back({1, attributes});
    text.text += QStringLiteral(" and ");
    text.runs.push_back({5, {}});
  }
  return text;
}

QSize sizeOf(const std::optional<TextAttachment>& attachment) {
  return attachment ? readPicture(attachment->contents).size() : QSize();
}

bool isAbout(QRgb color, QRgb expected) {
  return std::abs(qRed(color) - qRed(expected)) < 8 &&
         std::abs(qGreen(color) - qGreen(expected)) < 8 &&
         std::abs(qBlue(color) - qBlue(expected)) < 8;
}

constexpr QSizeF kFrame(300, 300);

} // namespace

class PictureScalingTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aPictureAtTheLimitIsKept() {
    AttributedText text = textWith({attachmentOf(pngOf({285, 400}))});
    const AttributedText before = text;
    QCOMPARE(scaleAttachments(text), 0);
    QCOMPARE(text, before);
  }

  void aPictureBeyondTheLimitIsReplacedInProportion() {
    AttributedText text = textWith({attachmentOf(pngOf({286, 572}))});
    QCOMPARE(scaleAttachments(text), 1);
    const TextAttachment& scaled = *text.runs[0].attributes.attachment;
    QCOMPARE(scaled.name, QStringLiteral("image.jpg"));
    QVERIFY(scaled.contents.startsWith("\xff\xd8\xff"));
    QVERIFY(scaled.original.isNull());
    QCOMPARE(readPicture(scaled.contents).size(), QSize(285, 570));
    QCOMPARE(text.text, textWith({attachmentOf({})}).text);
  }

  void heightFollowsWidth_data() {
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("frameWidth");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("fixed frame") << QSize(286, 100) << 300.0 << QSize(285, 100);
    QTest::newRow("half") << QSize(570, 300) << 300.0 << QSize(285, 150);
    QTest::newRow("view of 200") << QSize(400, 200) << 200.0 << QSize(190, 95);
    QTest::newRow("wide view: never above 300") << QSize(600, 60) << 1000.0 << QSize(300, 30);
    QTest::newRow("300 in a wide view is kept") << QSize(300, 60) << 1000.0 << QSize();
    QTest::newRow("190 in a view of 200 is kept") << QSize(190, 60) << 200.0 << QSize();
    QTest::newRow("191 in a view of 200") << QSize(191, 382) << 200.0 << QSize(190, 380);
    QTest::newRow("a line stays visible") << QSize(3000, 1) << 300.0 << QSize(285, 1);
    QTest::newRow("no frame: nothing to scale to") << QSize(3000, 10) << 0.0 << QSize();
  }
  void heightFollowsWidth() {
    QFETCH(QSize, size);
    QFETCH(double, frameWidth);
    QFETCH(QSize, expected);
    const auto scaled = resizedAttachmentImage(attachmentOf(pngOf(size)), {frameWidth, 300});
    QCOMPARE(sizeOf(scaled), expected);
  }

  void widthsAreComparedInSinglePrecision() {
    // In double precision 95 % of this width is a hair below 285.
    const double width = std::nextafter(300.0, 0.0);
    QVERIFY(width * 0.95 < 285.0);
    QVERIFY(!resizedAttachmentImage(attachmentOf(pngOf({285, 10})), {width, 300}));
  }

  void noEdgeIsLeftFreeByRounding() {
    const auto scaled = resizedAttachmentImage(attachmentOf(pngOf({400, 3}, Qt::red)), kFrame);
    QVERIFY(scaled);
    const QImage image = readPicture(scaled->contents);
    QCOMPARE(image.size(), QSize(285, 2));
    for (const QPoint corner : {QPoint(0, 0), QPoint(284, 0), QPoint(0, 1), QPoint(284, 1)})
      QVERIFY(isAbout(image.pixel(corner), qRgb(255, 0, 0)));
  }

  void whatCannotBeReadIsReplacedByThePlaceholderWhereThatIsTooWide_data() {
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("no regular file") << QByteArray();
    QTest::newRow("no picture") << QByteArray("%PDF-1.4 is no picture");
    QTest::newRow("cut short") << pngOf({2000, 2000}).left(300);
    QTest::newRow("a picture that can name files")
        << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='900' height='9'/>");
  }
  void whatCannotBeReadIsReplacedByThePlaceholderWhereThatIsTooWide() {
    QFETCH(QByteArray, contents);
    const auto scaled = resizedAttachmentImage(attachmentOf(contents), {100, 100});
    QCOMPARE(sizeOf(scaled), QSize(95, 95));
    // The clock's tile is blue at the edges and its face white.
    const QImage image = readPicture(scaled->contents);
    QVERIFY(qBlue(image.pixel(47, 7)) > qRed(image.pixel(47, 7)) + 50);
    QVERIFY(isAbout(image.pixel(0, 0), qRgb(255, 255, 255)));
  }

  void whatCannotBeReadIsLeftAloneWhereThePlaceholderFits() {
    AttributedText text =
        textWith({attachmentOf({}), attachmentOf(QByteArray("not a picture at all"))});
    const AttributedText before = text;
    QCOMPARE(scaleAttachments(text), 0);
    QCOMPARE(text, before);
  }

  void aTextWithoutAttachmentsIsReturnedUnchanged() {
    AttributedText text{QStringLiteral("Tea"), {{3, {}}}};
    const AttributedText before = text;
    QCOMPARE(scaleAttachments(text), 0);
    QCOMPARE(text, before);
    AttributedText empty;
    QCOMPARE(scaleAttachments(empty), 0);
  }

  void picturesScaledInARowHoldTheirOwnContents() {
    AttributedText text = textWith(
        {attachmentOf(pngOf({600, 300}, Qt::red)), attachmentOf(pngOf({600, 300}, Qt::blue)),
         attachmentOf(pngOf({600, 300}, Qt::red)), attachmentOf(pngOf({60, 30}, Qt::green))});
    QCOMPARE(scaleAttachments(text), 3);
    const auto colorOf = [&](int run) {
      return readPicture(text.runs[run].attributes.attachment->contents).pixel(100, 100);
    };
    QVERIFY(isAbout(colorOf(0), qRgb(255, 0, 0)));
    QVERIFY(isAbout(colorOf(2), qRgb(0, 0, 255)));
    QVERIFY(isAbout(colorOf(4), qRgb(255, 0, 0)));
    QCOMPARE(text.runs[6].attributes.attachment->name, QStringLiteral("picture.png"));
  }

  void otherAttributesOfTheRunStay() {
    AttributedText text = textWith({attachmentOf(pngOf({600, 300}))});
    text.runs[0].attributes.link = QStringLiteral("https://example.org");
    QCOMPARE(scaleAttachments(text), 1);
    QCOMPARE(text.runs[0].attributes.link, QStringLiteral("https://example.org"));
  }

  void transparencyBecomesWhite() {
    const auto scaled =
        resizedAttachmentImage(attachmentOf(pngOf({600, 600}, Qt::transparent)), kFrame);
    QVERIFY(isAbout(readPicture(scaled->contents).pixel(10, 10), qRgb(255, 255, 255)));
  }

  void contentsTellTheKind() {
    TextAttachment attachment = attachmentOf(jpegOf({600, 300}));
    attachment.name = QStringLiteral("says.gif");
    QCOMPARE(sizeOf(resizedAttachmentImage(attachment, kFrame)), QSize(285, 143));
  }

  void aTurnedPhotographIsScaledUpright() {
    // Stored 800 by 400 and turned by a quarter: 400 wide as it is shown.
    const QByteArray turned = turnedJpegOf({800, 400});
    QCOMPARE(pictureSize(turned), QSize(400, 800));
    QCOMPARE(sizeOf(resizedAttachmentImage(attachmentOf(turned), kFrame)), QSize(285, 570));
  }

  void aTurnedPhotographThatIsNarrowUprightIsKept() {
    const QByteArray turned = turnedJpegOf({800, 200});
    QVERIFY(!resizedAttachmentImage(attachmentOf(turned), kFrame));
  }

  void moreBytesThanTheLimitAreNotRead() {
    QByteArray contents = pngOf({600, 300});
    contents.append(QByteArray(kMostPictureBytes, '\0'));
    QVERIFY(!pictureSize(contents).isValid());
    QVERIFY(!resizedAttachmentImage(attachmentOf(contents), kFrame));
  }

  void morePixelsThanTheLimitAreNotRead() {
    QVERIFY(!pictureSize(headerOfPng({40'000, 40'000})).isValid());
    QVERIFY(pictureSize(headerOfPng({10'000, 13'000})).isValid());
    QVERIFY(!pictureSize(headerOfPng({10'000, 13'500})).isValid());
    QVERIFY(readPicture(headerOfPng({40'000, 40'000})).isNull());
  }

  void aHugePhotographIsNeverDecodedWhole() {
    const QByteArray huge = jpegOf({10'000, 10'000});
    // The whole picture takes 400 MB, which is refused here.
    QVERIFY(pictureSize(huge).isValid());
    const int limit = QImageReader::allocationLimit();
    const auto restore = qScopeGuard([limit] { QImageReader::setAllocationLimit(limit); });
    QImageReader::setAllocationLimit(100);
    QCOMPARE(sizeOf(resizedAttachmentImage(attachmentOf(huge), kFrame)), QSize(285, 285));
  }

  void severalThreadsScaleAtOnce() {
    const QByteArray red = pngOf({900, 300}, Qt::red);
    std::vector<std::unique_ptr<QThread>> threads;
    QAtomicInt scaled;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back(QThread::create([&] {
        for (int turn = 0; turn < 5; ++turn) {
          if (sizeOf(resizedAttachmentImage(attachmentOf(red), kFrame)) == QSize(285, 95) &&
              sizeOf(resizedAttachmentImage(attachmentOf({}), {100, 100})) == QSize(95, 95))
            scaled.fetchAndAddRelaxed(1);
        }
      }));
      threads.back()->start();
    }
    for (const auto& thread : threads)
      QVERIFY(thread->wait(30'000));
    QCOMPARE(scaled.loadRelaxed(), 20);
  }

  void anImageOfThatSizeIsReturnedAsItIs() {
    const QImage image = readPicture(pngOf({40, 20}, Qt::red));
    const QImage scaled = imageByScalingProportionallyToSize(image, {40, 20});
    QCOMPARE(scaled.cacheKey(), image.cacheKey());
  }

  void aHundredMegapixelsAreDecodedWhateverTheirKind() {
    // Of one bit a pixel: not one of those that Qt makes smaller while it decodes them.
    QImage huge(10000, 10000, QImage::Format_Mono);
    huge.fill(0);
    QBuffer buffer;
    QVERIFY(huge.save(&buffer, "png"));
    const auto scaled = resizedAttachmentImage(attachmentOf(buffer.data()), kFrame);
    QCOMPARE(sizeOf(scaled), QSize(285, 285));
    QVERIFY(isAbout(readPicture(scaled->contents).pixel(100, 100), huge.color(0)));
  }

  void scalingUsesTheSmallerRatioAndCentres() {
    const QImage image = readPicture(pngOf({40, 20}, Qt::red));
    const QImage scaled = imageByScalingProportionallyToSize(image, {100, 100});
    QCOMPARE(scaled.size(), QSize(100, 100));
    QCOMPARE(qAlpha(scaled.pixel(50, 20)), 0);
    QCOMPARE(qAlpha(scaled.pixel(50, 80)), 0);
    QCOMPARE(scaled.pixel(1, 50), qRgb(255, 0, 0));
    QCOMPARE(scaled.pixel(98, 50), qRgb(255, 0, 0));
    QCOMPARE(scaled.pixel(50, 27), qRgb(255, 0, 0));
    const QImage tall = imageByScalingProportionallyToSize(image, {10, 100});
    QCOMPARE(qAlpha(tall.pixel(5, 46)), 0);
    QCOMPARE(qAlpha(tall.pixel(5, 50)), 255);
  }

  void anEmptySizeGivesNothing() {
    QVERIFY(imageByScalingProportionallyToSize(readPicture(pngOf({40, 20})), {0, 10}).isNull());
    QVERIFY(imageByScalingProportionallyToSize(QImage(), {10, 10}).isNull());
  }
};

QTEST_GUILESS_MAIN(PictureScalingTest)
#include "picture_scaling_test.moc"
