// Files of rich text, told by their contents.
#include "richtext/text_formats.h"
#include "support/ordinary_user.h"
#include "support/pictures.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace tockwise;

namespace {

const QChar kPicture(AttributedText::kAttachmentCharacter);

} // namespace

class RichFileTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyKindIsToldByItsContents_data() {
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("text");
    AttributedText text;
    text.append(QStringLiteral("Tea"), {});
    QTest::newRow("RTF") << QByteArray("{\\rtf1 Tea}") << QStringLiteral("Tea");
    QTest::newRow("RTF after lines") << QByteArray("\n\n{\\rtf1 Tea}") << QStringLiteral("Tea");
    QTest::newRow("RTFD") << toRTFD(text) << QStringLiteral("Tea");
    QTest::newRow("page") << QByteArray("<!DOCTYPE html>\n<p>Tea") << QStringLiteral("Tea");
    QTest::newRow("page in capitals") << QByteArray("<HTML><BODY>Tea") << QStringLiteral("Tea");
    QTest::newRow("fragment") << QByteArray("Tea <b>time</b>") << QStringLiteral("Tea time");
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe<\0p\0>\0T\0", 10) << QStringLiteral("T");
    QTest::newRow("PNG") << pngOf({2, 2}) << QString(kPicture);
    QTest::newRow("JPEG") << jpegOf({2, 2}) << QString(kPicture);
  }
  void everyKindIsToldByItsContents() {
    QFETCH(QByteArray, contents);
    QFETCH(QString, text);
    const auto read = readRichFile(write(QStringLiteral("file.odd"), contents));
    QVERIFY2(read, qPrintable(read ? QString() : read.error().message));
    QCOMPARE(read->text, text);
  }

  void aPageWithoutATagIsToldByItsName() {
    const auto read = readRichFile(write(QStringLiteral("page.HTM"), "Tea &amp; cake"));
    QVERIFY(read);
    QCOMPARE(read->text, QStringLiteral("Tea & cake"));
  }

  void aPictureThatCannotBeReadSaysWhy() {
    const auto damaged = readRichFile(write(QStringLiteral("bad file"), headerOfPng({40, 40})));
    QVERIFY(!damaged);
    QVERIFY(damaged.error().message.endsWith(QStringLiteral("the picture is damaged")));
    const auto unknown =
        readRichFile(write(QStringLiteral("bad file"), QByteArray("8BPS\0\1\0\0\0\0\0\0", 12)));
    QVERIFY(!unknown);
    QVERIFY2(unknown.error().message.contains(QStringLiteral("photoshop cannot be read here")),
             qPrintable(unknown.error().message));
  }

  void aPictureKeepsItsFileName() {
    const auto read = readRichFile(write(QStringLiteral("my cup.png"), pngOf({2, 2})));
    QVERIFY(read);
    QCOMPARE(read->runs.front().attributes.attachment->name, QStringLiteral("my cup.png"));
    QCOMPARE(read->runs.front().attributes.attachment->contents, pngOf({2, 2}));
  }

  void whatCannotBeReadIsRefusedByName_data() {
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("plain text") << QByteArray("just words, 1 < 2");
    QTest::newRow("program") << QByteArray("\x7f"
                                           "ELF\x02\x01\x01\0\0\0",
                                           10);
    QTest::newRow("RTF that nests too deep") << "{\\rtf1" + QByteArray(10000, '{');
    QTest::newRow("RTFD") << QByteArray("rtfd\0\0\0\0\x03\0\0\0\xff\xff\xff\xff", 16);
    QTest::newRow("picture") << pngOf({200, 200}).left(60);
    QTest::newRow("picture without pixels") << headerOfPng({40, 40});
    QTest::newRow("picture of too many pixels") << headerOfPng({60000, 60000});
  }
  void whatCannotBeReadIsRefusedByName() {
    QFETCH(QByteArray, contents);
    const QString path = write(QStringLiteral("bad file"), contents);
    const auto read = readRichFile(path);
    QVERIFY(!read);
    QCOMPARE(read.error().kind, Error::Kind::Damaged);
    QVERIFY2(read.error().message.startsWith(path), qPrintable(read.error().message));
    QVERIFY(!read.error().message.contains(u'\n'));
  }

  void whatIsNoFileIsRefused() {
    const auto missing = readRichFile(m_folder.filePath(QStringLiteral("nowhere")));
    QVERIFY(!missing);
    QCOMPARE(missing.error().kind, Error::Kind::NotFound);
    const auto folder = readRichFile(m_folder.path());
    QVERIFY(!folder);
    QCOMPARE(folder.error().kind, Error::Kind::Refused);
    const QByteArray pipe = m_folder.filePath(QStringLiteral("pipe")).toLocal8Bit();
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    const auto fromPipe = readRichFile(QString::fromLocal8Bit(pipe));
    QVERIFY(!fromPipe);
    QCOMPARE(fromPipe.error().kind, Error::Kind::Refused);
  }

  void aFileThatMayNotBeReadIsRefused() {
    const QString path = write(QStringLiteral("secret.rtf"), "{\\rtf1 Tea}");
    QFile::setPermissions(path, {});
    const OrdinaryUser user({m_folder.path()});
    const auto read = readRichFile(path);
    QVERIFY(!read);
    QCOMPARE(read.error().kind, Error::Kind::Storage);
  }

  void aFileThatIsTooLargeIsNotRead() {
    const QString path = write(QStringLiteral("large.rtf"), "{\\rtf1 Tea}");
    QVERIFY(QFile::resize(path, qint64(1) << 40)); // sparse: it takes no room
    const auto read = readRichFile(path);
    QVERIFY(!read);
    QCOMPARE(read.error().kind, Error::Kind::Refused);
  }

 private:
  QString write(const QString& name, const QByteArray& contents) {
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
      qFatal("cannot write");
    return file.fileName();
  }

  QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(RichFileTest)
#include "rich_file_test.moc"
