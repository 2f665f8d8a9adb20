#include "app/reminder_options.h"
#include "store/archive/text_archive.h"
#include "support/pictures.h"

#include <QTest>

using namespace tockwise;

namespace {

QVariantMap option(const char* name, const QVariant& value) {
  return {{QString::fromLatin1(name), value}};
}

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

AttributedText richText(const QString& words) {
  AttributedText made;
  TextAttributes bold;
  bold.font = TextFont{text("Helvetica-Bold"), 12, {}};
  made.append(words, bold);
  return made;
}

} // namespace

class ReminderOptionsTest : public QObject {
  Q_OBJECT

  Reminder m_reminder;
  Date m_now;

  Result<void> apply(const QVariantMap& options) {
    return applyReminderOptions(options, m_reminder, m_now, Calendar::current());
  }

 private Q_SLOTS:
  void init() {
    m_reminder = Reminder();
    m_reminder.reminderDescriptions = text("Tea");
    m_now = Calendar::current().dateWithYear(2025, 3, 4, 10, 15, 42);
  }

  void aQuickTimeCountsFromNowWithItsSecondsCut() {
    QVERIFY(apply(option("in", text("1 Minute"))));
    QCOMPARE(m_reminder.reminderQueue, Calendar::current().dateWithYear(2025, 3, 4, 10, 16, 0));
    QVERIFY(apply(option("in", text("1 Day 2 Hours"))));
    QCOMPARE(Calendar::current().components(m_reminder.reminderQueue).second, 0);
  }

  void secondsAreCutAlsoInTheHourThatComesTwice() {
    const Calendar calendar(text("Europe/Berlin"), text("en_US"));
    // 2025-10-26 02:30:30 for the second time.
    m_now = Date::fromUnixSeconds(1761442230.25);
    QVERIFY(applyReminderOptions(option("in", text("1 Minute")), m_reminder, m_now, calendar));
    QCOMPARE(m_reminder.reminderQueue.unixSeconds(), 1761442260.0);
  }

  void aDateIsLocalTime() {
    QVERIFY(apply(option("at", text("2025-03-04 08:05"))));
    QCOMPARE(m_reminder.reminderQueue, Calendar::current().dateWithYear(2025, 3, 4, 8, 5, 0));
  }

