// Rich text of older archives: what of it becomes a text of ours, and what is said of the rest.
#include "store/archive/archive_values.h"
#include "store/archive/file_wrapper.h"
#include "store/archive/typedstream.h"
#include "support/archive_json.h"
#include "support/old_archives.h"

#include <QFile>
#include <QTest>

using namespace tockwise;
namespace old = tockwise::old_archive;

namespace {

const QString kArchives = QStringLiteral(TOCKWISE_TEST_DATA "/archives/");

QByteArray sample(const QString& name) {
  QFile file(kArchives + name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray textOf(const QByteArray& utf8, const QByteArray& runs) {
  return old::archive(old::attributed(old::kTextStorage, utf8, runs));
}

// A text of one run with one attribute.
QByteArray textWith(const QByteArray& attribute, const QByteArray& value) {
  return textOf("x", old::run(1, 1, old::dictionary({{attribute, value}})));
}

QByteArray color(int kind, const QByteArray& types, const QByteArray& values) {
  return old::object({"NSColor", "NSObject"},
                     old::group("c", QByteArray(1, char(kind))) + old::group(types, values));
}

QByteArray half() {
  return QByteArray::fromHex("830000003f"); // 0.5 as a float
}

std::vector<qsizetype> lengthsOf(const AttributedText& text) {
  std::vector<qsizetype> lengths;
  for (const TextRun& run : text.runs)
    lengths.push_back(run.length);
  return lengths;
}

} // namespace

class TypedstreamTextTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aTextStorageIsReadWithItsAttributes_data() {
    QTest::addColumn<QString>("name");
    for (const char* order : {"le", "be"})
      QTest::newRow(order) << QStringLiteral("typedstream-synthetic/ts_synth_textstorage_%1.bin")
                                  .arg(QString::fromLatin1(order));
  }
  void aTextStorageIsReadWithItsAttributes() {
    QFETCH(QString, name);
    QVERIFY(looksLikeTypedstream(sample(name)));
    const auto read = readTypedstreamText(sample(name));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QVERIFY(read->isTextStorage);
    QCOMPARE(read->notes, QStringList());
    const AttributedText& text = read->text;
    QCOMPARE(text.text, QStringLiteral("Plain bold link é 😀 ") + QString(300, u'x') +
                            QStringLiteral("\ufffc end"));
    QCOMPARE(lengthsOf(text), (std::vector<qsizetype>{6, 4, 1, 4, 6, 300, 1, 4}));
    QCOMPARE(text.runs[0].attributes.font->name, QStringLiteral("Helvetica"));
    QCOMPARE(text.runs[0].attributes.font->size, 12.0);
    const TextAttributes& bold = text.runs[1].attributes;
    QCOMPARE(bold.font->name, QStringLiteral("Helvetica-Bold"));
    QCOMPARE(bold.font->size, 13.5);
    QCOMPARE(bold.color->argb, 0xffff0040U);
    QCOMPARE(*bold.underline, qint64(1));
    const TextAttributes& link = text.runs[3].attributes;
    QCOMPARE(*link.link, QStringLiteral("https://example.com/a?b=c"));
    QCOMPARE(link.background->argb, 0x40808080U);
    QVERIFY(text.runs[5].attributes.color->followsTheme);
    const TextAttachment& attachment = *text.runs[6].attributes.attachment;
    QCOMPARE(attachment.name, QStringLiteral("dot.png"));
    QVERIFY(attachment.contents.startsWith("\x89PNG"));
  }

  void aTextStorageReadsAsItsJsonSays() {
    const QStringList paths = archiveFixtures(QStringLiteral("typedstream-synthetic"),
                                              QStringLiteral("*textstorage*.bin"));
    QVERIFY(paths.size() >= 2);
    for (const QString& path : paths) {
      const auto read = readTypedstreamText(readFixture(path));
      QVERIFY(read.ok());
      const Value expected = expectedOf(path);
      QCOMPARE(difference(describeExpected(*expected.find(u"root")->find(u"$attributed")),
                          describe(read->text)),
               QString());
    }
  }

  void aConvertedTextReadsTheSame() {
    const auto read = readTypedstreamText(
        sample(QStringLiteral("typedstream-synthetic/ts_synth_textstorage_le.bin")));
    QVERIFY(read.ok());
    const auto again = unarchiveTextStorage(archiveText(read->text));
    QVERIFY(again.ok());
    QCOMPARE(again->text, read->text.text);
    QCOMPARE(lengthsOf(*again), lengthsOf(read->text));
    QVERIFY(again->runs[5].attributes.color->followsTheme);
    // The colour that the name stands for, and the container of the file, are what they were.
    const ArchiveObject& named = again->runs[5].attributes.color->original;
    QCOMPARE(stringField(*named.archive(), named.uid(), u"NSColorName"),
             std::optional(QStringLiteral("textColor")));
    const ArchiveObject& attachment = again->runs[6].attributes.attachment->original;
    const auto wrapper = attachment.archive()->reference(attachment.uid(), u"NSFileWrapper");
    QCOMPARE(dataField(*attachment.archive(), wrapper, u"NSFileWrapperData"),
             std::optional(sample(QStringLiteral("rtfd-synthetic/filewrapper_regular_png.bin"))));
  }

  void colorsOfEveryKindAreRead_data() {
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<quint32>("argb");
    const auto row = [](const char* tag, const QByteArray& bytes, quint32 argb) {
      QTest::newRow(tag) << bytes << argb;
    };
    const QByteArray zero = old::integer(0);
    const QByteArray one = old::integer(1);
    row("rgb", color(1, "ffff", one + half() + zero + one), 0xffff8000);
    row("device rgb", color(2, "ffff", zero + zero + one + half()), 0x800000ff);
    row("white", color(3, "ff", half() + one), 0xff808080);
    row("device white", color(4, "ff", one + zero), 0x00ffffff);
    row("cmyk", color(5, "fffff", one + zero + zero + zero + one), 0xff00ffff);
    row("beyond the range", color(1, "ffff", old::integer(7) + old::integer(-7) + zero + one),
        0xffff0000);
    row("not a number", color(3, "ff", QByteArray::fromHex("830000c07f") + one), 0xff000000);
    row("named",
        color(6, "@@@",
              old::string("System") + old::string("gridColor") + color(3, "ff", half() + one)),
        0xff808080);
  }
  void colorsOfEveryKindAreRead() {
    QFETCH(QByteArray, color);
    QFETCH(quint32, argb);
    const auto read = readTypedstreamText(textWith("NSColor", color));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QVERIFY(read->text.runs[0].attributes.color.has_value());
    QCOMPARE(read->text.runs[0].attributes.color->argb, argb);
    QVERIFY(!read->text.runs[0].attributes.color->followsTheme);
  }

  void fontNamesOfBothEncodingsAreRead_data() {
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QString>("name");
    QTest::newRow("NeXTSTEP") << QByteArray("\x05\0\0\0\x04\0\0\0Caf\xe9", 12)
                              << QStringLiteral("CafØ");
    QTest::newRow("UTF-16, little")
        << QByteArray("\x06\0\0\0\x06\0\0\0\xff\xfe\x41\0\xe9\0\0\0", 16) << QStringLiteral("Aé");
    QTest::newRow("UTF-16, big") << QByteArray("\x06\0\0\0\x06\0\0\0\xfe\xff\0\x41\0\xe9\0\0", 16)
                                 << QStringLiteral("Aé");
  }
  void fontNamesOfBothEncodingsAreRead() {
    QFETCH(QByteArray, list);
    QFETCH(QString, name);
    const QByteArray font =
        old::object({"NSFont", "NSObject"},
                    old::group("i", old::integer(qint32(list.size()))) +
                        old::group('[' + QByteArray::number(list.size()) + "c]", list) +
                        old::group("f", old::integer(9)) + old::group("c", QByteArray(1, '\0')));
    const auto read = readTypedstreamText(textWith("NSFont", font));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QVERIFY(read->text.runs[0].attributes.font.has_value());
    QCOMPARE(read->text.runs[0].attributes.font->name, name);
    QCOMPARE(read->text.runs[0].attributes.font->size, 9.0);
  }

  void aDamagedFontCostsTheFontOnly() {
    const QByteArray font = old::object({"NSFont", "NSObject"}, old::group("f", old::integer(9)));
    const auto read = readTypedstreamText(textOf(
        "x",
        old::run(1, 1,
                 old::dictionary({{"NSFont", font}, {"NSUnderline", old::number("i", "\x01")}}))));
    QVERIFY(read.ok());
    QVERIFY(!read->text.runs[0].attributes.font.has_value());
    QCOMPARE(*read->text.runs[0].attributes.underline, qint64(1));
    QCOMPARE(read->notes, QStringList{QStringLiteral(
                              "the attribute NSFont of this old note was not converted")});
  }

  void paragraphFormattingIsLeftOutAndSaidSo() {
    const QByteArray style = old::object({"NSParagraphStyle", "NSObject"}, old::group("c", "\x04"));
    const auto read = readTypedstreamText(
        textOf("ab", old::run(1, 1, old::dictionary({{"NSParagraphStyle", style}})) +
                         old::run(2, 1, old::dictionary({{"NSParagraphStyle", style}}))));
    QVERIFY(read.ok());
    QVERIFY(!read->text.runs[0].attributes.paragraph.has_value());
    QCOMPARE(read->notes, QStringList{QStringLiteral(
                              "paragraph formatting of this old note was not converted")});
  }

  void bookkeepingIsDroppedWithoutAWord() {
    const QByteArray cursor = old::object({"NSCursor", "NSObject"}, old::group("c", "\x01"));
    const auto read = readTypedstreamText(textWith("NSCursor", cursor));
    QVERIFY(read.ok());
    QCOMPARE(read->notes, QStringList());
    QVERIFY(read->text.runs[0].attributes == TextAttributes());
  }

  void numbersAndTextsOfOtherAttributesAreCarried() {
    const auto read = readTypedstreamText(
        textOf("x", old::run(1, 1,
                             old::dictionary({{"NSToolTip", old::string("a tip")},
                                              {"NSKern", old::number("f", half())},
                                              {"NSStrikethrough", old::number("i", "\x02")}}))));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QCOMPARE(read->notes, QStringList());
    const TextAttributes& attributes = read->text.runs[0].attributes;
    QCOMPARE(*attributes.strikethrough, qint64(2));
    QCOMPARE(attributes.others.size(), size_t(2));
    QCOMPARE(attributes.others[1].name, QStringLiteral("NSToolTip"));
    const ArchiveObject& tip = attributes.others[1].value;
    QCOMPARE(stringAt(*tip.archive(), tip.uid()), std::optional(QStringLiteral("a tip")));
  }

  void linksOfEveryFormAreRead_data() {
    QTest::addColumn<QByteArray>("link");
    QTest::addColumn<QString>("address");
    const auto url = [](const QByteArray& groups) {
      return old::object({"NSURL", "NSObject"}, groups);
    };
    const QByteArray base = url(old::group("c", QByteArray(1, '\0')) +
                                old::group("@", old::string("https://example.com/a/b")));
    QTest::newRow("text") << old::string("mailto:a@b.c") << QStringLiteral("mailto:a@b.c");
    QTest::newRow("absolute") << base << QStringLiteral("https://example.com/a/b");
    QTest::newRow("with a base") << url(old::group("c", "\x01") + old::group("@", base) +
                                        old::group("@", old::string("c?d")))
                                 << QStringLiteral("https://example.com/a/c?d");
  }
  void linksOfEveryFormAreRead() {
    QFETCH(QByteArray, link);
    QFETCH(QString, address);
    const auto read = readTypedstreamText(textWith("NSLink", link));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QCOMPARE(read->text.runs[0].attributes.link, std::optional(address));
  }

  void anAttachedFolderIsKeptAsItIs() {
    const FileWrapper folder{FileWrapper::Type::Folder,
                             {},
                             {},
                             {{FileWrapper::Type::RegularFile, QStringLiteral("a"), "1", {}}}};
    const QByteArray container = writeFileWrapper(folder);
    const auto read = readTypedstreamText(
        textOf("\xef\xbf\xbc",
               old::run(1, 1, old::dictionary({{"NSAttachment", old::attachment(container)}}))));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    const TextAttachment& attachment = *read->text.runs[0].attributes.attachment;
    QVERIFY(attachment.contents.isEmpty());
    QVERIFY(archiveText(read->text).contains(container));
  }

  void runsShareAttributesByTheirNumber() {
    const QByteArray known = old::group("iI", old::integer(1) + old::integer(2));
    const QByteArray underlined = old::dictionary({{"NSUnderline", old::number("i", "\x01")}});
    const auto read = readTypedstreamText(
        textOf("abcd", old::run(1, 1, underlined) + old::run(2, 1, old::dictionary({})) + known));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QCOMPARE(lengthsOf(read->text), (std::vector<qsizetype>{1, 1, 2}));
    QVERIFY(read->text.runs[0].attributes.underline.has_value());
    QVERIFY(!read->text.runs[1].attributes.underline.has_value());
    QVERIFY(read->text.runs[2].attributes.underline.has_value());
  }

  void damagedRunsLeaveTheText_data() {
    QTest::addColumn<QByteArray>("runs");
    QTest::addColumn<int>("notes");
    const QByteArray attributes = old::dictionary({});
    QTest::newRow("none") << QByteArray() << 1;
    QTest::newRow("too short") << old::run(1, 2, attributes) << 1;
    QTest::newRow("too long") << old::run(1, 200, attributes) << 0;
    QTest::newRow("negative index") << old::run(-1, 4, attributes) << 1;
    QTest::newRow("index that skips one") << old::run(2, 4, attributes) << 1;
    QTest::newRow("no attributes") << old::group("iI", old::integer(1) + old::integer(4)) << 1;
    QTest::newRow("attributes of another kind") << old::run(1, 4, old::string("x")) << 1;
    QTest::newRow("other groups") << old::group("@", old::string("x")) << 1;
  }
  void damagedRunsLeaveTheText() {
    QFETCH(QByteArray, runs);
    QFETCH(int, notes);
    const auto read = readTypedstreamText(textOf("abcd", runs));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QCOMPARE(read->text.text, QStringLiteral("abcd"));
    QCOMPARE(int(read->notes.size()), notes);
    qsizetype covered = 0;
    for (const qsizetype length : lengthsOf(read->text))
      covered += length;
    QCOMPARE(covered, qsizetype(4));
  }

  void anEmptyTextHasNoRuns() {
    const auto read = readTypedstreamText(textOf("", {}));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QVERIFY(read->isTextStorage);
    QVERIFY(read->text.isEmpty());
    QCOMPARE(read->notes, QStringList());
  }

  void otherAttributedStringsAreNoTextStorage() {
    const auto read = readTypedstreamText(old::archive(
        old::attributed({"NSMutableAttributedString", "NSAttributedString", "NSObject"}, "a",
                        old::run(1, 1, old::dictionary({})))));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QVERIFY(!read->isTextStorage);
    QCOMPARE(read->text.text, QStringLiteral("a"));
  }

  void subclassesOfATextStorageAreOne() {
    std::vector<QByteArray> chain = old::kTextStorage;
    chain.insert(chain.begin(), "NSConcreteTextStorage");
    const auto read = readTypedstreamText(
        old::archive(old::attributed(chain, "a", old::run(1, 1, old::dictionary({})))));
    QVERIFY(read.ok());
    QVERIFY(read->isTextStorage);
  }

  void whatIsNoTextIsRefused_data() {
    QTest::addColumn<QByteArray>("archive");
    QTest::newRow("a string") << old::archive(old::string("x"));
    QTest::newRow("nil") << old::archive(old::nil());
    QTest::newRow("no string in it")
        << old::archive(old::object(old::kTextStorage, old::group("i", "\x01")));
    QTest::newRow("a dictionary") << sample(
        QStringLiteral("typedstream-synthetic/ts_synth_dictionary_le.bin"));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("keyed") << QByteArray("bplist00");
  }
  void whatIsNoTextIsRefused() {
    QFETCH(QByteArray, archive);
    const auto read = readTypedstreamText(archive);
    QVERIFY(!read.ok());
    QVERIFY(read.error().kind == Error::Kind::Damaged);
  }

  void attributesWithinThemselvesAreCutOff() {
    // Numbered before it: the text storage with its four classes, the string with its two.
    constexpr int numberOfDictionary = 8;
    const QByteArray groups = old::group("i", "\x01") + old::group("@", old::string("NSLink")) +
                              old::group("@", old::integer(numberOfDictionary - 110));
    const auto read = readTypedstreamText(
        textOf("x", old::run(1, 1, old::object({"NSDictionary", "NSObject"}, groups))));
    QVERIFY2(read.ok(), read ? "" : qPrintable(read.error().message));
    QCOMPARE(read->text.text, QStringLiteral("x"));
    QVERIFY(!read->text.runs[0].attributes.link.has_value());
  }

  void namesOfAttributesMayBeOfAnyKind() {
    const QByteArray odd =
        old::object({"NSString", "NSData", "NSObject"}, old::group("i", QByteArray(1, '\0')));
    const QByteArray groups =
        old::group("i", "\x01") + old::group("@", odd) + old::group("@", old::string("x"));
    const auto read = readTypedstreamText(
        textOf("x", old::run(1, 1, old::object({"NSDictionary", "NSObject"}, groups))));
    QVERIFY(read.ok());
    QVERIFY(read->text.runs[0].attributes == TextAttributes());
  }

  void hostileSamplesAreRefused() {
    for (const char* name : {"truncated", "deep_nesting", "huge_bytes", "negative_length"}) {
      const QByteArray archive =
          sample(QStringLiteral("hostile/ts_%1.bin").arg(QString::fromLatin1(name)));
      QVERIFY(!archive.isEmpty());
      QVERIFY(!readTypedstreamText(archive).ok());
    }
  }
};

QTEST_GUILESS_MAIN(TypedstreamTextTest)
#include "typedstream_text_test.moc"
