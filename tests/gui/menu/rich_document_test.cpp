// Rich titles as documents.
#include "menu/ui/rich_document.h"
#include "support/pictures.h"

#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

using namespace tockwise;

namespace {

RichText picture(const QByteArray& data) {
  RichRun run;
  run.text = QChar(0xfffc);
  run.attributes.attachment = RichAttachment{QStringLiteral("photo"), data.size(), 0, 0, data};
  return {run};
}

/// The picture that the document shows.
QImage shown(const QTextDocument& document) {
  const QTextImageFormat format = document.begin().begin().fragment().charFormat().toImageFormat();
  return document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
}

} // namespace

class RichDocumentTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void largePicturesAreMadeSmall_data() {
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << pngOf({40, 30}) << QSize(40, 30);
    QTest::newRow("photo") << jpegOf({3200, 2400}) << QSize(128, 96);
    QTest::newRow("turned photo") << turnedJpegOf({3200, 2400}) << QSize(72, 96);
    QTest::newRow("wide") << pngOf({3200, 4}) << QSize(160, 1);
  }

  void largePicturesAreMadeSmall() {
    QFETCH(QByteArray, data);
    QTEST(shown(*richDocument(picture(data), QFont())).size(), "size");
  }

  void whatCannotBeShownIsNamed() {
    QCOMPARE(richDocument(picture({}), QFont())->toPlainText(), QStringLiteral("[photo]"));
    QCOMPARE(richDocument(picture("no picture"), QFont())->toPlainText(),
             QStringLiteral("[photo]"));
  }
};

QTEST_MAIN(RichDocumentTest)
#include "rich_document_test.moc"
