// The status menu exported over D-Bus (com.canonical.dbusmenu) for the panels that draw it.
//
// Texts are made when a panel asks for them. A panel does not always say that it closed the menu:
// it counts as open from when it is about to be shown until something is chosen, the panel says
// so, or nothing was heard of it for a while.
#pragma once

#include "menu/ui/dbus_types.h"
#include "menu/ui/live_menu.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QHash>
#include <QTimer>

namespace tockwise {

struct ExportedNode; // a part of the layout on its way to a panel

/// Main thread.
class ExportedMenu final : public QDBusVirtualObject {
  Q_OBJECT
 public:
  static QString objectPath() { return QStringLiteral("/MenuBar"); }

  ExportedMenu(LiveMenu& live, QDBusConnection connection, QObject* parent = nullptr);
  ~ExportedMenu() override;

  bool isOpen() const { return m_silence.isActive(); }
  /// Tells the panels what changed since they last asked: the structure at once, the texts at the
  /// top each time, the others by turns, so that a long menu keeps neither side busy.
  void refresh();

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
  QString introspect(const QString& path) const override;

 Q_SIGNALS:
  void openChanged(bool open);
  void activated(const tockwise::MenuActivation& activation);

 private:
  friend struct ExportedNode;
  friend QDBusArgument& operator<<(QDBusArgument& argument, const ExportedNode& node);
  struct Place {
    int parent = 0;
    qsizetype position = 0;
  };
  struct Level {
    std::vector<MenuEntry> entries;
    std::vector<int> ids;
    std::vector<size_t> sent; // hash of what panels know of each item; 0: nothing
  };
  void takeMenu();
  bool synchronizeLevel(int parent, std::vector<MenuEntry> entries);
  Level& submenuLevel(int id, const MenuEntry& entry);
  void forget(int id);
  const MenuEntry* entryOf(int id) const;
  QVariantMap propertiesOf(const MenuEntry& entry) const;
  QVariantMap rootProperties() const;
  QList<DbusItemProperties> groupProperties(const QList<int>& ids, const QStringList& names);
  void handleEvent(int id, const QString& name);
  bool aboutToShow(int id);
  void setOpen(bool open);
  void sendSignal(const QString& name, const QVariantList& arguments);
  void sendChangedProperties();
  void collectChanges(Level& level, size_t from, size_t to, QList<DbusItemProperties>& changed);
  void markSent(int id, const QVariantMap& properties);
  QDBusMessage answer(const QDBusMessage& message);

  LiveMenu& m_live;
  QDBusConnection m_connection;
  QTimer m_silence;
  QHash<int, Level> m_levels; // by the id of the item whose submenu it is; 0 is the menu
  QHash<int, Place> m_places;
  int m_nextId = 1;
  uint m_revision = 1;
  size_t m_turn = 0;
};

} // namespace tockwise
