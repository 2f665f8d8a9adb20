// The composition root: owns the store, the engine, the lists of open windows and the tray, and
// connects them. A rule, a text or a loop over reminders in here is in the wrong place.
#pragma once

#include "alerts/alert_hiding_prompter.h"
#include "alerts/alert_panel_controller.h"
#include "alerts/alert_sounds.h"
#include "alerts/alert_windows.h"
#include "alerts/kept_alerts.h"
#include "alerts/post_alert.h"
#include "alerts/quit_question.h"
#include "alerts/remove_reminder.h"
#include "app/command_service.h"
#include "app/hot_key_actions.h"
#include "app/no_tray_hint.h"
#include "app/ports.h"
#include "app/store_watch.h"
#include "documents/reminders_documents.h"
#include "editor/reminder_editing.h"
#include "editor/running_scripts_window.h"
#include "engine/firing.h"
#include "engine/task_runner.h"
#include "engine/tick.h"
#include "engine/tick_timer.h"
#include "mail/mail_beat.h"
#include "menu/menu_actions.h"
#include "menu/menu_item.h"
#include "menu/rich_titles.h"
#include "menu/sort/queue_sort.h"
#include "menu/ui/tray_controller.h"
#include "prefs/password_keeping.h"
#include "prefs/ui/preference_window_controller.h"
#include "print/printing.h"

#include <QJsonArray>
#include <QObject>
#include <QTimer>

namespace tockwise {

enum class QuitMode { Ask, Omit };

/// Main thread.
class AppController final : public QObject, private FiringActions {
  Q_OBJECT
 public:
  AppController(std::unique_ptr<ReminderStore> store, Ports ports, QObject* parent = nullptr);
  ~AppController() override;

  /// Shows the status item, starts the tick, and tells what happened to a damaged store. What
  /// nobody waits for comes when the item stands.
  void start();

  CommandService& commands() { return m_commands; }
  /// The status menu as it would be shown now.
  std::vector<MenuItem> menuItems();
  QJsonArray alertsJson() const;
  AlertWindows& alerts() { return m_alerts; }
  ReminderEditing& editing() { return m_editing; }
  RemindersDocuments& documents() { return m_documents; }
  Printing& printing() { return m_printing; }
  PasswordKeeping& passwordKeeping() { return m_passwordKeeping; }
  Prompter& prompter() { return *m_ports.prompter; }
  void showMenu();

  /// What a chosen menu item asks for; an action that is not available does nothing.
  void perform(const MenuActivation& activation);
  void quit();
  void sortBy(SortType order);
  /// Flips a display option.
  void toggle(const QString& setting);
  /// A new reminder from the recent text that stood at that position under that title.
  void recentReminder(qsizetype position, const QString& title);
  void clearRecent();
  void clearQueue();
  void deleteMenuItem(const QString& reminderUUID);
  void copyMenuItem(const QString& reminderUUID);
  /// The preferences window.
  void prefs();
  void importCalendarEventsPrefs() { m_menuActions.importCalendarEventsPrefs(); }
  /// What works on this desktop.
  std::vector<DesktopCheck> desktopChecks();

  /// Whether the program may end now, after its question. Runs the event loop while it is open.
  bool mayQuit(QuitMode mode);
  void quitNow();
  /// The session ends, or somebody ends the program from outside: as soon as it can, unasked.
  void endWithSession();

 Q_SIGNALS:
  void queueChanged();
  void reminderFired(const QString& reminderUUID);
  void alertOpened(const QString& reminderUUID);
  void alertClosed(const QString& reminderUUID);

  /// The data changed; for synchronisation.
  void dataModified();

 private:
  void doTask(const Task& task) override;
  void sendEmailWithSubject(const QString& subject, const QString& message) override;
  bool sendEmailWithSubjectAndHTMLMessage(const QString& subject,
                                          const QByteArray& RTFData) override;
  void sendSMSWithSubject(const QString& subject, const QString& message) override;
  void openAlert(const AlertRequest& request) override;
  void fired(const QString& reminderUUID) override;

  TickActions tickActions();
  void startTheRest();
  void connectAll();
  MenuInput currentMenuInput(RichTitles* richTitles) const;
  void dataChanged();
  void changed();
  void changedByCommand();
  void announce();
  void saveNow();
  void tellNotice(const StoreNotice& notice);
  void tellWriteFailure(const Error& error);
  void showState();
  void remindAgain(const RemindAgainRequest& request);
  void connectDesktop();
  PreferenceSurroundings preferenceSurroundings();
  PreferenceWindowController& preferenceWindow();

  std::unique_ptr<ReminderStore> m_store;
  Ports m_ports;
  AlertHidingPrompter& m_questions; // around the prompter of the ports
  RichTitles m_richTitles;
  AlertSounds m_sounds;
  AlertWindows m_alerts;
  RemoveReminder m_removeReminder;
  QuitQuestion m_quitQuestion;
  MenuActions m_menuActions;
  ReminderEditing m_editing;
  QueueSort m_sort;
  TaskRunner m_tasks;
  RunningScriptsWindow m_runningScripts;
  Firing m_firing;
  Tick m_tick;
  TickTimer m_tickTimer;
  CommandService m_commands;
  TrayController m_tray;
  NoTrayHint m_noTrayHint;
  KeptAlerts m_keptAlerts;
  AlertPanels m_alertPanels;
  PostAlert m_postAlert;
  RemindersDocuments m_documents;
  Printing m_printing;
  HotKeyActions m_hotKeyActions;
  PasswordKeeping m_passwordKeeping;
  MailBeat m_mailBeat;
  std::unique_ptr<PreferenceWindowController> m_preferenceWindow; // made when it is first shown
  StoreWatch m_storeWatch;
  QTimer m_saveSoon;
  quint64 m_announcedRevision = 0;
  bool m_announcing = false; // a setting was changed
};

} // namespace tockwise
