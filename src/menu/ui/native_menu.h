// The status menu as a pop-up of this process.
//
// While it is open nothing is cleared or rebuilt: actions of items that stay are kept, texts are
// made when they are painted, single actions come and go. Thousands of items cost little, since
// only the visible ones have their texts made.
#pragma once

#include "menu/ui/live_menu.h"
#include "menu/ui/rich_document.h"

#include <QHash>
#include <QMenu>
#include <QPointer>

namespace tockwise {

/// The action of one item. It follows its item through reorderings of the queue.
class MenuEntryAction final : public QAction {
  Q_OBJECT
 public:
  MenuEntryAction(MenuEntry entry, QObject* parent) : QAction(parent), m_entry(std::move(entry)) {}
  const MenuEntry& entry() const { return m_entry; }
  void setEntry(MenuEntry entry) { m_entry = std::move(entry); }

 private:
  MenuEntry m_entry;
};

/// Main thread. Filled when it is about to be shown.
class NativeMenu final : public QMenu {
  Q_OBJECT
 public:
  /// The whole menu; live outlives it.
  explicit NativeMenu(LiveMenu& live, QWidget* parent = nullptr);
  /// The submenu of parentEntry alone, of a live menu that somebody else refreshes.
  NativeMenu(LiveMenu& live, MenuEntry parentEntry, QWidget* parent);

  /// Opens it near place, a point on the screen, with its first items in view.
  void popUpAt(QPoint place);
  /// Brings an open menu and its open submenus up to date, in place.
  void refresh();

  /// The text that is painted for an action of this menu now.
  QString paintedText(const QAction* action) const;
  /// The document that an option initialised by this menu stands for, or null for plain text.
  QTextDocument* richDocumentOf(const QStyleOptionMenuItem& option) const;

 Q_SIGNALS:
  /// An item was chosen, here or in a submenu.
  void activated(const tockwise::MenuActivation& activation);

 protected:
  void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;
  void actionEvent(QActionEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  class Batch;
  void initialise();
  void fill();
  void release();
  void synchronize();
  std::vector<MenuEntry> currentEntries() const;
  MenuEntryAction* makeAction(const MenuEntry& entry);
  void removeAction(MenuEntryAction* action);
  void update(MenuEntryAction& action, const MenuEntry& entry);
  void provideSubmenu(QAction* action);
  bool isBeside(const QMouseEvent& event) const;
  bool chooseTitle(QAction* action);
  QString elided(const QString& text) const;

  LiveMenu& m_live;
  std::optional<MenuEntry> m_parentEntry;
  std::vector<MenuEntryAction*> m_items; // in the menu's order
  std::vector<MenuEntry> m_entries;      // what m_items stand for
  QPointer<QAction> m_highlighted;       // before the last change of the items
  mutable RichDocuments m_documents;
  bool m_swallowsChanges = false;
};

} // namespace tockwise
