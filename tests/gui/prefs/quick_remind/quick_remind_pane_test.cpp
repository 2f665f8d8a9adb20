// The pane of the quick-time menu, driven as a user drives it.
#include "editor/toned_label.h"
#include "prefs/ui/quick_remind_pane.h"
#include "support/fakes.h"
#include "support/named_child.h"

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

const QString kKey = text("quickRemindMenuArray");
const QStringList kFour{text("1 Minute"), text("2 Hours"), text("3 Days"), text("4 Days")};

} // namespace

class QuickRemindPaneTest : public QObject {
  Q_OBJECT

  std::unique_ptr<MemorySettings> m_settings;
  FakePrompter m_prompter;
  std::unique_ptr<QuickRemindPane> m_pane;

  template <typename T> T* find(const char* name) { return namedChild<T>(*m_pane, name); }
  QListView* list() { return find<QListView>("reminderMenuTable"); }
  void click(const char* button) { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
  void type(const char* field, const char* typed) {
    auto* edit = find<QLineEdit>(field);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text(typed));
  }
  void have(const QStringList& entries) {
    m_settings->setValue(kKey, Value(entries));
    m_pane->reloadData();
  }
  QStringList stored() const { return m_settings->stringList(kKey); }
  QStringList shown() {
    QStringList rows;
    for (int i = 0; i < list()->model()->rowCount(); ++i)
      rows += list()->model()->index(i, 0).data().toString();
    return rows;
  }
  QPoint middle(int row) { return list()->visualRect(list()->model()->index(row, 0)).center(); }
  void select(int row) {
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, middle(row));
  }
  int selected() {
    const QModelIndexList rows = list()->selectionModel()->selectedIndexes();
    return rows.size() == 1 ? rows.front().row() : -1;
  }
  /// Drags a row to a place in the list; the button stays down.
  void dragTo(int row, QPoint to) {
    QWidget* viewport = list()->viewport();
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, middle(row));
    for (int step = 1; step <= 4; ++step)
      QTest::mouseMove(viewport, middle(row) + (to - middle(row)) * step / 4);
  }
  void drag(int row, QPoint to) {
    dragTo(row, to);
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, to);
  }
  QRect rowArea(int row) { return list()->visualRect(list()->model()->index(row, 0)); }

 private Q_SLOTS:
  void init() {
    m_settings = std::make_unique<MemorySettings>();
    m_settings->setValue(kKey, Value(kFour));
    m_prompter = FakePrompter();
    m_pane = std::make_unique<QuickRemindPane>(*m_settings, m_prompter);
    m_pane->resize(480, 320);
    m_pane->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pane.get()));
  }
  void cleanup() { m_pane.reset(); }

  void theListIsShownInItsOrder() { QCOMPARE(shown(), kFour); }

  void addingAppendsAndSelects() {
    QSignalSpy changed(m_pane.get(), &QuickRemindPane::listChanged);
    type("daysField", "1");
    type("minutesField", "30");
    click("addButton");
    QCOMPARE(stored(), kFour + QStringList{text("1 Day 30 Minutes ")});
    QCOMPARE(shown(), stored());
    QCOMPARE(selected(), 4);
    QCOMPARE(changed.count(), 1);
  }
  void returnInAFieldAdds() {
    type("hoursField", "1");
    QTest::keyClick(find<QLineEdit>("hoursField"), Qt::Key_Return);
    QCOMPARE(stored(), kFour + QStringList{text("1 Hour ")});
  }
  void emptyFieldsAddNothing() {
    QSignalSpy changed(m_pane.get(), &QuickRemindPane::listChanged);
    click("addButton"); // 0, 0, 0
    type("daysField", "");
    click("addButton");
    QCOMPARE(stored(), kFour);
    QCOMPARE(changed.count(), 0);
    QVERIFY(m_prompter.asked.empty());
  }
  void fieldsTakeWhatIsTyped() {
    type("daysField", "01");
    type("hoursField", "x y");
    QCOMPARE(find<QLineEdit>("daysField")->text(), text("01"));
    click("addButton");
    QCOMPARE(stored().last(), text("01 Days x y Hours "));
  }
  void anEntryThatIsWorthNothingSaysSo() {
    auto* label = find<TonedLabel>("newEntryLabel");
    QCOMPARE(label->text(), QString());
    type("daysField", "01");
    QCOMPARE(label->text(), text("“01 Days” adds nothing."));
    QCOMPARE(label->tone(), TonedLabel::Tone::Warning);
    click("addButton");
    const QModelIndex row = list()->model()->index(4, 0);
    QCOMPARE(row.data(Qt::ToolTipRole).toString(), text("adds nothing"));
    QCOMPARE(row.data(Qt::AccessibleTextRole).toString(), text("01 Days, adds nothing"));
    type("daysField", "1");
    QCOMPARE(label->text(), text("1 Day"));
    QCOMPARE(label->tone(), TonedLabel::Tone::Quiet);
  }

  void deletingKeepsTheRowSelected() {
    select(1);
    click("deleteButton");
    QCOMPARE(stored(), (QStringList{kFour[0], kFour[2], kFour[3]}));
    QCOMPARE(shown(), stored());
    QCOMPARE(selected(), 1);
    select(2);
    click("deleteButton");
    QCOMPARE(selected(), 1); // the last row that is left
  }
  void theDeleteKeyDeletes() {
    select(0);
    QTest::keyClick(list(), Qt::Key_Delete);
    QCOMPARE(stored(), kFour.mid(1));
  }
  void deletingTheOnlyEntryIsRefused() {
    have({text("1 Minute")});
    select(0);
    click("deleteButton");
    QCOMPARE(m_prompter.asked.size(), 1U);
    QCOMPARE(m_prompter.asked[0].title, text("Cannot Delete Item"));
    QCOMPARE(m_prompter.asked[0].message,
             text("The Quick Reminder Menu must contain at least one item."));
    QCOMPARE(m_prompter.asked[0].buttons, QStringList{text("OK")});
    QCOMPARE(stored(), QStringList{text("1 Minute")});
    QCOMPARE(selected(), 0);
  }

  void movingKeepsTheEntrySelected() {
    select(2);
    click("moveUpButton");
    QCOMPARE(shown(), (QStringList{kFour[0], kFour[2], kFour[1], kFour[3]}));
    QCOMPARE(selected(), 1);
    click("moveDownButton");
    QCOMPARE(shown(), kFour);
    QCOMPARE(selected(), 2);
    QCOMPARE(stored(), kFour);
  }
  void altAndArrowsMove() {
    select(1);
    QTest::keyClick(list(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(stored(), (QStringList{kFour[1], kFour[0], kFour[2], kFour[3]}));
    QTest::keyClick(list(), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(list(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(stored(), (QStringList{kFour[0], kFour[2], kFour[1], kFour[3]}));
    QCOMPARE(selected(), 2);
  }
  void movingBeyondTheEndsIsRefused() {
    select(0);
    click("moveUpButton");
    select(3);
    click("moveDownButton");
    QCOMPARE(m_prompter.asked.size(), 2U);
    for (const Question& question : m_prompter.asked) {
      QCOMPARE(question.title, text("Cannot Move Item"));
      QCOMPARE(question.buttons, QStringList{text("OK")});
    }
    QCOMPARE(m_prompter.asked[0].message, text("The selected item is at the top."));
    QCOMPARE(m_prompter.asked[1].message, text("The selected item is at the bottom."));
    QCOMPARE(stored(), kFour);
    QCOMPARE(selected(), 3);
  }

  void draggingMovesARowDown() {
    QSignalSpy changed(m_pane.get(), &QuickRemindPane::listChanged);
    drag(0, rowArea(2).bottomLeft() + QPoint(20, 0));
    QCOMPARE(stored(), (QStringList{kFour[1], kFour[2], kFour[0], kFour[3]}));
    QCOMPARE(shown(), stored());
    QCOMPARE(selected(), 2);
    QCOMPARE(changed.count(), 1);
  }
  void draggingMovesARowToTheTop() {
    drag(3, rowArea(0).topLeft() + QPoint(20, 0));
    QCOMPARE(stored(), (QStringList{kFour[3], kFour[0], kFour[1], kFour[2]}));
    QCOMPARE(shown(), stored());
    QCOMPARE(selected(), 0);
  }
  void draggingBelowTheLastRowMovesToTheEnd() {
    drag(1, middle(3) + QPoint(0, 60));
    QCOMPARE(stored(), (QStringList{kFour[0], kFour[2], kFour[3], kFour[1]}));
    QCOMPARE(shown(), stored());
  }

  void aDragAcrossTheSameRowMovesNothing() {
    QSignalSpy changed(m_pane.get(), &QuickRemindPane::listChanged);
    drag(1, rowArea(1).bottomRight() - QPoint(2, 2));
    drag(1, rowArea(1).topLeft() + QPoint(2, 2));
    QCOMPARE(stored(), kFour);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(selected(), 1);
  }
  void aDragCanBeGivenUp() {
    dragTo(0, middle(3));
    QTest::keyClick(list(), Qt::Key_Escape);
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, middle(3));
    QCOMPARE(stored(), kFour);
    QCOMPARE(selected(), 0); // and the pointer's way selected nothing else
    dragTo(0, middle(3));
    find<QLineEdit>("daysField")->setFocus();
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, middle(3));
    QCOMPARE(stored(), kFour);
  }
  void aListThatChangesElsewhereEndsADrag() {
    dragTo(0, middle(3));
    const QStringList others{text("7 Hours"), text("8 Hours"), text("9 Hours"), text("5 Days")};
    have(others);
    QTest::mouseMove(list()->viewport(), middle(2));
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, middle(3));
    QCOMPARE(stored(), others); // the row that was taken is another by now
    drag(0, middle(3) + QPoint(0, 60));
    QCOMPARE(stored().last(), text("7 Hours"));
  }
  void aDragBeyondTheEdgeScrolls() {
    QStringList many;
    for (int i = 2; i < 60; ++i)
      many += text("%1 Days").arg(i);
    have(many);
    select(0);
    dragTo(0, QPoint(20, list()->viewport()->height() + 20));
    for (int i = 0; i < 60; ++i)
      QTest::mouseMove(list()->viewport(), QPoint(20 + i % 2, list()->viewport()->height() + 20));
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                        QPoint(20, list()->viewport()->height() + 20));
    QCOMPARE(stored().last(), text("2 Days"));
    QCOMPARE(selected(), 57);
  }

  void theDefaultOrderReplacesTheList() {
    click("defaultOrderButton");
    QCOMPARE(stored(), defaultQuickRemindMenu());
    QCOMPARE(shown(), stored());
    QCOMPARE(selected(), 0);
  }

  void aListChangedElsewhereIsShown() {
    select(3);
    have({text("7 Hours"), text("8 Hours"), text("9 Hours")});
    QCOMPARE(shown(), stored());
    QCOMPARE(selected(), 2); // there is no row 3 any more
    select(1);
    have(kFour);
    QCOMPARE(selected(), 1);
  }
  void actionsTakeTheListAsItIsNow() {
    select(1);
    m_settings->setValue(kKey, Value(kFour + QStringList{text("5 Days")})); // not shown yet
    click("moveDownButton");
    QCOMPARE(stored(), (QStringList{kFour[0], kFour[2], kFour[1], kFour[3], text("5 Days")}));
    QCOMPARE(shown(), stored());
  }

  // For looking at: TOCKWISE_PICTURES=FOLDER.
  void theListCanBeRead() {
    have({text("1 Minute"), text("5 Minutes"), text("15 Minutes"), text("1 Hour"), text("01 Days "),
          text("x Days 5 Minutes "), text("1 Day 30 Minutes ")});
    select(4);
    type("daysField", "01");
    const QString folder = qEnvironmentVariable("TOCKWISE_PICTURES");
    const QPalette light = qApp->palette();
    for (const bool dark : {false, true}) {
      if (dark) {
        QPalette palette(QColor(0x31, 0x36, 0x3b), QColor(0x23, 0x26, 0x29));
        palette.setColor(QPalette::Text, QColor(0xef, 0xf0, 0xf1));
        palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
        palette.setColor(QPalette::WindowText, QColor(0xef, 0xf0, 0xf1));
        palette.setColor(QPalette::ButtonText, QColor(0xef, 0xf0, 0xf1));
        palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
        qApp->setPalette(palette);
      }
      QCoreApplication::processEvents();
      const QImage quiet = m_pane->grab().toImage();
      dragTo(0, middle(3));
      const QImage dragged = m_pane->grab().toImage();
      QTest::keyClick(list(), Qt::Key_Escape);
      QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, middle(3));
      QVERIFY(quiet != dragged); // the line that says where the row would go
      if (!folder.isEmpty())
        dragged.save(folder +
                     (dark ? text("/quick_remind_dark.png") : text("/quick_remind_light.png")));
    }
    qApp->setPalette(light);
  }

  void everythingCanBeReachedByKeyboard() {
    list()->setFocus();
    QStringList order;
    for (int i = 0; i < 9; ++i) {
      order += QGuiApplication::focusObject()->objectName();
      QTest::keyClick(m_pane.get(), Qt::Key_Tab);
    }
    QCOMPARE(order, text("reminderMenuTable moveUpButton moveDownButton deleteButton "
                         "defaultOrderButton daysField hoursField minutesField addButton")
                        .split(u' '));
  }
};

QTEST_MAIN(QuickRemindPaneTest)
#include "quick_remind_pane_test.moc"
