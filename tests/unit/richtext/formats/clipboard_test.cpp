// Texts on the clipboard: what we offer, what we take of what others offer, and "Copy".
#include "carried_text.h"
#include "platform/clipboard_pasteboard.h"
#include "richtext/copy_text.h"
#include "richtext/text_formats.h"
#include "store/archive/text_archive.h"
#include "support/fake_pasteboard.h"
#include "support/log_lines.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QUrl>

using namespace tockwise;

namespace {

AttributedText sampleText() {
  AttributedText text;
  TextAttributes bold;
  bold.font = TextFont{QStringLiteral("Helvetica-Bold"), 14, {}};
  text.append(QStringLiteral("Tea "), bold);
  TextAttributes picture;
  picture.attachment = TextAttachment{QStringLiteral("cup.png"), pngOf({3, 2}), {}};
  text.append(QString(kPicture), picture);
  return text;
}

QString plainOf(const QMimeData& data) {
  return textFromMimeData(data).value_or(AttributedText()).text;
}

QByteArray pictureOf(const std::optional<AttributedText>& text) {
  if (!text || text->text != kPicture || !text->runs.front().attributes.attachment)
    return {};
  return text->runs.front().attributes.attachment->contents;
}

} // namespace

class ClipboardTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { enableLogLines(); }

  void everyFormIsOfferedAndReadsAsTheText() {
    const auto data = mimeDataOf(sampleText());
    QCOMPARE(data->formats(),
             QStringList({QStringLiteral("application/x-tockwise-richtext"),
                          QStringLiteral("application/rtfd"), QStringLiteral("text/rtfd"),
                          QStringLiteral("application/rtf"), QStringLiteral("text/rtf"),
                          QStringLiteral("text/html"), QStringLiteral("text/plain")}));
    QVERIFY(data->hasHtml());
    QVERIFY(data->html().contains(u"data:image/png;base64,"));
    QCOMPARE(data->text(), QStringLiteral("Tea [cup.png]"));
    QVERIFY(data->data(QStringLiteral("text/rtf")).startsWith("{\\rtf1"));
    QVERIFY(data->data(QStringLiteral("application/rtfd")).startsWith("rtfd"));
    QVERIFY(data->data(QStringLiteral("image/png")).isEmpty());
    QVERIFY(!data->hasFormat(QStringLiteral("image/png")));
    for (const QString& format : data->formats()) {
      QMimeData one;
      one.setData(format, data->data(format));
      const auto read = textFromMimeData(one);
      QVERIFY2(read, qPrintable(format));
      QCOMPARE(read->text.left(4), QStringLiteral("Tea "));
      if (format != u"text/plain")
        QCOMPARE(read->runs.at(1).attributes.attachment->contents, pngOf({3, 2}));
    }
  }

  void ourOwnFormKeepsAll() {
    AttributedText text = sampleText();
    TextAttributes attributes;
    attributes.link = QStringLiteral("x-other:kept");
    attributes.underline = 0x8009;
    text.append(QStringLiteral("!"), attributes);
    const auto read = textFromMimeData(*mimeDataOf(text));
    QVERIFY(read);
    QCOMPARE(read->runs.back().attributes.link, attributes.link);
    QCOMPARE(read->runs.back().attributes.underline, attributes.underline);
  }

  void damagedFormsGiveWayToTheNext() {
    QMimeData data;
    data.setData(QStringLiteral("application/x-tockwise-richtext"), "bplist00 nothing");
    data.setData(QStringLiteral("application/rtfd"), "rtfd");
    data.setData(QStringLiteral("text/rtf"), "no RTF");
    data.setText(QStringLiteral("Tea"));
    QCOMPARE(plainOf(data), QStringLiteral("Tea"));
    data.setHtml(QStringLiteral("<b>Coffee</b>"));
    QCOMPARE(plainOf(data), QStringLiteral("Coffee"));
    data.setData(QStringLiteral("text/rtf"), "{\\rtf1 Cake}");
    QCOMPARE(plainOf(data), QStringLiteral("Cake"));
  }

  void aPictureCopiedInABrowserIsThePicture() {
    const QByteArray png = pngOf({4, 4});
    QMimeData data;
    data.setHtml(QStringLiteral("<meta charset='utf-8'><img src='https://example.org/a.png'>"));
    data.setData(QStringLiteral("image/png"), png);
    data.setText(QStringLiteral("https://example.org/a.png"));
    QCOMPARE(pictureOf(textFromMimeData(data)), png);
  }

  void aPassageCopiedWithAPictureOfItIsThePassage() {
    QMimeData data;
    data.setData(QStringLiteral("image/png"), pngOf({4, 4}));
    data.setHtml(QStringLiteral("<p>A <i>passage</i></p>"));
    QCOMPARE(plainOf(data), QStringLiteral("A passage"));
    data.setData(QStringLiteral("text/rtf"), "{\\rtf1 A {\\i passage}!}");
    QCOMPARE(plainOf(data), QStringLiteral("A passage!"));
  }

  void aPictureIsTakenAsItIsOffered() {
    const QByteArray jpeg = jpegOf({5, 4});
    QMimeData encoded;
    encoded.setData(QStringLiteral("image/jpeg"), jpeg);
    QCOMPARE(pictureOf(textFromMimeData(encoded)), jpeg);
    QMimeData decoded;
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    decoded.setImageData(image);
    const QByteArray png = pictureOf(textFromMimeData(decoded));
    QCOMPARE(QImage::fromData(png).size(), QSize(3, 2));
    QMimeData damaged;
    damaged.setData(QStringLiteral("image/png"), "nothing");
    QVERIFY(!textFromMimeData(damaged));
  }

  void picturesAmongFilesAreTakenAndOtherFilesAreNamed() {
    const QTemporaryDir folder;
    const auto write = [&](const QString& name, const QByteArray& contents) {
      QFile file(folder.filePath(name));
      if (file.open(QIODevice::WriteOnly))
        file.write(contents);
      return QUrl::fromLocalFile(file.fileName());
    };
    const QUrl first = write(QStringLiteral("a.png"), pngOf({2, 2}));
    const QUrl second = write(QStringLiteral("b.txt"), "text");
    QMimeData data;
    data.setUrls({first, second, QUrl(QStringLiteral("https://example.org/c.png")),
                  QUrl::fromLocalFile(folder.filePath(QStringLiteral("not-there.png"))),
                  QUrl::fromLocalFile(folder.path())});
    const auto text = textFromMimeData(data);
    QCOMPARE(pictureOf(text), pngOf({2, 2}));
    QCOMPARE(text->runs.front().attributes.attachment->name, QStringLiteral("a.png"));
    QMimeData others;
    others.setUrls({second});
    others.setText(QStringLiteral("b.txt"));
    QCOMPARE(plainOf(others), QStringLiteral("b.txt"));
  }

  void plainTextIsTakenWithLineFeeds() {
    QMimeData data;
    data.setText(QStringLiteral("a\r\nb\rc") + QChar(0) + QChar(0xd800));
    QCOMPARE(plainOf(data), QStringLiteral("a\nb\nc\ufffd\ufffd"));
    QVERIFY(!textFromMimeData(QMimeData()));
  }

  void htmlInOtherCharacterSetsIsRead_data() {
    QTest::addColumn<QByteArray>("bytes");
    const QString html = QStringLiteral("<p>T\u00e9 \u20ac</p>");
    QTest::newRow("UTF-8") << html.toUtf8();
    QTest::newRow("UTF-8, marked") << "\xef\xbb\xbf" + html.toUtf8();
    QTest::newRow("UTF-16, marked")
        << QByteArray("\xff\xfe") +
               QByteArray(reinterpret_cast<const char*>(html.utf16()), html.size() * 2);
    QTest::newRow("UTF-16") << QByteArray(reinterpret_cast<const char*>(html.utf16()),
                                          html.size() * 2);
    QTest::newRow("windows-1252") << QByteArray("<p>T\xe9 \x80</p>");
    QTest::newRow("stated") << QByteArray("<meta charset=iso-8859-15><p>T\xe9 \xa4</p>");
  }
  void htmlInOtherCharacterSetsIsRead() {
    QFETCH(QByteArray, bytes);
    QMimeData data;
    data.setData(QStringLiteral("text/html"), bytes);
    QCOMPARE(plainOf(data), QStringLiteral("T\u00e9 \u20ac"));
  }

  void copyPutsTheRichTextOnThePasteboard() {
    FakePasteboard pasteboard;
    copyMenuItem(archiveText(sampleText()), pasteboard);
    QCOMPARE(pasteboard.timesSet, 1);
    QVERIFY(pasteboard.kept->hasFormat(QStringLiteral("application/rtfd")));
    QCOMPARE(plainOf(*pasteboard.kept), sampleText().text);
  }

  void copyOfAReminderWithoutRichTextChangesNothing() {
    FakePasteboard pasteboard;
    pasteboard.setContents(std::make_unique<QMimeData>());
    copyMenuItem(QByteArray(), pasteboard);
    QCOMPARE(pasteboard.timesSet, 1);
  }

  void copyOfAnythingButATextStorageChangesNothing() {
    QFile file(
        QStringLiteral(TOCKWISE_TEST_DATA "/archives/keyed-synthetic/apple_mutable_single.plist"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    FakePasteboard pasteboard;
    copyMenuItem(file.readAll(), pasteboard);
    QCOMPARE(pasteboard.timesSet, 0);
  }

  void aCopyThatFailsIsLogged() {
    FakePasteboard pasteboard;
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("^Error: .+")));
    copyMenuItem(QByteArray("no archive"), pasteboard);
    QTest::ignoreMessage(QtInfoMsg, "Error: there is no element 7");
    copyMenuItem(Error{Error::Kind::OutOfRange, QStringLiteral("there is no element 7")},
                 pasteboard);
    QCOMPARE(pasteboard.timesSet, 0);
  }

  void anotherReaderOfHtmlSeesTheSameText() {
    // Unlike browsers, QTextDocument shows the break with which a paragraph ends.
    static const QRegularExpression endsWithBreak(QStringLiteral("\\x{2028}(\n|$)"));
    int compared = 0;
    for (quint32 seed = 0; seed < 150; ++seed) {
      const AttributedText text = RandomCarried(seed, Format::Html).text();
      if (text.text.contains(endsWithBreak))
        continue;
      ++compared;
      QTextDocument document;
      document.setHtml(toHTML(text));
      QString wanted = text.text;
      wanted.replace(QChar::LineSeparator, u'\n').replace(QChar::Nbsp, u' ');
      QCOMPARE(document.toPlainText(), wanted);
    }
    QVERIFY(compared > 50);
  }

  void theClipboardGivesBackWhatWasPutOnIt() {
    ClipboardPasteboard pasteboard;
    pasteboard.setContents(mimeDataOf(sampleText()));
    QVERIFY(pasteboard.contents());
    QCOMPARE(plainOf(*pasteboard.contents()), sampleText().text);
  }
};

QTEST_MAIN(ClipboardTest)
#include "clipboard_test.moc"
