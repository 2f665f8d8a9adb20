#include "prefs/quick_remind_menu.h"
#include "prefs/quick_time.h"
#include "recording_settings.h"

#include <QTest>

#include <memory>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

const QString kKey = text("quickRemindMenuArray");
const QStringList kThree{text("1 Minute"), text("2 Hours"), text("3 Days")};
const QStringList kWritten{kKey, text("synchronize")};

} // namespace

class QuickRemindMenuTest : public QObject {
  Q_OBJECT

  std::unique_ptr<RecordingSettings> m_settings;
  std::unique_ptr<QuickRemindMenu> m_menu;

  void have(const QStringList& list) { m_settings->prepare("quickRemindMenuArray", Value(list)); }

 private Q_SLOTS:
  void init() {
    m_settings = std::make_unique<RecordingSettings>();
    m_menu = std::make_unique<QuickRemindMenu>(*m_settings);
    have(kThree);
  }

  void theDefaultOrderHasNineEntries() {
    m_menu->defaultOrder();
    QCOMPARE(m_menu->entries(),
             (QStringList{text("1 Minute"), text("5 Minutes"), text("10 Minutes"),
                          text("15 Minutes"), text("30 Minutes"), text("1 Hour"), text("2 Hours"),
                          text("1 Day"), text("2 Days")}));
    QCOMPARE(m_settings->calls, kWritten);
    for (const QString& entry : m_menu->entries())
      QVERIFY2(stringToSeconds(entry) > 0, qPrintable(entry));
  }

  void fieldsMakeAnEntryAsTyped_data() {
    QTest::addColumn<QString>("days");
    QTest::addColumn<QString>("hours");
    QTest::addColumn<QString>("minutes");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<qint64>("seconds");
    const auto row = [](const char* days, const char* hours, const char* minutes, const char* entry,
                        qint64 seconds) {
      QTest::addRow("%s/%s/%s", days, hours, minutes)
          << text(days) << text(hours) << text(minutes) << text(entry) << seconds;
    };
    row("", "", "", "", 0);
    row("0", "0", "0", "", 0);
    row("0", "", "0", "", 0);
    row("1", "0", "30", "1 Day 30 Minutes ", 88200);
    row("1", "2", "", "1 Day 2 Hours ", 93600);
    row("2", "1", "1", "2 Days 1 Hour 1 Minute ", 2 * 86400 + 3600 + 60);
    row("", "1", "", "1 Hour ", 3600);
    row("", "", "90", "90 Minutes ", 5400);
    row("01", "", "", "01 Days ", 0);
    row("00", "", "", "00 Days ", 0);
    row("1 ", "", "", "1  Days ", 0);
    row("x", "", "5", "x Days 5 Minutes ", 300);
    row("-1", "", "", "-1 Days ", -86400);
  }
  void fieldsMakeAnEntryAsTyped() {
    QFETCH(QString, days);
    QFETCH(QString, hours);
    QFETCH(QString, minutes);
    QFETCH(QString, entry);
    QFETCH(qint64, seconds);
    QCOMPARE(quickRemindEntry(days, hours, minutes), entry);
    QCOMPARE(stringToSeconds(entry), seconds);
  }

  void addingAppends() {
    QCOMPARE(m_menu->addToMenu(text("1"), text("2"), text("")), std::optional<qsizetype>(3));
    QCOMPARE(m_menu->entries(), kThree + QStringList{text("1 Day 2 Hours ")});
    QCOMPARE(m_settings->calls, kWritten);
  }
  void addingAnEntryTwiceKeepsBoth() {
    m_menu->addToMenu({}, {}, text("5"));
    m_menu->addToMenu({}, {}, text("5"));
    QCOMPARE(m_menu->entries(), kThree + QStringList({text("5 Minutes "), text("5 Minutes ")}));
  }
  void addingNothingWritesNothing() {
    QCOMPARE(m_menu->addToMenu(text("0"), text(""), text("0")), std::nullopt);
    QCOMPARE(m_menu->entries(), kThree);
    QVERIFY(m_settings->calls.isEmpty());
  }

