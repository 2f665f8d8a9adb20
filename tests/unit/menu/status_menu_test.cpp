#include "unit/menu/menu_fixture.h"

#include <QJsonObject>
#include <QTest>

using namespace tockwise;

namespace {

/// One line an item: "title|action|tag", "-" for a separator, submenus indented by two blanks.
QStringList drawn(const std::vector<MenuItem>& items, const QString& indent = {}) {
  QStringList lines;
  for (const MenuItem& item : items) {
    if (item.separator) {
      lines += indent + u'-';
      continue;
    }
    lines += QStringLiteral("%1%2|%3|%4").arg(indent, item.title, item.action).arg(item.tag);
    lines += drawn(item.submenu, indent + QStringLiteral("  "));
  }
  return lines;
}

QStringList lines(const char16_t* text) {
  return QString::fromUtf16(text).split(u'\n');
}

const MenuItem* find(const std::vector<MenuItem>& items, QStringView title) {
  for (const MenuItem& item : items) {
    if (item.title == title)
      return &item;
    if (const MenuItem* inside = find(item.submenu, title))
      return inside;
  }
  return nullptr;
}

QStringList titles(const std::vector<MenuItem>& items) {
  QStringList result;
  for (const MenuItem& item : items)
    result += item.separator ? QStringLiteral("-") : item.title;
  return result;
}

/// The items from the count item on.
QStringList queuePart(const std::vector<MenuItem>& items) {
  const QStringList all = titles(items);
  return all.mid(all.indexOf(QStringLiteral("Reminder Queue")));
}

} // namespace

class StatusMenuTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void anEmptyQueueHasTheFixedItemsInTheirOrder() {
    const MenuFixture fixture;
    QCOMPARE(drawn(fixture.menu()), lines(u"Quit Tockwise|quit|0\n"
                                          "-\n"
                                          "Save Reminders...|selItemSaveReminders|0\n"
                                          "Open Reminders...|selItemOpenReminders|0\n"
                                          "-\n"
                                          "New Reminder...|newReminder|0\n"
                                          "-\n"
                                          "Current Alerts||0\n"
                                          "  There Are No Current Alerts||0\n"
                                          "-\n"
                                          "Recent Reminders||0\n"
                                          "  -\n"
                                          "  Clear All Recent Reminders|clearRecent|0\n"
                                          "-\n"
                                          "Preferences...|prefs|0\n"
                                          "Sort Queue||0\n"
                                          "  By Date|sortByDate|0\n"
                                          "  By Reverse Date|sortByDateReverse|0\n"
                                          "  By Date Created|sortByDateCreated|0\n"
                                          "  By Reverse Date Created|sortByDateCreatedReverse|0\n"
                                          "  By Name|sortByName|0\n"
                                          "  By Reverse Name|sortByNameReverse|0\n"
                                          "  By Date Fired|sortByDateTimeFired|0\n"
                                          "  By Reverse Date Fired|sortByDateTimeFiredReverse|0\n"
                                          "  By Date Modified|sortByDateModified|0\n"
                                          "  By Reverse Date Modified|sortByDateModifiedReverse|0\n"
                                          "Clear Queue|clearQueue|0\n"
                                          "Import Calendar Events|importCalendarEventsPrefs|0\n"
                                          "Print...|print|0\n"
                                          "About...|about|0\n"
                                          "Options||0\n"
                                          "  Show Item Index|setShowItemIndex|0\n"
                                          "  Show Rich Text|setShowRichText|0\n"
                                          "  Truncate Reminders|truncateReminders|0\n"
                                          "  Show Ruler In New Reminder Windows|setShowRuler|0\n"
                                          "Preview...|print|0\n"
                                          "-\n"
                                          "Reminder Queue||0\n"
                                          "0 items||0\n"
                                          "-\n"
                                          "No Reminders||0"));
  }

  void oneReminderIsOneItem() {
    MenuFixture fixture;
    fixture.add(QStringLiteral("Tea"));
    QCOMPARE(queuePart(fixture.menu())[1], QStringLiteral("1 item"));
  }

  void twoRemindersNameTheirOrder() {
    MenuFixture fixture;
    fixture.add(QStringLiteral("Tea"));
    fixture.add(QStringLiteral("Coffee"));
    QCOMPARE(queuePart(fixture.menu())[1], QStringLiteral("2 items, sorted by: date"));
    fixture.sortTypeText = QString();
    QCOMPARE(queuePart(fixture.menu())[1], QStringLiteral("2 items, sorted by: (null)"));
  }

  void aReminderHasItsLinesInOrder() {
    MenuFixture fixture;
    fixture.settings.setValue(QStringLiteral("showItemIndex"), true);
    fixture.add(QStringLiteral("Tea"));
    const QString uuid = fixture.add(QStringLiteral("Pills"), 7205, [&](Reminder& reminder) {
      reminder.reminderIntervals = {0, 1, 0, 0};
      reminder.reminderDateTimeFired = fixture.now.plusSeconds(-120);
    });
    const std::vector<MenuItem> menu = fixture.menu();
    const QStringList part = queuePart(menu);
    const QString date =
        Calendar::current().dateStringWithFormat(fixture.now.plusSeconds(7205), kDisplayPattern);
    QCOMPARE(part.mid(part.indexOf(QStringLiteral("2"))),
             (QStringList{
                 QStringLiteral("2"), QStringLiteral("\u2022\u2022 %1 \u2022\u2022").arg(date),
                 QStringLiteral("2 hours, 0 minutes, 5 seconds"), QStringLiteral("Last: 2 m ago"),
                 QStringLiteral("Pills"), QStringLiteral("-")}));
    const MenuItem* title = find(menu, u"Pills");
    QCOMPARE(title->action, QStringLiteral("showReminder"));
    QCOMPARE(title->tag, 1);
    QCOMPARE(title->reminderUUID, uuid);
    QCOMPARE(title->toolTip, QStringLiteral("Created: ") + Calendar::current().dateStringWithFormat(
                                                               fixture.now, kDisplayPattern));
    QCOMPARE(drawn(title->submenu), lines(u"Delete|deleteMenuItem|1\nCopy|copyMenuItem|1"));
    QCOMPARE(title->submenu[0].reminderUUID, uuid);
  }

  void linesFollowTheDisplayOptions() {
    MenuFixture fixture;
    fixture.add(QStringLiteral("Tea"));
    fixture.settings.setValue(QStringLiteral("useAbsolute"), false);
    QCOMPARE(queuePart(fixture.menu()).mid(3),
             (QStringList{QStringLiteral("1 hours, 0 minutes, 0 seconds"), QStringLiteral("Tea"),
                          QStringLiteral("-")}));
    fixture.settings.setValue(QStringLiteral("useCountdown"), false);
    QCOMPARE(queuePart(fixture.menu()).mid(3),
             (QStringList{QStringLiteral("Tea"), QStringLiteral("-")}));
  }

  void anExpiredReminderHasNoLastLine() {
    MenuFixture fixture;
    fixture.add(QStringLiteral("Tea"), -30, [&](Reminder& reminder) {
      reminder.reminderDateTimeFired = fixture.now.plusSeconds(-30);
    });
    QCOMPARE(queuePart(fixture.menu())[4], QStringLiteral("Expired: now"));
    QCOMPARE(queuePart(fixture.menu())[5], QStringLiteral("Tea"));
  }

  void titlesAreCutOnlyWhenToldTo() {
    MenuFixture fixture;
    const QString text(51, u'x');
    fixture.add(text);
    QVERIFY(find(fixture.menu(), text.left(50) + QStringLiteral("...")));
    fixture.settings.setValue(QStringLiteral("truncateReminders"), false);
    QVERIFY(find(fixture.menu(), text));
  }

  void alertsAreListedWithTheirPositions() {
    MenuFixture fixture;
    const QString forty(40, u'a');
    fixture.openAlerts = {{forty, QStringLiteral("U1")}, {forty + u'b', QStringLiteral("U2")}};
    const std::vector<MenuItem> menu = fixture.menu();
    const MenuItem* alerts = find(menu, u"Current Alerts");
    QCOMPARE(drawn(alerts->submenu),
             (QStringList{forty + QStringLiteral("|exposeCurrentAlert|0"),
                          forty + QStringLiteral("...|exposeCurrentAlert|1"), QStringLiteral("-"),
                          QStringLiteral("Show All Current Alerts|showAllCurrentAlerts|0"),
                          QStringLiteral("Hide All Current Alerts|hideAllCurrentAlerts|0"),
                          QStringLiteral("Print All Current Alerts|printAllCurrentAlerts|0"),
                          QStringLiteral("-"),
                          QStringLiteral("Close All Current Alerts|closeAllCurrentAlerts|0")}));
    QCOMPARE(alerts->submenu[1].reminderUUID, QStringLiteral("U2"));
  }

  void hotKeysShowBehindFourTitles() {
    MenuFixture fixture;
    fixture.openAlerts = {{QStringLiteral("Tea"), {}}};
    fixture.settings.setValue(QStringLiteral("useGlobalHotKeys"), true);
    const std::vector<MenuItem> menu = fixture.menu();
    for (const char16_t* title :
         {u"New Reminder...\t\t\t^\u2318M", u"Show All Current Alerts\t\t\t^\u2318S",
          u"Hide All Current Alerts\t\t\t^\u2318H", u"Print All Current Alerts\t\t\t^\u2318P",
          u"Close All Current Alerts"})
      QVERIFY2(find(menu, title), qPrintable(QString::fromUtf16(title)));
  }

  void recentRemindersAreListedOldestFirst() {
    MenuFixture fixture;
    fixture.recent.append(QStringLiteral("one"));
    fixture.recent.append(QStringLiteral("two"));
    const std::vector<MenuItem> menu = fixture.menu();
    QCOMPARE(drawn(find(menu, u"Recent Reminders")->submenu),
             lines(u"one|recentReminder|0\ntwo|recentReminder|1\n-\n"
                   "Clear All Recent Reminders|clearRecent|0"));
  }

  void theCurrentOrderAloneIsChecked() {
    MenuFixture fixture;
    for (qint64 sortType = 0; sortType <= 11; ++sortType) {
      fixture.settings.setValue(QStringLiteral("sortType"), sortType);
      const std::vector<MenuItem> menu = fixture.menu();
      const auto& orders = find(menu, u"Sort Queue")->submenu;
      for (size_t i = 0; i < orders.size(); ++i)
        QCOMPARE(orders[i].checked, qint64(i) + 1 == sortType);
    }
  }

  void optionsAreCheckedByTheirSettings_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("title");
    QTest::newRow("index") << QStringLiteral("showItemIndex") << QStringLiteral("Show Item Index");
    QTest::newRow("rich") << QStringLiteral("showRichText") << QStringLiteral("Show Rich Text");
    QTest::newRow("cut") << QStringLiteral("truncateReminders")
                         << QStringLiteral("Truncate Reminders");
    QTest::newRow("ruler") << QStringLiteral("showRuler")
                           << QStringLiteral("Show Ruler In New Reminder Windows");
  }
  void optionsAreCheckedByTheirSettings() {
    QFETCH(QString, key);
    QFETCH(QString, title);
    MenuFixture fixture;
    for (const bool on : {true, false}) {
      fixture.settings.setValue(key, on);
      const std::vector<MenuItem> menu = fixture.menu();
      QVERIFY(find(menu, title)->checkable);
      QCOMPARE(find(menu, title)->checked, on);
    }
  }

  void itemsAreEnabledWhenTheirActionExists() {
    MenuFixture fixture;
    fixture.add(QStringLiteral("Tea"));
    const std::vector<MenuItem> menu = fixture.menu();
    QVERIFY(find(menu, u"Quit Tockwise")->enabled);
    QVERIFY(!find(menu, u"Preferences...")->enabled);
    QVERIFY(find(menu, u"Options")->enabled);
    QVERIFY(!find(menu, u"Reminder Queue")->enabled);
    QVERIFY(!find(menu, u"1 item")->enabled);
    QVERIFY(!find(menu, u"1 hours, 0 minutes, 0 seconds")->enabled);
    QVERIFY(find(menu, u"Tea")->enabled); // its editor is missing, but it can be deleted
    QVERIFY(find(menu, u"Delete")->enabled);
    QVERIFY(!find(menu, u"Copy")->enabled);
  }

  void shortColumnsLeaveItemsWithoutText() {
    Columns columns;
    ReminderQueue::valuesOf(columns.reminderQueue) = {Date{790003600}, Date{790007200}};
    ReminderQueue::valuesOf(columns.reminderDescriptions) = {QStringLiteral("Tea")};
    MenuFixture fixture;
    fixture.queue.setColumns(std::move(columns));
    const std::vector<MenuItem> menu = fixture.menu();
    QCOMPARE(queuePart(menu)[1], QStringLiteral("2 items, sorted by: date"));
    QCOMPARE(menu[menu.size() - 2].action, QStringLiteral("showReminder"));
    QCOMPARE(menu[menu.size() - 2].title, QString());
    QCOMPARE(menu[menu.size() - 2].tag, 1);
    QCOMPARE(menu[menu.size() - 2].toolTip, QString());
  }

  void textsFollowTheirReminderThroughAReordering() {
    MenuFixture fixture;
    fixture.add(QStringLiteral("Tea"), 60);
    fixture.add(QStringLiteral("Coffee"), 120);
    const StatusMenu menu(fixture.input(), Calendar::current());
    MenuEntry tea;
    for (const MenuEntry& entry : menu.entries()) {
      if (entry.kind == MenuItemKind::ReminderTitle && entry.row == 0)
        tea = entry;
    }
    QVERIFY(fixture.queue.permute({1, 0}));
    QCOMPARE(menu.title(tea, Calendar::current()), QStringLiteral("Tea"));
    QVERIFY(fixture.queue.remove(1));
    QCOMPARE(menu.title(tea, Calendar::current()), QString());
  }

  void aLongQueueCanBeShortened() {
    MenuFixture fixture;
    for (int i = 0; i < 5; ++i)
      fixture.add(QString::number(i));
    const StatusMenu menu(fixture.input(), Calendar::current());
    QVERIFY(menu.entriesUpTo(5) == menu.entries());
    const std::vector<MenuEntry> shortened = menu.entriesUpTo(2);
    QCOMPARE(menu.title(shortened.back(), Calendar::current()),
             QStringLiteral("3 More Reminders..."));
    QCOMPARE(menu.action(shortened.back()), QString::fromUtf16(kShowMenuWindow));
    QVERIFY(menu.isEnabled(shortened.back()));
    QCOMPARE(shortened[shortened.size() - 2].row, 1);
  }

  void aHostThatCannotChooseATitleGetsAnItemForItsAction() {
    MenuFixture fixture;
    fixture.add(QStringLiteral("Tea"));
    const auto titlesOf = [&] {
      const StatusMenu menu(fixture.input(), Calendar::current());
      QStringList result;
      const MenuEntry title = menu.entries()[menu.entries().size() - 2];
      for (const MenuEntry& entry : menu.submenuWithOwnAction(title))
        result += menu.title(entry, Calendar::current());
      return result;
    };
    QCOMPARE(titlesOf(), (QStringList{QStringLiteral("Delete"), QStringLiteral("Copy")}));
    fixture.availableActions += QStringLiteral("showReminder");
    QCOMPARE(titlesOf(), (QStringList{QStringLiteral("Show"), QString(), QStringLiteral("Delete"),
                                      QStringLiteral("Copy")}));
  }

  void jsonHasTheKeysOfTheCommandLine() {
    MenuFixture fixture;
    const QJsonArray json = menuToJson(fixture.menu());
    QCOMPARE(json[0].toObject(),
             (QJsonObject{{QStringLiteral("title"), QStringLiteral("Quit Tockwise")},
                          {QStringLiteral("action"), QStringLiteral("quit")},
                          {QStringLiteral("tag"), 0},
                          {QStringLiteral("enabled"), true},
                          {QStringLiteral("checked"), false},
                          {QStringLiteral("toolTip"), QString()},
                          {QStringLiteral("separator"), false},
                          {QStringLiteral("richTitle"), QJsonValue()},
                          {QStringLiteral("submenu"), QJsonArray()}}));
    QCOMPARE(json[1].toObject()[QStringLiteral("separator")], QJsonValue(true));
    QCOMPARE(json[1].toObject()[QStringLiteral("title")], QJsonValue(QString()));
    QVERIFY(json[1].toObject()[QStringLiteral("action")].isNull());
  }
};

QTEST_GUILESS_MAIN(StatusMenuTest)
#include "status_menu_test.moc"
