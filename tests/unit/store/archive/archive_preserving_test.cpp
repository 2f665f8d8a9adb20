// What of an archived text is not understood, or not changed, is written back as it came.
#include "store/archive/archive_values.h"
#include "store/archive/text_archive.h"
#include "support/archive_builder.h"
#include "support/archive_json.h"

#include <QTest>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

AttributedText read(const QByteArray& archive) {
  auto unarchived = unarchiveText(archive);
  if (!unarchived)
    qFatal("%s", qPrintable(unarchived.error().message));
  return std::move(unarchived->text);
}

AttributedText fixtureText(const char* name) {
  return read(
      readFixture(archiveFixtures(text("keyed-synthetic"), QString::fromLatin1(name)).value(0)));
}

// Archives and reads the text, several times over.
AttributedText travelled(const AttributedText& start) {
  AttributedText at = start;
  for (int i = 0; i < 3; ++i)
    at = read(archiveText(at));
  return at;
}

Value dump(const ArchiveObject& object) {
  return jsonOf(*object.archive(), object.uid());
}

const ArchiveObject& other(const AttributedText& in, size_t run, const char* name) {
  for (const OtherAttribute& attribute : in.runs.at(run).attributes.others) {
    if (attribute.name == text(name))
      return attribute.value;
  }
  qFatal("run %zu lacks %s", run, name);
}

// A text storage of "ab" whose first letter has the attributes of one dictionary, and whose second
// has those of another.
QByteArray twoRuns(ArchiveBuilder& builder, Value::Uid first, Value::Uid second) {
  return builder.finish(builder.textStorage(text("ab"), builder.array({first, second}),
                                            QByteArray::fromHex("01000101")));
}

} // namespace

class ArchivePreservingTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void anUnknownAttributeSurvivesAnEditElsewhere() {
    AttributedText edited = fixtureText("apple_unknown_class.plist");
    const Value before = dump(other(edited, 1, "XYZPrivate"));
    edited.text.prepend(text("new "));
    edited.runs.insert(edited.runs.begin(), {4, {}});
    edited.runs[1].attributes.underline = 1;
    const AttributedText after = travelled(edited);
    QCOMPARE(after.text, text("new ab"));
    QCOMPARE(difference(before, dump(other(after, 2, "XYZPrivate"))), QString());
    QVERIFY(mentionsFields(before));
    QCOMPARE(after.runs[1].attributes.underline, 1);
  }

  void numbersThatWeDoNotShowSurviveAsTheyAre() {
    const AttributedText before = fixtureText("apple_textstorage_multi.plist");
    const AttributedText after = travelled(before);
    QVERIFY(dump(other(after, 7, "NSKern")) == Value(0.5));
    QVERIFY(dump(other(after, 7, "NSBaselineOffset")) == Value(-2.0));
    QCOMPARE(difference(describe(before), describe(after)), QString());
  }

  void inlineScalarsOfEveryKindAreCarried() {
    ArchiveBuilder builder;
    const std::vector<Value> values{qint64(-5), 2.5,           true,
                                    text("é"),  Date{1000.25}, QByteArray("bytes\0more", 10)};
    std::vector<std::pair<Value::Uid, Value::Uid>> pairs;
    for (size_t i = 0; i < values.size(); ++i)
      pairs.emplace_back(builder.add(QStringLiteral("X%1").arg(i)), builder.add(values[i]));
    const auto before =
        read(builder.finish(builder.textStorage(text("x"), builder.dictionary(pairs))));
    const AttributedText after = travelled(before);
    QCOMPARE(after.runs.front().attributes.others.size(), values.size());
    QCOMPARE(difference(describe(before), describe(after)), QString());
  }

  void anObjectThatHoldsItselfIsCarried() {
    ArchiveBuilder builder;
    const auto loop = builder.add(Value());
    builder.set(loop, {{text("me"), loop}, {text("n"), qint64(7)}}, {text("XYZLoop")});
    const auto attributes = builder.dictionary({{builder.text("XYZ"), loop}});
    const AttributedText before = read(builder.finish(builder.textStorage(text("x"), attributes)));
    const AttributedText after = travelled(before);
    const ArchiveObject& object = other(after, 0, "XYZ");
    QVERIFY(object.archive()->isKindOf(object.uid(), u"XYZLoop"));
    QCOMPARE(object.archive()->reference(object.uid(), u"me"), object.uid());
    QCOMPARE(integerField(*object.archive(), object.uid(), u"n"), 7);
  }

  void whatTwoRunsShareStaysOneObject() {
    ArchiveBuilder builder;
    const auto shared = builder.record({{text("n"), qint64(1)}}, {text("XYZShared")});
    const auto twin = builder.record({{text("n"), qint64(1)}}, {text("XYZShared")});
    const auto holder = builder.record({{text("in"), shared}}, {text("XYZHolder")});
    const auto name = builder.text("XYZ");
    const auto more = builder.text("XYZMore");
    const AttributedText before =
        read(twoRuns(builder, builder.dictionary({{name, shared}, {more, holder}}),
                     builder.dictionary({{name, shared}, {more, twin}})));
    const AttributedText after = travelled(before);
    QVERIFY(other(after, 0, "XYZ") == other(after, 1, "XYZ"));
    QVERIFY(other(after, 1, "XYZMore") != other(after, 1, "XYZ")); // equal, and another
    const ArchiveObject& held = other(after, 0, "XYZMore");
    QCOMPARE(held.archive()->reference(held.uid(), u"in"), other(after, 0, "XYZ").uid());
  }

  void textsOfSeveralArchivesGoTogether() {
    AttributedText joined = fixtureText("apple_unknown_class.plist");
    const AttributedText more = fixtureText("apple_unknown_class.plist");
    for (const TextRun& run : more.runs)
      joined.append(more.text.mid(0, run.length), run.attributes);
    const AttributedText after = travelled(joined);
    QCOMPARE(after.runs.size(), size_t(4));
    QVERIFY(other(after, 1, "XYZPrivate") != other(after, 3, "XYZPrivate"));
    QCOMPARE(difference(dump(other(after, 1, "XYZPrivate")), dump(other(after, 3, "XYZPrivate"))),
             QString());
  }

  void unknownFieldsOfAnUnchangedValueAreWrittenBack() {
    ArchiveBuilder builder;
    const auto space =
        builder.record({{text("NSID"), qint64(7)}, {text("NSICC"), QByteArray("profile")}},
                       {text("NSColorSpace")});
    const auto color =
        builder.record({{text("NSColorSpace"), qint64(1)},
                        {text("NSRGB"), QByteArray("0.9859541655 0 0.02694000863", 29)},
                        {text("NSComponents"), QByteArray("1 0 0 1")},
                        {text("NSCustomColorSpace"), space}},
                       {text("NSColor")});
    const auto attributes = builder.dictionary({{builder.text("NSColor"), color}});
    const AttributedText before = read(builder.finish(builder.textStorage(text("x"), attributes)));
    QCOMPARE(before.runs.front().attributes.color->argb, 0xffff0000U);
    const ArchiveObject kept = travelled(before).runs.front().attributes.color->original;
    const auto keptSpace = kept.archive()->reference(kept.uid(), u"NSCustomColorSpace");
    QCOMPARE(dataField(*kept.archive(), keptSpace, u"NSICC"), QByteArray("profile"));
    AttributedText changed = before;
    changed.runs.front().attributes.color = TextColor{0xffff0001, false, {}};
    const ArchiveObject made = travelled(changed).runs.front().attributes.color->original;
    QVERIFY(!made.archive()->field(made.uid(), u"NSCustomColorSpace"));
  }

  void fallbackClassesAreWrittenBack() {
    ArchiveBuilder builder;
    const auto uiFont = builder.add(
        Value::Dictionary{{text("$classname"), text("UIFont")},
                          {text("$classes"), QStringList{text("UIFont"), text("NSObject")}},
                          {text("$classhints"), QStringList{text("NSFont")}}});
    const auto font = builder.add(Value::Dictionary{{text("UIFontPointSize"), 14.0},
                                                    {text("NSName"), builder.text("Helvetica")},
                                                    {text("NSSize"), 14.0},
                                                    {text("$class"), uiFont}});
    const auto attributes = builder.dictionary({{builder.text("NSFont"), font}});
    const AttributedText after =
        travelled(read(builder.finish(builder.textStorage(text("x"), attributes))));
    const TextFont& kept = *after.runs.front().attributes.font;
    QCOMPARE(kept.name, text("Helvetica"));
    QCOMPARE(kept.size, 14.0);
    QCOMPARE(kept.original.archive()->classOf(kept.original.uid())->hints,
             QStringList(text("NSFont")));
    QVERIFY(kept.original.archive()->field(kept.original.uid(), u"UIFontPointSize"));
  }

  void aPatternIsCarriedUntilAColorReplacesIt() {
    ArchiveBuilder builder;
    const auto image = builder.record({{text("n"), qint64(1)}}, {text("NSImage")});
    const auto pattern = builder.record(
        {{text("NSColorSpace"), qint64(10)}, {text("NSImage"), image}}, {text("NSColor")});
    const auto attributes = builder.dictionary({{builder.text("NSColor"), pattern}});
    AttributedText after =
        travelled(read(builder.finish(builder.textStorage(text("x"), attributes))));
    QVERIFY(!after.runs.front().attributes.color);
    QVERIFY(!other(after, 0, "NSColor").isNull());
    after.runs.front().attributes.color = TextColor{0xff00ff00, false, {}};
    after = travelled(after);
    QCOMPARE(after.runs.front().attributes.color->argb, 0xff00ff00U);
    QVERIFY(after.runs.front().attributes.others.empty());
  }

  void bookKeepingIsDropped() {
    ArchiveBuilder builder;
    const auto thing = builder.record({}, {text("XYZThing")});
    const auto attributes = builder.dictionary({{builder.text("NSOriginalFont"), thing},
                                                {builder.text("NSSpellingState"), thing},
                                                {builder.text("NSCursor"), thing},
                                                {builder.text("NSToolTip"), builder.text("tip")}});
    const auto unarchived =
        unarchiveText(builder.finish(builder.textStorage(text("x"), attributes)));
    QVERIFY(unarchived.ok());
    QCOMPARE(unarchived->notes, QStringList());
    const auto& others = unarchived->text.runs.front().attributes.others;
    QCOMPARE(others.size(), size_t(1));
    QCOMPARE(others.front().name, text("NSToolTip"));
  }

 private:
  static bool mentionsFields(const Value& object) {
    const Value* inside = object.find(u"$object");
    return inside && inside->find(u"fields")->get<Value::Dictionary>()->size() == 2;
  }
};

QTEST_GUILESS_MAIN(ArchivePreservingTest)
#include "archive_preserving_test.moc"
