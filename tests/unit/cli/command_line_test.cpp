#include "cli/command_line.h"
#include "cli/run_command.h"

#include <QTest>

using namespace tockwise;

namespace {
QStringList words(const char* text) {
  return QString::fromUtf8(text).split(u' ');
}
} // namespace

class CommandLineTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void wrongWordsAreUsageErrors_data() {
    QTest::addColumn<QStringList>("words");
    for (const char* text : {"",
                             "nonsense",
                             "add",
                             "add a b --in x",
                             "add a --in",
                             "add a --whatever",
                             "add a --json",
                             "add a --text b",
                             "list 1",
                             "show",
                             "show 1 2",
                             "delete",
                             "delete 1 --yes",
                             "quit now",
                             "menu --json=1",
                             "edit",
                             "list -x",
                             "add a b --rich f --in x",
                             "edit --rich f",
                             "save",
                             "save a b",
                             "save a --yes",
                             "open",
                             "merge",
                             "merge a --yes",
                             "print paper",
                             "print --pdf",
                             "print --alerts=1"})
      QTest::newRow(text) << words(text);
  }
  void wrongWordsAreUsageErrors() {
    QFETCH(QStringList, words);
    const auto parsed = parseCommandLine(words);
    QVERIFY(!parsed);
    QCOMPARE(parsed.error().kind, Error::Kind::Usage);
    QVERIFY(!parsed.error().message.isEmpty());
  }

  void optionsStandAnywhere() {
    const auto parsed = parseCommandLine({QStringLiteral("add"), QStringLiteral("--email"),
                                          QStringLiteral("--in=1 Minute"), QStringLiteral("Tea"),
                                          QStringLiteral("--no-sms"), QStringLiteral("--no-task"),
                                          QStringLiteral("--every"), QStringLiteral("day")});
    QVERIFY(parsed.ok());
    QCOMPARE(parsed->arguments, QStringList{QStringLiteral("Tea")});
    QCOMPARE(parsed->options, (QVariantMap{{QStringLiteral("email"), true},
                                           {QStringLiteral("sms"), false},
                                           {QStringLiteral("task"), QString()},
                                           {QStringLiteral("in"), QStringLiteral("1 Minute")},
                                           {QStringLiteral("every"), QStringLiteral("day")}}));
  }

  void theOptionsOfPrintAreTheAlertsAndAFile() {
    const auto parsed = parseCommandLine(words("print --alerts --pdf=a=b.pdf"));
    QVERIFY(parsed.ok());
    QCOMPARE(parsed->options, (QVariantMap{{QStringLiteral("alerts"), true},
                                           {QStringLiteral("pdf"), QStringLiteral("a=b.pdf")}}));
  }

  void onlyAPDFFileNeedsFonts_data() {
    QTest::addColumn<bool>("needs");
    QTest::newRow("print --pdf out.pdf") << true;
    QTest::newRow("print --alerts --pdf=out.pdf") << true;
    QTest::newRow("print --alerts") << false;
    QTest::newRow("add --pdf") << false;
    QTest::newRow("list") << false;
  }
  void onlyAPDFFileNeedsFonts() { QTEST(needsFonts(words(QTest::currentDataTag())), "needs"); }

  void afterTwoDashesEverythingIsAnArgument() {
    const auto parsed = parseCommandLine(words("add --in x -- --json"));
    QVERIFY(parsed.ok());
    QCOMPARE(parsed->arguments, QStringList{QStringLiteral("--json")});
    QVERIFY(!parsed->json);
  }

  void aValueMayStartWithADash() {
    const auto parsed = parseCommandLine(words("edit 1 --text -5"));
    QVERIFY(parsed.ok());
    QCOMPARE(parsed->options.value(QStringLiteral("text")).toString(), QStringLiteral("-5"));
  }

  void anEmptyTextIsAnArgument() {
    const auto parsed = parseCommandLine(
        {QStringLiteral("add"), QString(), QStringLiteral("--in"), QStringLiteral("x")});
    QVERIFY(parsed.ok());
    QCOMPARE(parsed->arguments, QStringList{QString()});
  }

  void aRichFileStandsForTheTextOfANewReminder() {
    for (const QStringList& given :
         {words("add --rich a.rtf --in x"), words("add Tea --rich a.rtf --in x"),
          QStringList{QStringLiteral("add"), QString(), QStringLiteral("--rich=a.rtf")}}) {
      const auto parsed = parseCommandLine(given);
      QVERIFY(parsed.ok());
      QCOMPARE(parsed->options.value(QStringLiteral("rich")).toString(), QStringLiteral("a.rtf"));
    }
  }

  void helpNeedsNoArguments() {
    const auto parsed = parseCommandLine(words("add --help"));
    QVERIFY(parsed.ok());
    QVERIFY(parsed->help);
    QVERIFY(helpText(parsed->command).contains(QStringLiteral("--between")));
    for (const CommandSpec& command : commandTable())
      QVERIFY(helpText(nullptr).contains(helpText(&command).section(u'\n', 0, 1)));
    QVERIFY(helpText(nullptr).contains(QStringLiteral("\ntockwise new\n")));
  }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "command_line_test.moc"
