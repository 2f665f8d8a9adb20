#include "menu/menu_entry.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace tockwise;

namespace {

std::vector<MenuEntry> entries(QStringView names) {
  std::vector<MenuEntry> result;
  for (const QChar name : names)
    result.push_back({MenuItemKind::ReminderTitle, qint32(result.size()), QString(name)});
  return result;
}

/// Applies the changes as a renderer does.
std::vector<MenuEntry> applied(std::vector<MenuEntry> before, const std::vector<MenuEntry>& after) {
  const MenuChanges changes = menuChanges(before, after);
  for (const qsizetype position : changes.removed)
    before.erase(before.begin() + position);
  for (const qsizetype position : changes.inserted)
    before.insert(before.begin() + position, after[size_t(position)]);
  return before;
}

QString names(const std::vector<MenuEntry>& list) {
  QString result;
  for (const MenuEntry& entry : list)
    result += entry.reminderUUID;
  return result;
}

} // namespace

class MenuChangesTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void equalListsNeedNoStep() {
    QVERIFY(menuChanges(entries(u"abc"), entries(u"abc")).isEmpty());
    QVERIFY(menuChanges({}, {}).isEmpty());
  }

  void stepsAreAsFewAsPossible_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("steps");
    const auto row = [](const char16_t* before, const char16_t* after, int steps) {
      const QString from = QString::fromUtf16(before);
      const QString to = QString::fromUtf16(after);
      QTest::addRow("%s to %s", qPrintable(from), qPrintable(to)) << from << to << steps;
    };
    row(u"", u"abc", 3);
    row(u"abc", u"", 3);
    row(u"abc", u"abxc", 1);
    row(u"abc", u"ac", 1);
    row(u"abcdef", u"xabcyefz", 4);
    row(u"abcdef", u"fabcde", 2);
    row(u"abcd", u"dcba", 6);
    row(u"aab", u"ab", 1);
    row(u"ab", u"aab", 1);
  }
  void stepsAreAsFewAsPossible() {
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(int, steps);
    const MenuChanges changes = menuChanges(entries(before), entries(after));
    QCOMPARE(int(changes.removed.size() + changes.inserted.size()), steps);
    QCOMPARE(names(applied(entries(before), entries(after))), after);
  }

  void anyListTurnsIntoAnyOther() {
    QRandomGenerator random(7);
    const auto list = [&] {
      QString text;
      for (int i = random.bounded(30); i > 0; --i)
        text += QChar(u'a' + random.bounded(20));
      return text;
    };
    for (int round = 0; round < 500; ++round) {
      const QString before = list();
      const QString after = list();
      QCOMPARE(names(applied(entries(before), entries(after))), after);
    }
  }

  void whatMovesIsToldFromWhatIsNew() {
    const MenuChanges changes = menuChanges(entries(u"abcd"), entries(u"xbcda"));
    QCOMPARE(changes.removed, (std::vector<qsizetype>{0}));
    QCOMPARE(changes.inserted, (std::vector<qsizetype>{0, 4}));
    QCOMPARE(changes.movedFrom, (std::vector<qsizetype>{-1, 0}));
  }

  void itemsWithoutReminderAreTheSameInTheSameRow() {
    const MenuEntry first{MenuItemKind::Command, 1, {}};
    const MenuEntry second{MenuItemKind::Command, 2, {}};
    QVERIFY(isSameItem(first, first));
    QVERIFY(!isSameItem(first, second));
    QVERIFY(isSameItem({MenuItemKind::ReminderTitle, 1, QStringLiteral("U")},
                       {MenuItemKind::ReminderTitle, 9, QStringLiteral("U")}));
    QVERIFY(!isSameItem({MenuItemKind::ReminderTitle, 1, QStringLiteral("U")},
                        {MenuItemKind::ReminderDate, 1, QStringLiteral("U")}));
  }
};

QTEST_GUILESS_MAIN(MenuChangesTest)
#include "menu_changes_test.moc"
