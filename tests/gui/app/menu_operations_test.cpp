// What the entries of the menu do in the program.
#include "app/menu_operations.h"
#include "app_controller_fixture.h"
#include "store/archive/text_archive.h"
#include "store/documents/document_file.h"

#include <QApplication>
#include <QDialog>
#include <QSet>
#include <QSignalSpy>

using namespace tockwise;

class MenuOperationsTest : public AppControllerFixture {
  Q_OBJECT
 private Q_SLOTS:
  void theTenOrdersAreChosenFromTheMenu() {
    addLater("b");
    addLater("a");
    m_controller->perform({text("sortByName"), 0, {}, {}});
    QTRY_COMPARE(textsOfQueue(), (QStringList{text("a"), text("b")}));
    QCOMPARE(*m_controller->commands().getPreference(text("sortType")), text("5"));
  }

  void newReminderOpensAnEditor() {
    choose("newReminder");
    QCOMPARE(m_controller->editing().reminderWindows().size(), size_t(1));
  }

  void aTitleOpensItsReminderWhereverItStandsNow() {
    addLater("first");
    const QString uuid = addLater("second");
    choose("showReminder", 0, uuid);
    const auto editors = m_controller->editing().reminderWindows();
    QCOMPARE(editors.size(), size_t(1));
    QCOMPARE(editors.front()->current().reminderUUID, uuid);
    QCOMPARE(editors.front()->current().reminderText, text("second"));
  }

  void aRecentEntryOpensItsTextAsANewReminder() {
    addLater("feed the cat");
    choose("recentReminder", 0, {}, "feed the cat");
    const auto editors = m_controller->editing().reminderWindows();
    QCOMPARE(editors.size(), size_t(1));
    QCOMPARE(editors.front()->current().reminderText, text("feed the cat"));
    QCOMPARE(editors.front()->current().reminderUUID, QString());
  }

  void aRecentEntryThatIsGoneOpensNothing() {
    addLater("feed the cat");
    choose("clearRecent");
    choose("recentReminder", 0, {}, "feed the cat");
    QVERIFY(m_controller->editing().reminderWindows().empty());
  }

  void copyingPutsTheRichTextOnTheClipboard() {
    AttributedText rich;
    TextAttributes bold;
    bold.font = TextFont{text("Helvetica-Bold"), 14, {}};
    rich.append(text("bold"), bold);
    const QString uuid = addLater("bold");
    ReminderQueue& queue = m_store->queue();
    QVERIFY(queue.set<&Columns::reminderRTFs>(*queue.indexOf(uuid), archiveText(rich)));
    choose("copyMenuItem", 0, uuid);
    QCOMPARE(m_pasteboard->timesSet, 1);
    QVERIFY(m_pasteboard->kept->html().contains(text("bold")));
    QVERIFY(m_pasteboard->kept->hasFormat(text("text/rtf")));
  }

  void copyingAPlainReminderLeavesTheClipboard() {
    choose("copyMenuItem", 0, addLater("plain"));
    QCOMPARE(m_pasteboard->timesSet, 0);
  }

  void clearingTheQueueAsksAndTells() {
    QSignalSpy modified(m_controller.get(), &AppController::dataModified);
    addDue("Tea");
    openAlerts(1);
    modified.clear();
    m_prompter->answers = {1};
    choose("clearQueue");
    QCOMPARE(textsOfQueue(), QStringList{text("Tea")});
    QCOMPARE(modified.size(), 0);
    m_prompter->answers = {0};
    choose("clearQueue");
    QCOMPARE(textsOfQueue(), QStringList());
    QCOMPARE(modified.size(), 1);
    openAlerts(1); // the alert of a reminder that is gone stays
  }

  void openingADocumentTellsThatTheDataChanged() {
    addLater("a");
    const QString path = m_environment->path(text("a.tockwise"));
    QVERIFY(writeDocument(path, archivedDataDictionary(m_store->queue())).ok());
    addLater("b");
    QSignalSpy modified(m_controller.get(), &AppController::dataModified);
    m_prompter->answers = {1, 0};
    QVERIFY(m_controller->documents().openFile(path));
    QCOMPARE(modified.size(), 0);
    QVERIFY(m_controller->documents().openFile(path));
    QCOMPARE(modified.size(), 1);
    QTRY_COMPARE(textsOfQueue(), QStringList{text("a")});
  }

  void aDisplayOptionIsFlippedAndChecked() {
    const auto isChecked = [this] {
      for (const MenuItem& item : m_controller->menuItems()) {
        for (const MenuItem& option : item.submenu) {
          if (option.action == text("setShowRuler"))
            return option.checked;
        }
      }
      return false;
    };
    QVERIFY(!isChecked());
    choose("setShowRuler");
    QVERIFY(isChecked());
    choose("setShowRuler");
    QVERIFY(!isChecked());
  }

  void thePreviewHoldsTheTickAndTheMenu() {
    bool isChecked = false;
    QTimer::singleShot(0, this, [&] {
      addDue("Tea");
      QCoreApplication::processEvents(); // the poke of the change
      QCOMPARE(m_controller->alertsJson().size(), 0);
      QVERIFY(!m_wakeTimer->armed);
      choose("newReminder");
      QVERIFY(m_controller->editing().reminderWindows().empty());
      choose("printAllCurrentAlerts");
      isChecked = true;
      qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject();
    });
    choose("print");
    QVERIFY(isChecked);
    QCOMPARE(m_controller->alertsJson().size(), 1); // at once
    QVERIFY(m_wakeTimer->armed);
    QCOMPARE(m_controller->printing().printWindows().size(), size_t(1));
  }

  void everyOperationThatTheMenuOffersIsCarriedOut() {
    const QSet<QString> offered = availableMenuOperations();
    QVERIFY(offered.contains(text("sortByName")));
    for (const MenuItem& item : m_controller->menuItems())
      QCOMPARE(item.enabled, item.submenu.empty() ? offered.contains(item.action) : true);
  }

  void theMenuOffersWhatTheProgramCanDo() {
    const auto items = m_controller->menuItems();
    const auto named = [&](const char* title) {
      return *std::find_if(items.begin(), items.end(),
                           [&](const MenuItem& item) { return item.title == text(title); });
    };
    QVERIFY(named("Save Reminders...").enabled);
    QVERIFY(named("Open Reminders...").enabled);
    QCOMPARE(named("Save Reminders...").action, text("selItemSaveReminders"));
    QVERIFY(named("Quit Tockwise").enabled);
    QVERIFY(named("New Reminder...").enabled);
    QVERIFY(named("Clear Queue").enabled);
    QVERIFY(named("About...").enabled);
  }
};

QTEST_MAIN(MenuOperationsTest)
#include "menu_operations_test.moc"
