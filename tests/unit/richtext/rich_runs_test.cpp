// The runs that menus and the command line show.
#include "richtext/rich_runs.h"
#include "store/archive/text_archive.h"
#include "support/random_text.h"

#include <QTest>

using namespace tockwise;

namespace {

QString text(const char* latin) {
  return QString::fromLatin1(latin);
}

} // namespace

class RichRunsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aRunTellsEachAttributeThatIsSet() {
    TextAttributes attributes = withFont(text("Helvetica-Bold"), 13.5);
    attributes.color = TextColor{0x80ff0000, false, {}};
    attributes.background = TextColor{0xffffff00, false, {}};
    attributes.underline = 9;
    attributes.strikethrough = 1;
    attributes.superscript = -1;
    attributes.link = text("https://example.org/");
    attributes.paragraph = ParagraphStyle();
    attributes.paragraph->alignment = TextAlignment::Center;
    attributes.others = {{text("NSKern"), opaqueObject(1)}, {text("NSShadow"), opaqueObject(2)}};
    AttributedText original = textWith(text("plain "));
    const RichText runs = richRuns(add(original, text("rich"), attributes));
    QCOMPARE(runs.size(), size_t(2));
    QVERIFY(runs[0] == RichRun({text("plain "), {}}));
    RichAttributes expected;
    expected.font = text("Helvetica-Bold");
    expected.size = 13.5;
    expected.color = 0x80ff0000;
    expected.background = 0xffffff00;
    expected.underline = 9;
    expected.strikethrough = 1;
    expected.superscript = -1;
    expected.link = text("https://example.org/");
    expected.alignment = text("center");
    expected.other = {text("NSKern"), text("NSShadow")};
    QVERIFY(runs[1] == RichRun({text("rich"), expected}));
  }

  void coloursOfTheThemeAreNoColours() {
    TextAttributes attributes;
    attributes.color = TextColor{0xff000000, true, {}};
    attributes.background = TextColor{0xffffffff, true, {}};
    QVERIFY(richRuns(textWith(text("words"), attributes)).front() == RichRun({text("words"), {}}));
  }

  void everyAlignmentHasItsName() {
    const char* const names[] = {"left", "right", "center", "justified", "natural"};
    for (int i = 0; i < 5; ++i) {
      ParagraphStyle style;
      style.alignment = TextAlignment(i);
      QCOMPARE(*richRuns(textWith(text("a"), withParagraph(style)))[0].attributes.alignment,
               text(names[i]));
    }
    QVERIFY(!richRuns(textWith(text("a"), withParagraph({})))[0].attributes.alignment);
  }

  void picturesTellTheirSizeAndStandAlone() {
    TextAttributes attributes;
    attributes.attachment = TextAttachment{text("a.png"), pngOf({40, 30}), {}};
    const QString picture(QChar(0xfffc));
    const RichText runs = richRuns(textWith(text("a") + picture + picture + text("b"), attributes));
    QCOMPARE(runs.size(), size_t(4));
    QCOMPARE(runs[0].text, text("a"));
    QVERIFY(!runs[0].attributes.attachment && !runs[3].attributes.attachment);
    for (const size_t i : {size_t(1), size_t(2)}) {
      QCOMPARE(runs[i].text, picture);
      const RichAttachment expected{text("a.png"), pngOf({40, 30}).size(), 40, 30, pngOf({40, 30})};
      QVERIFY(runs[i].attributes.attachment == expected);
    }
  }

  void aFileThatIsNoPictureHasNoSizeAndNoData() {
    TextAttributes attributes;
    attributes.attachment = TextAttachment{text("a.pdf"), "%PDF-1.7", {}};
    const RichText runs = richRuns(textWith(QString(QChar(0xfffc)), attributes));
    QVERIFY(runs[0].attributes.attachment == RichAttachment({text("a.pdf"), 8, 0, 0, {}}));
  }

  void ofAnEnormousPictureOnlyTheSizeIsRead() {
    TextAttributes attributes;
    const QByteArray enormous = headerOfPng({10000, 9000});
    attributes.attachment = TextAttachment{text("a.png"), enormous, {}};
    const RichText runs = richRuns(textWith(QString(QChar(0xfffc)), attributes));
    QVERIFY(runs[0].attributes.attachment ==
            RichAttachment({text("a.png"), enormous.size(), 10000, 9000, {}}));
  }

  void numbersBeyondAnIntAreKeptWithinIt() {
    TextAttributes attributes;
    attributes.superscript = std::numeric_limits<qint64>::min();
    QCOMPARE(*richRuns(textWith(text("a"), attributes))[0].attributes.superscript,
             std::numeric_limits<int>::min());
  }

  void anArchiveOfATextStorageHasRuns() {
    AttributedText original = textWith(text("Tea "), withFont(text("Georgia"), 14));
    add(original, text("time"));
    const auto runs = unarchiveRuns(archiveText(original));
    QVERIFY(runs.has_value());
    QVERIFY(*runs == richRuns(original));
  }

  void whatIsNoArchiveHasNone() {
    QVERIFY(!unarchiveRuns(QByteArray()));
    QVERIFY(!unarchiveRuns("no archive"));
  }
};

QTEST_GUILESS_MAIN(RichRunsTest)
#include "rich_runs_test.moc"