  void deletingRemovesTheRow() {
    QCOMPARE(m_menu->deleteItem(1), std::nullopt);
    QCOMPARE(m_menu->entries(), (QStringList{kThree[0], kThree[2]}));
    QCOMPARE(m_settings->calls, kWritten);
  }
  void theLastEntryCannotBeDeleted() {
    have({text("1 Minute")});
    const PreferenceAlert refusal{text("Cannot Delete Item"),
                                  text("The Quick Reminder Menu must contain at least one item.")};
    QCOMPARE(m_menu->deleteItem(0), std::optional(refusal));
    QCOMPARE(m_menu->deleteItem(-1), std::optional(refusal)); // also with nothing selected
    QCOMPARE(m_menu->entries(), QStringList{text("1 Minute")});
    QVERIFY(m_settings->calls.isEmpty());
  }

  void movingUpExchangesWithTheRowAbove() {
    QCOMPARE(m_menu->moveUp(2), std::nullopt);
    QCOMPARE(m_menu->entries(), (QStringList{kThree[0], kThree[2], kThree[1]}));
    QCOMPARE(m_settings->calls, kWritten);
  }
  void theFirstRowCannotMoveUp() {
    QCOMPARE(m_menu->moveUp(0),
             std::optional(PreferenceAlert{text("Cannot Move Item"),
                                           text("The selected item is at the top.")}));
    QVERIFY(m_settings->calls.isEmpty());
  }
  void movingDownExchangesWithTheRowBelow() {
    QCOMPARE(m_menu->moveDown(0), std::nullopt);
    QCOMPARE(m_menu->entries(), (QStringList{kThree[1], kThree[0], kThree[2]}));
    QCOMPARE(m_settings->calls, kWritten);
  }
  void theLastRowCannotMoveDown() {
    QCOMPARE(m_menu->moveDown(2),
             std::optional(PreferenceAlert{text("Cannot Move Item"),
                                           text("The selected item is at the bottom.")}));
    QVERIFY(m_settings->calls.isEmpty());
  }

  void rowsThatAreNotThereDoNothing() {
    for (const qsizetype row : {-1, 3, 99}) {
      QCOMPARE(m_menu->deleteItem(row), std::nullopt);
      QCOMPARE(m_menu->moveUp(row), std::nullopt);
      QCOMPARE(m_menu->moveDown(row), std::nullopt);
      QCOMPARE(m_menu->move(row, 0), row);
    }
    QCOMPARE(m_menu->move(0, -1), 0);
    QCOMPARE(m_menu->move(0, 4), 0);
    QCOMPARE(m_menu->entries(), kThree);
    QVERIFY(m_settings->calls.isEmpty());
  }

  void draggingPutsARowBeforeAnother_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("destination");
    QTest::addColumn<int>("newRow");
    QTest::addColumn<QString>("order");
    QTest::newRow("to the end") << 0 << 3 << 2 << text("120");
    QTest::newRow("to the start") << 2 << 0 << 0 << text("201");
    QTest::newRow("one down") << 0 << 2 << 1 << text("102");
    QTest::newRow("one up") << 1 << 0 << 0 << text("102");
    QTest::newRow("before itself") << 1 << 1 << 1 << text("012");
    QTest::newRow("after itself") << 1 << 2 << 1 << text("012");
  }
  void draggingPutsARowBeforeAnother() {
    QFETCH(int, row);
    QFETCH(int, destination);
    QFETCH(int, newRow);
    QFETCH(QString, order);
    QCOMPARE(m_menu->move(row, destination), newRow);
    QStringList expected;
    for (const QChar digit : std::as_const(order))
      expected += kThree[digit.digitValue()];
    QCOMPARE(m_menu->entries(), expected);
    QCOMPARE(m_settings->calls.isEmpty(), expected == kThree);
  }
};

QTEST_GUILESS_MAIN(QuickRemindMenuTest)
#include "quick_remind_menu_test.moc"
