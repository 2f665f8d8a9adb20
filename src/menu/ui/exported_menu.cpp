#include "menu/ui/exported_menu.h"

#include "menu/ui/dbus_interfaces.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <algorithm>
#include <array>

namespace tockwise {

/// (ia{sv}av): an item with its submenu down to a depth, written straight into the answer.
struct ExportedNode {
  ExportedMenu* menu = nullptr;
  int id = 0;
  int depth = 0; // levels below it; negative: all
  QStringList names;
};

} // namespace tockwise
Q_DECLARE_METATYPE(tockwise::ExportedNode)

namespace tockwise {
namespace {

constexpr int kSilence = 60000;       // milliseconds without a word until a menu counts as closed
constexpr size_t kTopItems = 240;     // checked each second
constexpr size_t kItemsByTurns = 300; // of the others, each second

const QString kInterface = QStringLiteral("com.canonical.dbusmenu");

QVariantMap filtered(const QVariantMap& properties, const QStringList& names) {
  if (names.isEmpty())
    return properties;
  QVariantMap chosen;
  for (const QString& name : names) {
    if (const auto found = properties.find(name); found != properties.end())
      chosen.insert(name, *found);
  }
  return chosen;
}

/// Of what changes while an item stays the same item.
size_t hashOf(const QVariantMap& properties) {
  return qHashMulti(1, properties.value(QStringLiteral("label")).toString(),
                    properties.value(QStringLiteral("enabled")).toBool(),
                    properties.value(QStringLiteral("toggle-state")).toInt());
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const ExportedNode& node) {
  argument.beginStructure();
  argument << node.id;
  if (!node.menu) { // asked for the type's signature only
    argument << QVariantMap();
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    argument.endArray();
    argument.endStructure();
    return argument;
  }
  const MenuEntry* entry = node.menu->entryOf(node.id);
  const QVariantMap properties =
      entry ? node.menu->propertiesOf(*entry) : node.menu->rootProperties();
  argument << filtered(properties, node.names);
  node.menu->markSent(node.id, properties);
  argument.beginArray(QMetaType::fromType<QDBusVariant>());
  const bool hasChildren = !entry || StatusMenu::hasSubmenu(*entry);
  if (node.depth != 0 && hasChildren) {
    const std::vector<int> ids =
        entry ? node.menu->submenuLevel(node.id, *entry).ids : node.menu->m_levels[0].ids;
    for (const int id : ids) {
      const ExportedNode child{node.menu, id, node.depth - 1, node.names};
      argument << QDBusVariant(QVariant::fromValue(child));
    }
  }
  argument.endArray();
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ExportedNode& node) {
  QVariantMap properties;
  QVariantList children;
  argument.beginStructure();
  argument >> node.id >> properties >> children;
  argument.endStructure();
  return argument;
}

ExportedMenu::ExportedMenu(LiveMenu& live, QDBusConnection connection, QObject* parent)
    : QDBusVirtualObject(parent), m_live(live), m_connection(std::move(connection)) {
  registerDbusTypes();
  qDBusRegisterMetaType<ExportedNode>();
  m_silence.setSingleShot(true);
  m_silence.setInterval(kSilence);
  m_silence.setTimerType(Qt::VeryCoarseTimer);
  connect(&m_silence, &QTimer::timeout, this, [this] { Q_EMIT openChanged(false); });
  m_connection.registerVirtualObject(objectPath(), this);
}

ExportedMenu::~ExportedMenu() {
  m_connection.unregisterObject(objectPath());
}

void ExportedMenu::takeMenu() {
  m_live.refresh();
  if (synchronizeLevel(0, m_live.menu().entriesUpTo(kMostShownReminders)))
    ++m_revision;
}

// Items that stay keep their ids. Returns whether the level changed.
bool ExportedMenu::synchronizeLevel(int parent, std::vector<MenuEntry> entries) {
  Level old = std::exchange(m_levels[parent], {});
  const MenuChanges changes = menuChanges(old.entries, entries);
  std::vector<bool> removed(old.ids.size());
  std::vector<bool> moved(old.ids.size());
  for (const qsizetype position : changes.removed)
    removed[size_t(position)] = true;
  for (const qsizetype position : changes.movedFrom) {
    if (position >= 0)
      moved[size_t(position)] = true;
  }
  for (size_t i = 0; i < old.ids.size(); ++i) {
    if (removed[i] && !moved[i])
      forget(old.ids[i]);
  }
  Level level;
  level.entries = std::move(entries);
  level.ids.reserve(level.entries.size());
  level.sent.reserve(level.entries.size());
  size_t kept = 0;
  size_t inserted = 0;
  for (size_t position = 0; position < level.entries.size(); ++position) {
    qsizetype from = -1;
    if (inserted < changes.inserted.size() && changes.inserted[inserted] == qsizetype(position)) {
      from = changes.movedFrom[inserted++];
    } else {
      while (removed[kept])
        ++kept;
      from = qsizetype(kept++);
    }
    level.ids.push_back(from < 0 ? m_nextId++ : old.ids[size_t(from)]);
    level.sent.push_back(from < 0 ? 0 : old.sent[size_t(from)]);
    if (!changes.isEmpty())
      m_places[level.ids.back()] = {parent, qsizetype(position)};
  }
  m_levels[parent] = std::move(level);
  return !changes.isEmpty();
}

ExportedMenu::Level& ExportedMenu::submenuLevel(int id, const MenuEntry& entry) {
  synchronizeLevel(id, m_live.menu().submenuWithOwnAction(entry));
  return m_levels[id];
}

void ExportedMenu::forget(int id) {
  m_places.remove(id);
  const Level level = m_levels.take(id);
  for (const int child : level.ids)
    forget(child);
}

const MenuEntry* ExportedMenu::entryOf(int id) const {
  const auto place = m_places.constFind(id);
  if (place == m_places.constEnd())
    return nullptr;
  const auto level = m_levels.constFind(place->parent);
  return level == m_levels.constEnd() ? nullptr : &level->entries[size_t(place->position)];
}

QVariantMap ExportedMenu::rootProperties() const {
  return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

QVariantMap ExportedMenu::propertiesOf(const MenuEntry& entry) const {
  if (StatusMenu::isSeparator(entry))
    return {{QStringLiteral("type"), QStringLiteral("separator")}};
  const StatusMenu& menu = m_live.menu();
  MenuLabel label = menuLabel(m_live.title(entry));
  label.text.replace(u'_', QStringLiteral("__")); // a single one marks a mnemonic
  QVariantMap properties{{QStringLiteral("label"), label.text},
                         {QStringLiteral("enabled"), menu.isEnabled(entry)}};
  if (!label.key.isEmpty()) {
    const QList<QStringList> shortcut{
        {QStringLiteral("Control"), QStringLiteral("Super"), label.key.section(u'+', -1)}};
    properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcut));
  }
  if (StatusMenu::hasSubmenu(entry))
    properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
  if (StatusMenu::isCheckable(entry)) {
    properties.insert(QStringLiteral("toggle-type"), entry.kind == MenuItemKind::SortOrder
                                                         ? QStringLiteral("radio")
                                                         : QStringLiteral("checkmark"));
    properties.insert(QStringLiteral("toggle-state"), menu.isChecked(entry) ? 1 : 0);
  }
  return properties;
}

void ExportedMenu::setOpen(bool open) {
  const bool was = isOpen();
  if (open)
    m_silence.start();
  else
    m_silence.stop();
  if (was != open)
    Q_EMIT openChanged(open);
}

bool ExportedMenu::aboutToShow(int id) {
  setOpen(true);
  if (id == 0) {
    const uint before = m_revision;
    takeMenu();
    if (m_revision != before)
      sendSignal(QStringLiteral("LayoutUpdated"), {m_revision, 0});
    return true; // countdowns have moved on since the panel last asked
  }
  const MenuEntry* entry = entryOf(id);
  if (!entry || !StatusMenu::hasSubmenu(*entry))
    return false;
  return synchronizeLevel(id, m_live.menu().submenuWithOwnAction(*entry));
}

void ExportedMenu::handleEvent(int id, const QString& name) {
  if (name == u"clicked") {
    const MenuEntry* found = entryOf(id);
    if (!found)
      return;
    const MenuEntry entry = *found;
    setOpen(false);
    if (m_live.menu().isActionAvailable(entry))
      Q_EMIT activated(m_live.activation(entry));
  } else if (name == u"closed" && id == 0) {
    setOpen(false);
  } else if (name == u"opened" && id == 0) {
    aboutToShow(0);
  } else if (name == u"opened" || name == u"hovered") {
    setOpen(true);
  }
}

void ExportedMenu::refresh() {
  const uint before = m_revision;
  takeMenu();
  QList<int> changed;
  if (m_revision != before)
    changed += 0;
  // Submenus that a panel has seen and whose items come and go; those of reminders stay as they
  // are until they are about to be shown.
  std::vector<std::pair<int, MenuEntry>> parents;
  for (auto level = m_levels.cbegin(); level != m_levels.cend(); ++level) {
    const MenuEntry* entry = entryOf(level.key());
    if (entry && entry->reminderUUID.isEmpty())
      parents.emplace_back(level.key(), *entry);
  }
  for (const auto& [id, entry] : parents) {
    if (synchronizeLevel(id, m_live.menu().submenu(entry)))
      changed += id;
  }
  if (!changed.isEmpty() && changed.front() != 0)
    ++m_revision;
  for (const int id : changed)
    sendSignal(QStringLiteral("LayoutUpdated"), {m_revision, id});
  sendChangedProperties();
}

void ExportedMenu::collectChanges(Level& level, size_t from, size_t to,
                                  QList<DbusItemProperties>& changed) {
  for (size_t i = from; i < std::min(to, level.entries.size()); ++i) {
    const QVariantMap properties = propertiesOf(level.entries[i]);
    const size_t hash = hashOf(properties);
    if (hash == level.sent[i])
      continue;
    level.sent[i] = hash;
    changed += DbusItemProperties{level.ids[i], properties};
  }
}

void ExportedMenu::markSent(int id, const QVariantMap& properties) {
  if (const auto place = m_places.constFind(id); place != m_places.constEnd())
    m_levels[place->parent].sent[size_t(place->position)] = hashOf(properties);
}

void ExportedMenu::sendChangedProperties() {
  QList<DbusItemProperties> changed;
  Level& top = m_levels[0];
  collectChanges(top, 0, kTopItems, changed);
  if (top.entries.size() > kTopItems) {
    const size_t from = kTopItems + m_turn;
    collectChanges(top, from, from + kItemsByTurns, changed);
    m_turn = from + kItemsByTurns < top.entries.size() ? m_turn + kItemsByTurns : 0;
  }
  for (auto level = m_levels.begin(); level != m_levels.end(); ++level) {
    const MenuEntry* parent = entryOf(level.key());
    if (parent && parent->reminderUUID.isEmpty())
      collectChanges(*level, 0, level->entries.size(), changed);
  }
  if (!changed.isEmpty())
    sendSignal(QStringLiteral("ItemsPropertiesUpdated"),
               {QVariant::fromValue(changed), QVariant::fromValue(QList<DbusItemKeys>())});
}

void ExportedMenu::sendSignal(const QString& name, const QVariantList& arguments) {
  QDBusMessage signal = QDBusMessage::createSignal(objectPath(), kInterface, name);
  signal.setArguments(arguments);
  m_connection.send(signal);
}

QList<DbusItemProperties> ExportedMenu::groupProperties(const QList<int>& ids,
                                                        const QStringList& names) {
  if (m_levels.isEmpty())
    takeMenu();
  QList<DbusItemProperties> items;
  for (const int id : ids) {
    const MenuEntry* entry = entryOf(id);
    if (entry || id == 0)
      items += {id, filtered(entry ? propertiesOf(*entry) : rootProperties(), names)};
  }
  return items;
}

QDBusMessage ExportedMenu::answer(const QDBusMessage& message) {
  const QString member = message.member();
  const QVariantList arguments = message.arguments();
  if (member == u"GetLayout" && arguments.size() == 3) {
    const int id = arguments[0].toInt();
    takeMenu();
    if (id != 0 && !entryOf(id))
      return message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such item"));
    const ExportedNode node{this, id, arguments[1].toInt(), arguments[2].toStringList()};
    return message.createReply({m_revision, QVariant::fromValue(node)});
  }
  if (member == u"GetGroupProperties" && arguments.size() == 2) {
    return message.createReply(QVariant::fromValue(
        groupProperties(qdbus_cast<QList<int>>(arguments[0]), arguments[1].toStringList())));
  }
  if (member == u"GetProperty" && arguments.size() == 2) {
    const MenuEntry* entry = entryOf(arguments[0].toInt());
    const QVariant value =
        (entry ? propertiesOf(*entry) : rootProperties()).value(arguments[1].toString());
    if (!value.isValid())
      return message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such property"));
    return message.createReply(QVariant::fromValue(QDBusVariant(value)));
  }
  if (member == u"Event" && arguments.size() == 4) {
    handleEvent(arguments[0].toInt(), arguments[1].toString());
    return message.createReply();
  }
  if (member == u"EventGroup" && arguments.size() == 1) {
    for (const auto& event : qdbus_cast<QList<DbusMenuEvent>>(arguments[0]))
      handleEvent(event.id, event.name);
    return message.createReply(QVariant::fromValue(QList<int>()));
  }
  if (member == u"AboutToShow" && arguments.size() == 1)
    return message.createReply(aboutToShow(arguments[0].toInt()));
  if (member == u"AboutToShowGroup" && arguments.size() == 1) {
    QList<int> updates;
    for (const int id : qdbus_cast<QList<int>>(arguments[0])) {
      if (aboutToShow(id))
        updates += id;
    }
    return message.createReply({QVariant::fromValue(updates), QVariant::fromValue(QList<int>())});
  }
  return message.createErrorReply(QDBusError::UnknownMethod, member);
}

bool ExportedMenu::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  const QVariantMap values{{QStringLiteral("Version"), uint(3)},
                           {QStringLiteral("TextDirection"), QStringLiteral("ltr")},
                           {QStringLiteral("Status"), QStringLiteral("normal")},
                           {QStringLiteral("IconThemePath"), QStringList()}};
  if (message.interface() == kPropertiesInterface && message.member() == u"GetAll")
    return connection.send(message.createReply(values));
  if (message.interface() == kPropertiesInterface && message.member() == u"Get") {
    const QVariant value = values.value(message.arguments().value(1).toString());
    return value.isValid() &&
           connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
  }
  if (message.interface() != kInterface)
    return false;
  if (isOpen())
    m_silence.start(); // somebody is looking
  return connection.send(answer(message));
}

QString ExportedMenu::introspect(const QString&) const {
  return menuIntrospection();
}

} // namespace tockwise
