// The status menu as an ordinary window, for desktops without a tray.
#pragma once

#include "menu/ui/live_menu.h"

#include <QWidget>

class QListView;

namespace tockwise {

class DropFrame;
class MenuListModel;
class MenuRowDelegate;
class NativeMenu;

/// Main thread. Stays open until it is closed; its texts move on with refresh().
class MenuWindow final : public QWidget {
  Q_OBJECT
 public:
  MenuWindow(MenuSource source, QWidget* parent = nullptr);
  ~MenuWindow() override;

  /// Brings it up to date in place; each second while it can be seen.
  void refresh();

 Q_SIGNALS:
  void visibilityChanged(bool visible);
  /// An item was chosen, by a click or by Return.
  void activated(const tockwise::MenuActivation& activation);
  /// A reminders document was dropped on the window; once for each.
  void documentDropped(const QString& path);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  bool handleKey(int key);
  bool handleClick(QPoint place);
  void moveCurrent(int step);
  void choose(const QModelIndex& index);
  void openSubmenu(const QModelIndex& index);
  bool hasOwnAction(const MenuEntry& entry) const;

  LiveMenu m_live;
  QListView* m_list;
  MenuListModel* m_model;
  MenuRowDelegate* m_delegate;
  DropFrame* m_dropFrame;
  NativeMenu* m_submenu = nullptr;
};

} // namespace tockwise
