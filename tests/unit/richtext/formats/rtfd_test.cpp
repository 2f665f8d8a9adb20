// RTFD in one piece: RTF and its attached files.
#include "carried_text.h"
#include "richtext/text_formats.h"
#include "store/archive/file_wrapper.h"
#include "store/archive/text_archive.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace tockwise;

namespace {

QByteArray fileContents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class RtfdTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aTextComesBackFromItsRtfd() {
    for (quint32 seed = 1000; seed < 1200; ++seed) {
      const AttributedText text = RandomCarried(seed, Format::Rtf).text();
      const auto back = fromRTFD(toRTFD(text));
      QVERIFY(back);
      AttributedText wanted = carriedText(text, Format::Rtf);
      // Equal names of different files are told apart by a number.
      QCOMPARE(back->text, wanted.text);
      for (size_t i = 0; i < wanted.runs.size(); ++i) {
        if (wanted.runs[i].attributes.attachment)
          wanted.runs[i].attributes.attachment->name = back->runs.at(i).attributes.attachment->name;
      }
      QVERIFY2(*back == wanted, QByteArray::number(seed));
    }
  }

  void archivedTextsComeBack() {
    int read = 0;
    const QDir archives(QStringLiteral(TOCKWISE_TEST_DATA "/archives"));
    for (const QString& folder :
         {QStringLiteral("keyed-synthetic"), QStringLiteral("keyed-gnustep")}) {
      const QDir texts(archives.filePath(folder));
      for (const QString& name : texts.entryList({QStringLiteral("*.plist")})) {
        const auto archived = unarchiveText(fileContents(texts.filePath(name)));
        if (!archived)
          continue;
        ++read;
        AttributedText wanted = carriedText(archived->text, Format::Rtf);
        const auto back = fromRTFD(toRTFD(archived->text));
        QVERIFY(back);
        if (archived->text.text.contains(kPicture) && back->text != wanted.text) {
          QVERIFY(back->text.contains(u'[')); // an attachment whose contents are not understood
          continue;
        }
        QCOMPARE(back->text, wanted.text);
        QVERIFY2(*back == wanted, qPrintable(name));
      }
    }
    QVERIFY(read >= 6);
  }

  void attachedFilesHaveNamesOfTheirOwn() {
    const AttributedText text = pictureText({{QStringLiteral("a.png"), pngOf({1, 1}), {}},
                                             {QStringLiteral("A.png"), pngOf({2, 1}), {}},
                                             {QStringLiteral("a.png"), pngOf({1, 1}), {}},
                                             {QStringLiteral("../../etc/passwd"), "x", {}},
                                             {QStringLiteral("TXT.rtf"), "y", {}},
                                             {QStringLiteral("__@PreferredName@__"), "z", {}},
                                             {QString(), "w", {}}});
    const QByteArray bytes = toRTFD(text);
    const auto folder = readFileWrapper(bytes);
    QVERIFY(folder);
    QStringList names;
    for (const FileWrapper& file : folder->children)
      names += file.name;
    QCOMPARE(names, QStringList({QStringLiteral("TXT.rtf"), QStringLiteral("a.png"),
                                 QStringLiteral("A 2.png"), QStringLiteral("passwd"),
                                 QStringLiteral("TXT 2.rtf"), QStringLiteral("_@PreferredName@__"),
                                 QStringLiteral("attachment")}));
    const auto back = fromRTFD(bytes);
    QVERIFY(back);
    QCOMPARE(back->runs.size(), text.runs.size());
    for (size_t i = 0; i < text.runs.size(); ++i)
      QCOMPARE(back->runs[i].attributes.attachment->contents,
               text.runs[i].attributes.attachment->contents);
  }

  void aFileThatIsNotThereLeavesItsPlaceholder() {
    const FileWrapper folder{
        FileWrapper::Type::Folder,
        {},
        {},
        {{FileWrapper::Type::RegularFile,
          QStringLiteral("TXT.rtf"),
          "{\\rtf1 a{{\\NeXTGraphic ../TXT.rtf \\width10}\\'ac}b{{\\NeXTGraphic TXT.rtf}\\'ac}}",
          {}}}};
    const auto text = fromRTFD(writeFileWrapper(folder));
    QVERIFY(text);
    QCOMPARE(text->text, QStringLiteral("a\u00acb\u00ac"));
  }

  void onlyThePlaceholderBesideAFileGoes_data() {
    QTest::addColumn<QByteArray>("beside");
    QTest::addColumn<QString>("text");
    QTest::newRow("escaped") << QByteArray("\\'ac}b") << QStringLiteral("a\ufffcb");
    QTest::newRow("as a byte") << QByteArray("\xac}b") << QStringLiteral("a\ufffcb");
    QTest::newRow("none") << QByteArray("}b") << QStringLiteral("a\ufffcb");
    QTest::newRow("another escape") << QByteArray("}\\'e9") << QStringLiteral("a\ufffc\u00e9");
    QTest::newRow("twice") << QByteArray("\xac\xac}b") << QStringLiteral("a\ufffc\u00acb");
  }
  void onlyThePlaceholderBesideAFileGoes() {
    QFETCH(QByteArray, beside);
    QFETCH(QString, text);
    const FileWrapper folder{
        FileWrapper::Type::Folder,
        {},
        {},
        {{FileWrapper::Type::RegularFile,
          QStringLiteral("TXT.rtf"),
          "{\\rtf1\\ansi a{{\\NeXTGraphic x.png}" + beside + "}",
          {}},
         {FileWrapper::Type::RegularFile, QStringLiteral("x.png"), pngOf({1, 1}), {}}}};
    const auto read = fromRTFD(writeFileWrapper(folder));
    QVERIFY(read);
    QCOMPARE(read->text, text);
  }

  void theContainerOfOtherProgramsIsRead() {
    const auto text = fromRTFD(fileContents(
        QStringLiteral(TOCKWISE_TEST_DATA "/archives/rtfd-synthetic/flat_rtfd_image_padded.bin")));
    QVERIFY(text);
    QCOMPARE(text->text, QStringLiteral("Before \ufffc after"));
    QCOMPARE(text->runs[1].attributes.attachment->name, QStringLiteral("dot.png"));
    QVERIFY(!fromRTFD("rtfd").ok());
    QVERIFY(!fromRTFD({}).ok());
    QVERIFY(
        !fromRTFD(fileContents(QStringLiteral(
                      TOCKWISE_TEST_DATA "/archives/rtfd-synthetic/filewrapper_regular_png.bin")))
             .ok());
  }
};

QTEST_GUILESS_MAIN(RtfdTest)
#include "rtfd_test.moc"
