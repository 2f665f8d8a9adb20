// Archives that are damaged, or made to hurt: bounded in memory and time, and they lose no more
// than they must.
#include "store/archive/archive_values.h"
#include "store/archive/keyed_value.h"
#include "store/archive/run_codec.h"
#include "store/archive/text_archive.h"
#include "support/archive_builder.h"
#include "support/archive_json.h"
#include "support/memory_guard.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

// Arrays within arrays.
QByteArray nested(int depth) {
  ArchiveBuilder builder;
  auto inner = builder.array({});
  for (int i = 1; i < depth; ++i)
    inner = builder.array({inner});
  return builder.finish(inner);
}

UnarchivedText readText(ArchiveBuilder& builder, const QString& whole, Value::Uid attributes,
                        const QByteArray& table = {}) {
  auto read = unarchiveText(builder.finish(builder.textStorage(whole, attributes, table)));
  if (!read)
    qFatal("%s", qPrintable(read.error().message));
  return std::move(read).value();
}

UnarchivedText readAttribute(ArchiveBuilder& builder, const char* name, Value::Uid value) {
  return readText(builder, text("x"), builder.dictionary({{builder.text(name), value}}));
}

QByteArray archiveOf(const char* fixture) {
  return readFixture(archiveFixtures(text("keyed-synthetic"), text(fixture)).value(0));
}

} // namespace

class KeyedHostileTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void nestingIsLimited() {
    QVERIFY(unarchiveValue(nested(128)).ok());
    QCOMPARE(unarchiveValue(nested(129)).error().kind, Error::Kind::Damaged);
    QCOMPARE(unarchiveValue(nested(20000)).error().kind, Error::Kind::Damaged);
  }

  void sharingThatUnfoldsWithoutEndIsRefused() {
    const MemoryGuard guard;
    ArchiveBuilder builder;
    auto inner = builder.array({});
    for (int i = 0; i < 40; ++i)
      inner = builder.array({inner, inner});
    const auto value = unarchiveValue(builder.finish(inner));
    QCOMPARE(value.error().kind, Error::Kind::Damaged);
    QVERIFY2(guard.isBounded(), qPrintable(QString::number(guard.grownMegabytes())));
  }

  void sharingThatUnfoldsWithoutEndIsCarriedAsItIs() {
    const MemoryGuard guard;
    ArchiveBuilder builder;
    auto inner = builder.array({});
    for (int i = 0; i < 40; ++i)
      inner = builder.array({inner, inner});
    const auto read = readAttribute(builder, "XYZ", inner);
    const QByteArray written = archiveText(read.text);
    QVERIFY(written.size() < 10000);
    QVERIFY(unarchiveText(written).ok());
    QVERIFY2(guard.isBounded(), qPrintable(QString::number(guard.grownMegabytes())));
  }

  void aLongChainOfObjectsIsCarried() {
    ArchiveBuilder builder;
    auto next = builder.add(qint64(42));
    const auto chainClass = builder.classRecord({text("XYZChain")});
    for (int i = 0; i < 50000; ++i)
      next = builder.add(Value::Dictionary{{text("next"), next}, {text("$class"), chainClass}});
    const auto read = readAttribute(builder, "XYZ", next);
    const auto again = unarchiveText(archiveText(read.text));
    QVERIFY(again.ok());
    const ArchiveObject& head = again->text.runs.front().attributes.others.front().value;
    QVERIFY(head.archive()->count() > 50000);
  }

  void runsCannotUnfoldBeyondTheirLimit() {
    const MemoryGuard guard;
    constexpr qsizetype kUnits = 600000;
    ArchiveBuilder builder;
    const auto font = builder.record(
        {{text("NSName"), builder.text("Helvetica")}, {text("NSSize"), 12.0}}, {text("NSFont")});
    const auto one = builder.dictionary({{builder.text("NSFont"), font}});
    const auto other = builder.dictionary({});
    const QByteArray pair = encodeRuns({{1, 0}, {1, 1}});
    const auto read = readText(builder, QString(kUnits, u'x'), builder.array({one, other}),
                               pair.repeated(kUnits / 2));
    QCOMPARE(read.notes,
             QStringList(text("there are too many runs; the last ones lost their attributes")));
    QCOMPARE(covered(read.text), kUnits);
    QVERIFY2(guard.isBounded(), qPrintable(QString::number(guard.grownMegabytes())));
  }

  void manyTabsAreReadInPart() {
    ArchiveBuilder builder;
    const auto tab = builder.record({{text("NSLocation"), 10.0}}, {text("NSTextTab")});
    const auto tabs = builder.array(Value::Array(100000, Value(tab)));
    const auto style = builder.record({{text("NSTabStops"), tabs}}, {text("NSParagraphStyle")});
    const auto read = readAttribute(builder, "NSParagraphStyle", style);
    QCOMPARE(read.text.runs.front().attributes.paragraph->tabStops->size(), size_t(256));
  }

  void numbersThatAreNoneHaveTheirDefaults_data() {
    QTest::addColumn<double>("number");
    QTest::addColumn<double>("size");
    QTest::addColumn<double>("indent");
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 12.0 << 0.0;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 12.0 << 0.0;
    QTest::newRow("huge") << 1e300 << 2000.0 << 1e6;
    QTest::newRow("negative") << -1e300 << 0.5 << -1e6;
    QTest::newRow("ordinary") << 13.5 << 13.5 << 13.5;
  }
  void numbersThatAreNoneHaveTheirDefaults() {
    QFETCH(double, number);
    QFETCH(double, size);
    QFETCH(double, indent);
    ArchiveBuilder builder;
    const auto font = builder.record(
        {{text("NSName"), builder.text("Helvetica")}, {text("NSSize"), number}}, {text("NSFont")});
    const auto style = builder.record({{text("NSHeadIndent"), number}}, {text("NSParagraphStyle")});
    const auto read = readText(builder, text("x"),
                               builder.dictionary({{builder.text("NSFont"), font},
                                                   {builder.text("NSParagraphStyle"), style}}));
    QCOMPARE(read.text.runs.front().attributes.font->size, size);
    QCOMPARE(read.text.runs.front().attributes.paragraph->headIndent, indent);
  }

  void componentsOfColorsAreKeptWithinTheirRange_data() {
    QTest::addColumn<QByteArray>("components");
    QTest::addColumn<quint32>("argb");
    QTest::newRow("too large and too small") << QByteArray("2 -1 0.5 7") << 0xffff0080U;
    QTest::newRow("missing") << QByteArray("1") << 0xffff0000U;
    QTest::newRow("empty") << QByteArray() << 0xff000000U;
    QTest::newRow("words") << QByteArray("nan inf x") << 0xff00ff00U;
    QTest::newRow("a comma is no point") << QByteArray("0,5 1 1") << 0xff000000U;
    QTest::newRow("an alpha of none") << QByteArray("1 1 1 0", 8) << 0x00ffffffU;
  }
  void componentsOfColorsAreKeptWithinTheirRange() {
    QFETCH(QByteArray, components);
    QFETCH(quint32, argb);
    ArchiveBuilder builder;
    const auto color = builder.record(
        {{text("NSColorSpace"), qint64(2)}, {text("NSRGB"), components}}, {text("NSColor")});
    const auto read = readAttribute(builder, "NSColor", color);
    QCOMPARE(read.text.runs.front().attributes.color->argb, argb);
  }

  void aColorThatFallsBackOnItselfIsCarried() {
    ArchiveBuilder builder;
    const auto color = builder.add(Value());
    builder.set(color,
                {{text("NSColorSpace"), qint64(6)},
                 {text("NSColorName"), builder.text("ownColor")},
                 {text("NSColor"), color}},
                {text("NSColor")});
    const auto read = readAttribute(builder, "NSColor", color);
    QVERIFY(!read.text.runs.front().attributes.color);
    QCOMPARE(read.text.runs.front().attributes.others.size(), size_t(1));
  }

  void aDamagedAttributeCostsOnlyItself() {
    ArchiveBuilder builder;
    const auto dangling = builder.record({{text("gone"), Value::Uid{9999}}}, {text("XYZThing")});
    const auto classless = builder.add(Value::Dictionary{{text("n"), qint64(1)}});
    const auto holder = builder.record({{text("in"), dangling}}, {text("XYZHolder")});
    const auto color = builder.record({{text("NSColorSpace"), qint64(1)},
                                       {text("NSRGB"), QByteArray("1 0 0")},
                                       {text("odd"), dangling}},
                                      {text("NSColor")});
    const auto read = readText(builder, text("x"),
                               builder.dictionary({{builder.text("XYZ1"), dangling},
                                                   {builder.text("XYZ2"), classless},
                                                   {builder.text("XYZ3"), holder},
                                                   {builder.text("XYZ4"), Value::Uid{12345}},
                                                   {builder.text("XYZ5"), builder.text("kept")},
                                                   {builder.text("NSColor"), color}}));
    QCOMPARE(read.notes.size(), 4);
    for (const QString& note : read.notes)
      QVERIFY2(note.contains(u"XYZ"), qPrintable(note));
    const TextAttributes& attributes = read.text.runs.front().attributes;
    QCOMPARE(attributes.others.size(), size_t(1));
    QCOMPARE(attributes.color->argb, 0xffff0000U);
    // The colour's own object leads to what is damaged: it is written anew.
    const auto again = unarchiveText(archiveText(read.text));
    QCOMPARE(again->text.runs.front().attributes.color->argb, 0xffff0000U);
    QCOMPARE(again->notes, QStringList());
  }

  void aClassOfTooManyNamesIsNone() {
    ArchiveBuilder builder;
    const auto thing = builder.record({}, QStringList(100, text("XYZ")));
    const auto read = readAttribute(builder, "XYZ", thing);
    QCOMPARE(read.notes.size(), 1);
    QVERIFY(read.text.runs.front().attributes.others.empty());
  }

  void damagedRunsLeaveThePlainText_data() {
    QTest::addColumn<QByteArray>("table");
    QTest::newRow("cut") << QByteArray::fromHex("0180");
    QTest::newRow("bad index") << QByteArray::fromHex("0463");
    QTest::newRow("longer than the text") << QByteArray::fromHex("ffffffff0f00ffffffff0f00");
    QTest::newRow("a number of too many bits") << QByteArray::fromHex("ffffffffff0f00");
    QTest::newRow("short") << QByteArray::fromHex("0100");
    QTest::newRow("no length at all") << QByteArray::fromHex("0000");
  }
  void damagedRunsLeaveThePlainText() {
    QFETCH(QByteArray, table);
    ArchiveBuilder builder;
    const auto attributes = builder.array({builder.dictionary({})});
    const auto read = readText(builder, text("abcd"), attributes, table);
    QCOMPARE(read.text.text, text("abcd"));
    QCOMPARE(covered(read.text), 4);
    QVERIFY(!read.notes.isEmpty());
  }

  void aRunNeverSplitsACharacter() {
    ArchiveBuilder builder;
    const auto font = builder.record(
        {{text("NSName"), builder.text("Helvetica")}, {text("NSSize"), 12.0}}, {text("NSFont")});
    const auto attributes = builder.array(
        {builder.dictionary({}), builder.dictionary({{builder.text("NSFont"), font}})});
    // One unit, then the second half of the pair with the next letter.
    const auto read =
        readText(builder, text("😀bc"), attributes, encodeRuns({{1, 0}, {2, 1}, {1, 0}}));
    QCOMPARE(read.text.runs.size(), size_t(3));
    QCOMPARE(read.text.runs[0].length, 2);
    QCOMPARE(read.text.runs[1].length, 1);
    QVERIFY(read.text.runs[1].attributes.font);
  }

  void whatIsNoCharacterIsReplaced() {
    ArchiveBuilder builder;
    QString odd = text("a b c d 😀");
    odd[1] = QChar(0xD800);
    odd[3] = QChar(0xDC00);
    odd[5] = QChar(u'\0');
    const auto read = readText(builder, odd, builder.dictionary({}));
    QCOMPARE(read.text.text, text("a\uFFFDb\uFFFDc\uFFFDd 😀"));
    AttributedText written;
    written.append(odd, {});
    QCOMPARE(unarchiveText(archiveText(written))->text.text, read.text.text);
  }

  void linesEndInOneWay() {
    ArchiveBuilder builder;
    const auto font = builder.record(
        {{text("NSName"), builder.text("Helvetica")}, {text("NSSize"), 12.0}}, {text("NSFont")});
    const auto attributes = builder.array(
        {builder.dictionary({}), builder.dictionary({{builder.text("NSFont"), font}})});
    const auto read = readText(builder, text("a\r\nb\rc\u2029d\u2028e\r"), attributes,
                               encodeRuns({{2, 0}, {1, 1}, {7, 0}}));
    QCOMPARE(read.text.text, text("a\nb\nc\nd\u2028e\n"));
    QCOMPARE(covered(read.text), read.text.text.size());
    QCOMPARE(read.text.runs[0].length, 1); // the pair's first half went
    QVERIFY(read.text.runs[1].attributes.font);
    QCOMPARE(read.text.runs[1].length, 1);
  }

  void mutatedArchivesDoNoHarm() {
    QRandomGenerator random(20010101);
    int readable = 0;
    for (int i = 0; i < 6000; ++i) {
      QByteArray bytes =
          archiveOf(i % 2 ? "apple_textstorage_multi.plist" : "apple_textstorage_attachment.plist");
      for (int change = random.bounded(1, 6); change > 0; --change)
        bytes[random.bounded(int(bytes.size()))] = char(random.bounded(256));
      (void)unarchiveValue(bytes);
      const auto read = unarchiveText(bytes);
      if (!read)
        continue;
      ++readable;
      QCOMPARE(covered(read->text), read->text.text.size());
      const auto again = unarchiveText(archiveText(read->text));
      QVERIFY(again.ok());
      QCOMPARE(again->text.text, read->text.text);
      QCOMPARE(again->notes, QStringList());
    }
    QVERIFY(readable > 1000); // else nothing was tested
  }

 private:
  static qsizetype covered(const AttributedText& text) {
    qsizetype sum = 0;
    for (const TextRun& run : text.runs) {
      if (run.length <= 0)
        return -1;
      sum += run.length;
    }
    return sum;
  }
};

QTEST_GUILESS_MAIN(KeyedHostileTest)
#include "keyed_hostile_test.moc"
