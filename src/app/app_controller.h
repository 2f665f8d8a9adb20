// The composition root: owns the store, the engine, the lists of open windows and the tray, and
// connects them. A rule, a text or a loop over reminders in here is in the wrong place.
#pragma once

#include "alerts/alert_sounds.h"
#include "alerts/alert_windows.h"
#include "alerts/quit_question.h"
#include "alerts/remove_reminder.h"
#include "app/command_service.h"
#include "app/firing_link.h"
#include "app/menu_source.h"
#include "app/ports.h"
#include "engine/tick.h"
#include "engine/tick_timer.h"
#include "menu/sort/queue_sort.h"
#include "menu/ui/tray_controller.h"

#include <QJsonArray>
#include <QObject>

namespace tockwise {

enum class QuitMode { Ask, Omit };

/// Main thread.
class AppController final : public QObject {
  Q_OBJECT
 public:
  AppController(std::unique_ptr<ReminderStore> store, Ports ports, QObject* parent = nullptr);
  ~AppController() override;

  /// Shows the status item and starts the tick; tells what happened to a damaged store.
  void start();

  CommandService& commands() { return m_commands; }
  std::vector<MenuItem> menuItems();
  QJsonArray alertsJson() const;
  /// action: ok, again, delete, show, hide or ok-all; position: counted from 1, 0 for none given.
  Result<void> alertCommand(const QString& action, int position);

  /// What a chosen menu item asks for.
  void perform(const MenuActivation& activation);
  void showMenu();

  /// Whether the program may end now, after its question.
  bool mayQuit(QuitMode mode);
  void quitNow();

 Q_SIGNALS:
  void queueChanged();
  void reminderFired(const QString& reminderUUID);
  void alertOpened(const QString& reminderUUID);
  void alertClosed(const QString& reminderUUID);

 private:
  void connectAll();
  void changed();
  void afterTick();
  void remindAgain(const RemindAgainRequest& request);
  void changeClockIcon();

  std::unique_ptr<ReminderStore> m_store;
  Ports m_ports;
};

} // namespace tockwise
