// The status item with its menu, on whatever the desktop offers: a panel that speaks
// StatusNotifierItem, an XEmbed tray, or a window of our own.
#pragma once

#include "menu/ui/live_menu.h"

#include <QDBusConnection>
#include <QObject>
#include <QPoint>

#include <memory>

class QSystemTrayIcon;

namespace tockwise {

class ExportedMenu;
class MenuWindow;
class NativeMenu;
class NotifierItem;

/// Main thread. Panels may come late, go away and come back; the item follows them.
class TrayController final : public QObject {
  Q_OBJECT
 public:
  /// source gives the program's state whenever a menu is about to be shown.
  explicit TrayController(MenuSource source,
                          const QDBusConnection& connection = QDBusConnection::sessionBus(),
                          QObject* parent = nullptr);
  ~TrayController() override;

  /// Puts the item up wherever there is a place for it, now or later; settled() follows.
  void start();

  /// Whether a tray shows the item now.
  bool hasTray() const;

  /// The clock that the setting clockoption names; values that name none leave it as it is.
  void setClockOption(qint64 option);
  /// The number beside the icon, drawn as a badge; null or empty for none.
  void setStatusTitle(const QString& title);
  /// Plain text shown while the pointer rests on the item, below the program's name.
  void setToolTip(const QString& text);

  /// Whether the menu or its window can be seen: then the owner calls refresh() each second.
  bool isOpen() const { return m_open; }
  /// Brings what is open up to date in place.
  void refresh();

  /// The program was started again: the menu at the pointer where there is an XEmbed tray, else
  /// the window.
  void showMenu();
  void showMenuWindow();

 Q_SIGNALS:
  /// Once, soon after start(): the item stands, or nothing takes it so far.
  void settled();
  void visibilityChanged(bool open);
  void activated(const tockwise::MenuActivation& activation);
  /// A reminders document was dropped on the menu's window.
  void documentDropped(const QString& path);
  void trayAvailableChanged(bool available);

 private:
  void settle();
  void followHost();
  void checkTray();
  void lookLater(int seconds);
  void showEmbedded();
  void hideEmbedded();
  void popUp(QPoint place);
  void updateOpen();
  void updateItem();
  void choose(const MenuActivation& activation);
  NativeMenu& popup();

  MenuSource m_source;
  LiveMenu m_exportedLive;
  LiveMenu m_popupLive;
  ExportedMenu* m_exported;
  NotifierItem* m_notifier;
  std::unique_ptr<QSystemTrayIcon> m_embedded;
  std::unique_ptr<NativeMenu> m_popup;
  std::unique_ptr<MenuWindow> m_window;
  int m_clockOption = 1;
  QString m_statusTitle;
  QString m_toolTip;
  bool m_open = false;
  bool m_hadTray = false;
  bool m_settled = false;
};

} // namespace tockwise
