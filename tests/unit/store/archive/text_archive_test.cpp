// Archived rich text: what is written, and what a reading gives back.
#include "store/archive/archive_values.h"
#include "store/archive/run_codec.h"
#include "store/archive/text_archive.h"
#include "support/archive_builder.h"
#include "support/archive_json.h"

#include <QTest>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

TextFont font(const char* name, double size) {
  return {text(name), size, {}};
}

ParagraphStyle fullStyle() {
  ParagraphStyle style;
  style.alignment = TextAlignment::Justified;
  style.firstLineHeadIndent = 10;
  style.headIndent = 20.5;
  style.tailIndent = -5;
  style.paragraphSpacing = 6;
  style.paragraphSpacingBefore = 7;
  style.lineSpacing = 2;
  style.lineHeightMultiple = 1.25;
  style.minLineHeight = 11;
  style.maxLineHeight = 30;
  style.defaultTabInterval = 36;
  style.tabStops = std::vector<TextTab>{{36, 0, {}}, {72.5, 2, {}}};
  style.writingDirection = 2;
  style.lists = {text("{disc}"), text("{decimal}.")};
  return style;
}

TextAttachment picture() {
  return {text("dot é.png"), QByteArray("\x89PNG and so on"), {}};
}

// A text with every attribute that we know.
AttributedText fullText() {
  AttributedText full;
  full.append(text("plain "), {});
  TextAttributes attributes;
  attributes.font = font("Helvetica-BoldOblique", 18.5);
  attributes.color = TextColor{0x80ff0001, false, {}};
  attributes.background = TextColor{0xff4c4c4c, false, {}};
  attributes.underline = 9;
  attributes.strikethrough = 0x8101;
  attributes.superscript = -1;
  attributes.link = text("https://example.com/a?b=c#d");
  attributes.paragraph = fullStyle();
  full.append(text("é 😀 formatted\n"), attributes);
  attributes.link = text("not an address");
  attributes.paragraph = ParagraphStyle();
  full.append(text("other"), attributes);
  TextAttributes attached;
  attached.attachment = picture();
  full.append(QString(AttributedText::kAttachmentCharacter), attached);
  full.append(QString(AttributedText::kAttachmentCharacter), attached);
  return full;
}

std::shared_ptr<const KeyedArchive> opened(const QByteArray& bytes) {
  const auto archive = KeyedArchive::open(bytes);
  return archive ? archive.value() : nullptr;
}

// The names of a record's fields, without $class.
QStringList fieldsOf(const KeyedArchive& archive, KeyedArchive::Uid uid) {
  QStringList names;
  const plist::Ref record = archive.ref(uid);
  for (qsizetype i = 0; i < archive.list().count(record); ++i)
    names.append(archive.list().string(archive.list().key(record, i)));
  names.removeAll(QStringLiteral("$class"));
  return names;
}

// The value of an attribute in the dictionary with that uid.
KeyedArchive::Uid attributeIn(const KeyedArchive& archive, KeyedArchive::Uid dictionary,
                              QStringView name) {
  const auto pairs = pairsAt(archive, dictionary);
  for (const auto& [key, value] : *pairs) {
    if (stringAt(archive, key) == name)
      return value;
  }
  return KeyedArchive::kNil;
}

// The archive of a text with one run.
std::shared_ptr<const KeyedArchive> archiveOfOne(const TextAttributes& attributes) {
  AttributedText one;
  one.append(text("x"), attributes);
  return opened(archiveText(one));
}

KeyedArchive::Uid attributesOf(const KeyedArchive& archive) {
  return archive.reference(archive.root(), u"NSAttributes");
}

} // namespace

class TextArchiveTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aTextReadsBackAsItWasWritten() {
    const AttributedText full = fullText();
    const auto again = unarchiveText(archiveText(full));
    QVERIFY(again.ok());
    QCOMPARE(again->notes, QStringList());
    QVERIFY(again->isTextStorage);
    QCOMPARE(difference(describe(full), describe(again->text)), QString());
    QVERIFY(withoutOriginals(again->text) == full);
    QVERIFY(again->text != full); // it knows the objects that it came from
  }

  void writingTheSameTextGivesTheSameBytes() {
    const QByteArray once = archiveText(fullText());
    QCOMPARE(archiveText(fullText()), once);
    const QByteArray again = archiveText(unarchiveText(once)->text);
    QCOMPARE(archiveText(unarchiveText(again)->text), again);
    QCOMPARE(again.size(), once.size());
  }

  void anEmptyTextHasNoAttributes() {
    const auto archive = opened(archiveText({}));
    QVERIFY(archive);
    QCOMPARE(fieldsOf(*archive, archive->root()),
             QStringList({text("NSString"), text("NSDelegate")}));
    QCOMPARE(archive->reference(archive->root(), u"NSDelegate"), KeyedArchive::kNil);
    const auto string = archive->reference(archive->root(), u"NSString");
    QVERIFY(archive->isKindOf(string, u"NSMutableString"));
    const auto again = unarchiveText(archiveText({}));
    QVERIFY(again.ok());
    QVERIFY(again->text == AttributedText());
  }

  void aTextIsAnArchivedTextStorage() {
    const auto archive = opened(archiveText(fullText()));
    const auto* record = archive->classOf(archive->root());
    QCOMPARE(record->chain, QStringList({text("NSTextStorage"), text("NSMutableAttributedString"),
                                         text("NSAttributedString"), text("NSObject")}));
    QVERIFY(archive->isKindOf(attributesOf(*archive), u"NSMutableArray"));
    const auto table = archive->reference(archive->root(), u"NSAttributeInfo");
    QVERIFY(archive->isKindOf(table, u"NSMutableData"));
    QCOMPARE(decodeRuns(*dataAt(*archive, table)).runs.size(), size_t(5));
  }

  void oneRunHasADictionaryAndNoTable() {
    TextAttributes attributes;
    attributes.font = font("Helvetica", 12);
    const auto archive = archiveOfOne(attributes);
    QVERIFY(archive->isKindOf(attributesOf(*archive), u"NSDictionary"));
    QVERIFY(!archive->field(archive->root(), u"NSAttributeInfo"));
  }

  void equalAttributesAreOneDictionary() {
    TextAttributes bold;
    bold.font = font("Helvetica-Bold", 12);
    AttributedText striped;
    for (int i = 0; i < 10; ++i)
      striped.append(text("ab"), i % 2 == 0 ? bold : TextAttributes());
    const auto archive = opened(archiveText(striped));
    QCOMPARE(elementsAt(*archive, attributesOf(*archive))->size(), size_t(2));
    const auto table = dataField(*archive, archive->root(), u"NSAttributeInfo");
    QCOMPARE(decodeRuns(*table).runs.size(), size_t(10));
  }

  void runsAreNumbersOfSevenBitsAByte() {
    const std::vector<RunEntry> runs{{25, 0}, {4, 1}, {8, 0}, {12, 1}, {34, 0}, {7, 1}, {517, 0}};
    const auto bytes = QByteArray::fromHex("190004010800 0c01220007018504 00");
    QCOMPARE(encodeRuns(runs), bytes);
    QVERIFY(decodeRuns(bytes).runs == runs);
    const std::vector<RunEntry> largest{{0xffffffff, 0xffffffff}};
    QVERIFY(decodeRuns(encodeRuns(largest)).runs == largest);
    for (const char* cut : {"80", "0180", "ffffffff1f00", "ffffffffff0100"}) {
      QVERIFY2(decodeRuns(QByteArray::fromHex(cut)).isCut, cut);
      QVERIFY2(decodeRuns(QByteArray::fromHex(cut)).runs.empty(), cut);
    }
  }

  void aFontIsWrittenWithNameSizeAndFlags() {
    TextAttributes attributes;
    attributes.font = font("Helvetica-Bold", 13);
    const auto archive = archiveOfOne(attributes);
    const auto uid = attributeIn(*archive, attributesOf(*archive), u"NSFont");
    QCOMPARE(stringField(*archive, uid, u"NSName"), text("Helvetica-Bold"));
    QCOMPARE(realField(*archive, uid, u"NSSize"), 13.0);
    QCOMPARE(integerField(*archive, uid, u"NSfFlags"), 16);
    QCOMPARE(archive->list().kind(*archive->field(uid, u"NSSize")), plist::Kind::Real);
  }

  void aColorIsWrittenAsComponents_data() {
    QTest::addColumn<quint32>("argb");
    QTest::addColumn<QByteArray>("components");
    QTest::newRow("red") << 0xffff0000U << QByteArray("1 0 0", 6);
    QTest::newRow("half blue") << 0x800000ffU << QByteArray("0 0 1 0.5019607843", 19);
    QTest::newRow("grey") << 0xff4c4c4cU
                          << QByteArray("0.2980392157 0.2980392157 0.2980392157", 39);
  }
  void aColorIsWrittenAsComponents() {
    QFETCH(quint32, argb);
    QFETCH(QByteArray, components);
    TextAttributes attributes;
    attributes.color = TextColor{argb, false, {}};
    const auto archive = archiveOfOne(attributes);
    const auto uid = attributeIn(*archive, attributesOf(*archive), u"NSColor");
    QCOMPARE(integerField(*archive, uid, u"NSColorSpace"), 1);
    QCOMPARE(dataField(*archive, uid, u"NSRGB"), components);
  }

  void aParagraphStyleLeavesOutItsDefaults() {
    TextAttributes attributes;
    attributes.paragraph = ParagraphStyle();
    auto archive = archiveOfOne(attributes);
    auto uid = attributeIn(*archive, attributesOf(*archive), u"NSParagraphStyle");
    QCOMPARE(fieldsOf(*archive, uid), QStringList(text("NSTabStops")));
    attributes.paragraph->headIndent = 20;
    attributes.paragraph->tabStops = std::vector<TextTab>{{36, 0, {}}};
    archive = archiveOfOne(attributes);
    uid = attributeIn(*archive, attributesOf(*archive), u"NSParagraphStyle");
    QCOMPARE(fieldsOf(*archive, uid), QStringList({text("NSTabStops"), text("NSHeadIndent")}));
    const auto tabs = elementsAt(*archive, archive->reference(uid, u"NSTabStops"));
    QCOMPARE(fieldsOf(*archive, tabs->front()), QStringList(text("NSLocation")));
  }

  void addressesAreUrlsAndOtherLinksTexts() {
    TextAttributes attributes;
    attributes.link = text("mailto:a@example.com");
    auto archive = archiveOfOne(attributes);
    QVERIFY(archive->isKindOf(attributeIn(*archive, attributesOf(*archive), u"NSLink"), u"NSURL"));
    attributes.link = text("no address: at all");
    archive = archiveOfOne(attributes);
    QCOMPARE(archive->kind(attributeIn(*archive, attributesOf(*archive), u"NSLink")),
             plist::Kind::String);
  }

  void aUrlIsTakenWithItsBase() {
    ArchiveBuilder builder;
    const QStringList url{text("NSURL")};
    const auto base = builder.record({{text("NS.base"), Value::Uid{0}},
                                      {text("NS.relative"), builder.text("http://a.example/b/c")}},
                                     url);
    const auto link =
        builder.record({{text("NS.base"), base}, {text("NS.relative"), builder.text("d?e")}}, url);
    const auto attributes = builder.dictionary({{builder.text("NSLink"), link}});
    const auto read = unarchiveText(builder.finish(builder.textStorage(text("x"), attributes)));
    QVERIFY(read.ok());
    QCOMPARE(read->text.runs.front().attributes.link, text("http://a.example/b/d?e"));
  }

  void attachmentsWithContentsOfTheirOwnUseThem() {
    ArchiveBuilder builder;
    const auto attachment = builder.record({{text("NSFileWrapper"), Value::Uid{0}},
                                            {text("NS.contents"), builder.add(QByteArray("pic"))},
                                            {text("NS.fileType"), builder.text("public.png")}},
                                           {text("NSTextAttachment")});
    const auto attributes = builder.dictionary({{builder.text("NSAttachment"), attachment}});
    const auto read =
        unarchiveText(builder.finish(builder.textStorage(text("\uFFFC"), attributes)));
    QVERIFY(read.ok());
    QCOMPARE(read->text.runs.front().attributes.attachment->contents, QByteArray("pic"));
  }

  void anAttachmentStandsAtOneCharacterOfItsOwn() {
    ArchiveBuilder builder;
    const auto attachment = builder.record({}, {text("NSTextAttachment")});
    const auto attributes = builder.dictionary({{builder.text("NSAttachment"), attachment}});
    const QString whole = text("a\uFFFC\uFFFCbc");
    const auto read = unarchiveText(builder.finish(builder.textStorage(whole, attributes)));
    QVERIFY(read.ok());
    QCOMPARE(read->text.text, whole);
    std::vector<std::pair<qsizetype, bool>> runs;
    for (const TextRun& run : read->text.runs)
      runs.emplace_back(run.length, run.attributes.attachment.has_value());
    QVERIFY(runs == (std::vector<std::pair<qsizetype, bool>>{
                        {1, false}, {1, true}, {1, true}, {2, false}}));
  }

  void aTextMayHaveTheAttachmentCharacterWithoutAttachment() {
    const auto read = unarchiveText(
        readFixture(archiveFixtures(text("keyed-gnustep"), text("gs_textstorage.plist")).value(0)));
    AttributedText plain;
    plain.append(read->text.text, {});
    QVERIFY(withoutOriginals(unarchiveText(archiveText(plain))->text) == plain);
  }

  void onlyTextStoragesAreShown() {
    const QString folder = text("keyed-synthetic");
    const auto storage = archiveFixtures(folder, text("apple_textstorage_single.plist")).value(0);
    const auto other = archiveFixtures(folder, text("apple_mutable_single.plist")).value(0);
    QCOMPARE(unarchiveTextStorage(readFixture(storage))->text, text("one run only"));
    QCOMPARE(unarchiveTextStorage(readFixture(other)).error().kind, Error::Kind::NotFound);
    QCOMPARE(unarchiveTextStorage({}).error().kind, Error::Kind::Damaged);
  }

  void anotherVersionIsReadWithANote() {
    ArchiveBuilder builder;
    const auto root = builder.textStorage(text("x"), builder.dictionary({}));
    const auto read = unarchiveText(builder.finish(root, 100001));
    QVERIFY(read.ok());
    QCOMPARE(read->notes, QStringList(text("the archive has version 100001")));
  }

  void runsThatDoNotFitTheTextAreWrittenToFit() {
    AttributedText odd;
    odd.text = text("abcd");
    TextAttributes bold;
    bold.font = font("Helvetica-Bold", 12);
    odd.runs = {{2, bold}};
    QCOMPARE(unarchiveText(archiveText(odd))->text.runs.back().length, 2);
    odd.runs = {{2, bold}, {-1, {}}, {100, {}}};
    const auto read = unarchiveText(archiveText(odd));
    QCOMPARE(read->text.text, odd.text);
    QCOMPARE(read->text.runs.size(), size_t(2));
    QCOMPARE(read->text.runs.back().length, 2);
  }

  void appendingEqualAttributesGoesOnWithTheRun() {
    TextAttributes bold;
    bold.font = font("Helvetica-Bold", 12);
    AttributedText all;
    all.append(text("a"), bold);
    all.append(text("b"), bold);
    all.append(QString(), {});
    QVERIFY(all.runs == std::vector<TextRun>({{2, bold}}));
    all.runs = {{1, bold}, {0, {}}, {1, bold}};
    all.joinEqualRuns();
    QVERIFY(all.runs == std::vector<TextRun>({{2, bold}}));
    TextAttributes attached;
    attached.attachment = picture();
    all.runs = {{1, attached}, {1, attached}};
    all.joinEqualRuns();
    QCOMPARE(all.runs.size(), size_t(2)); // two pictures
  }
};

QTEST_GUILESS_MAIN(TextArchiveTest)
#include "text_archive_test.moc"