  void wrongValuesAreUsageErrorsAndChangeNothing_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    const auto row = [](const char* name, const char* value) {
      QTest::addRow("%s=%s", name, value) << text(name) << text(value);
    };
    row("at", "2025-02-30 08:05");
    row("at", "tomorrow");
    row("at", "2025-03-04 24:05");
    row("at", "");
    row("in", "1 Minutes");
    row("in", "soon");
    row("in", "1 Day 2 Hour");
    row("in", "5x Minutes");
    row("in", "5 Minutes foo");
    row("in", "99999999999999 Days");
    row("every", "fortnight");
    row("every", "1,2,3");
    row("every", "0,-1,0,0");
    row("every", "");
    row("days", "Sunday");
    row("days", "");
    row("days", "Mon,,Tue");
    row("between", "9-17");
    row("between", "24:00-25:00");
    row("before", "1,2");
    row("before", "a,b,c");
    row("task", "5:/bin/true");
    row("task", "web:");
    row("task", "nonsense");
    row("text", "");
    row("colour", "red");
  }
  void wrongValuesAreUsageErrorsAndChangeNothing() {
    QFETCH(QString, name);
    QFETCH(QString, value);
    const Reminder before = m_reminder;
    const auto applied = apply({{name, value}, {text("email"), true}});
    QVERIFY(!applied);
    QCOMPARE(applied.error().kind, Error::Kind::Usage);
    QCOMPARE(m_reminder, before);
  }

  void optionsHaveTheirTypes() {
    QVERIFY(!apply(option("email", text("no"))));
    QVERIFY(!apply(option("at", 5)));
  }

  void atAndInExcludeOneAnother() {
    QVERIFY(!apply({{text("at"), text("2025-03-04 08:05")}, {text("in"), text("1 Minute")}}));
  }

  void intervalsHaveNamesOrAmounts_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<QList<qint64>>("interval");
    QTest::newRow("month") << text("month") << QList<qint64>{1, 0, 0, 0};
    QTest::newRow("week") << text("week") << QList<qint64>{0, 7, 0, 0};
    QTest::newRow("day") << text("day") << QList<qint64>{0, 1, 0, 0};
    QTest::newRow("hour") << text("hour") << QList<qint64>{0, 0, 1, 0};
    QTest::newRow("minute") << text("minute") << QList<qint64>{0, 0, 0, 1};
    QTest::newRow("amounts") << text("1, 2,3,90") << QList<qint64>{1, 2, 3, 90};
    QTest::newRow("never") << text("never") << QList<qint64>{0, 0, 0, 0};
  }
  void intervalsHaveNamesOrAmounts() {
    QFETCH(QString, value);
    QFETCH(QList<qint64>, interval);
    QVERIFY(apply(option("every", value)));
    for (int i = 0; i < 4; ++i)
      QCOMPARE(m_reminder.reminderIntervals[size_t(i)], interval[i]);
  }

  void theExtraRuleIsMadeOfDaysAndTimes() {
    QVERIFY(apply({{text("days"), text("sun,Fri")}, {text("between"), text("9:00-17:30")}}));
    QCOMPARE(m_reminder.reminderExtras.days,
             (std::array<bool, 7>{true, false, false, false, false, true, false}));
    QCOMPARE(m_reminder.reminderExtras.times, (std::array<qint64, 4>{9, 0, 17, 30}));
  }

  void aTaskHasATypeAndAPath() {
    QVERIFY(apply(option("task", text("web:https://example.org:8080/a"))));
    QCOMPARE(m_reminder.reminderTasks, (Task{false, 0, text("https://example.org:8080/a")}));
    QVERIFY(apply(option("task", text("4:/opt/x.sh"))));
    QCOMPARE(m_reminder.reminderTasks, (Task{false, 4, text("/opt/x.sh")}));
    QVERIFY(apply(option("task", QString())));
    QCOMPARE(m_reminder.reminderTasks, Task{});
  }

  void aNewTextDropsTheRichTextOfTheOldOne() {
    m_reminder.reminderRTFs = "archive";
    QVERIFY(apply(option("text", text("Tea"))));
    QCOMPARE(m_reminder.reminderRTFs, QByteArray("archive"));
    QVERIFY(apply(option("text", text("Coffee"))));
    QVERIFY(m_reminder.reminderRTFs.isEmpty());
  }

  void aRichTextBringsItsPlainTextAlong() {
    const QByteArray archive = archiveText(richText(text("Coffee")));
    QVERIFY(apply(option("rich", archive)));
    QCOMPARE(m_reminder.reminderDescriptions, text("Coffee"));
    QCOMPARE(m_reminder.reminderRTFs, archive);
  }

  void widePicturesOfARichTextAreScaled() {
    AttributedText picture = richText(QString(QChar(AttributedText::kAttachmentCharacter)));
    picture.runs[0].attributes.attachment = TextAttachment{text("a.png"), pngOf({600, 200}), {}};
    QVERIFY(apply(option("rich", archiveText(picture))));
    const auto stored = unarchiveTextStorage(m_reminder.reminderRTFs);
    QVERIFY(stored);
    const auto& attachment = stored->runs.at(0).attributes.attachment;
    QVERIFY(attachment);
    QCOMPARE(QImage::fromData(attachment->contents).size(), QSize(285, 95));
  }

  void richTextsThatAreNoneAreRefused() {
    const Reminder before = m_reminder;
    for (const QVariantMap& options :
         {option("rich", QByteArray("no archive")), option("rich", QByteArray()),
          option("rich", archiveText({})), option("rich", text("/tmp/x.rtf")),
          QVariantMap{{text("rich"), archiveText(richText(text("Tea")))},
                      {text("text"), text("Tea")}}}) {
      const auto applied = apply(options);
      QVERIFY(!applied);
      QCOMPARE(applied.error().kind, Error::Kind::Usage);
      QCOMPARE(m_reminder, before);
    }
  }
};

QTEST_GUILESS_MAIN(ReminderOptionsTest)
#include "reminder_options_test.moc"
