#include "menu/ui/native_menu.h"

#include "menu/ui/menu_style.h"

#include <QActionEvent>
#include <QApplication>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QScreen>
#include <QStyleOptionMenuItem>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace tockwise {
namespace {

/// Opens the text of an option that stands for a rich title; its row and reminderUUID follow.
constexpr QChar kRichMark(1);
constexpr int kWidestText = 640; // pixels

const MenuEntryAction* entryAction(const QAction* action) {
  return qobject_cast<const MenuEntryAction*>(action);
}

/// All menus share one style object; it goes with the application.
MenuStyle* sharedStyle() {
  auto* style = qApp->findChild<MenuStyle*>(QString(), Qt::FindDirectChildrenOnly);
  if (!style) {
    style = new MenuStyle;
    style->setParent(qApp);
  }
  return style;
}

} // namespace

// QMenu lays itself out again after each change of an action while it is visible, which is
// quadratic for many. While a batch lives, it takes itself for hidden and changes of texts do
// not reach it; at the end it is laid out once.
class NativeMenu::Batch {
 public:
  explicit Batch(NativeMenu& menu) : m_menu(menu), m_visible(menu.isVisible()) {
    m_menu.m_swallowsChanges = true;
    m_menu.setAttribute(Qt::WA_WState_Visible, false);
  }
  ~Batch() {
    m_menu.m_swallowsChanges = false;
    m_menu.setAttribute(Qt::WA_WState_Visible, m_visible);
    if (m_visible && m_layout)
      m_menu.resize(m_menu.sizeHint());
  }
  void layOut() { m_layout = true; }

 private:
  NativeMenu& m_menu;
  bool m_visible;
  bool m_layout = false;
};

NativeMenu::NativeMenu(LiveMenu& live, QWidget* parent) : QMenu(parent), m_live(live) {
  setObjectName(QStringLiteral("statusMenu"));
  initialise();
}

NativeMenu::NativeMenu(LiveMenu& live, MenuEntry parentEntry, QWidget* parent)
    : QMenu(parent), m_live(live), m_parentEntry(std::move(parentEntry)) {
  initialise();
}

void NativeMenu::initialise() {
  setStyle(sharedStyle());
  connect(this, &QMenu::aboutToShow, this, &NativeMenu::fill);
  connect(this, &QMenu::hovered, this, &NativeMenu::provideSubmenu);
  // Actions are let go once the event that closed the menu, maybe a choice, is over.
  connect(this, &QMenu::aboutToHide, this, &NativeMenu::release, Qt::QueuedConnection);
  connect(this, &QMenu::triggered, this, [this](QAction* action) {
    const MenuEntryAction* chosen = entryAction(action);
    if (chosen && m_items.end() != std::find(m_items.begin(), m_items.end(), chosen) &&
        m_live.menu().isActionAvailable(chosen->entry()))
      Q_EMIT activated(m_live.activation(chosen->entry()));
  });
}

std::vector<MenuEntry> NativeMenu::currentEntries() const {
  return m_parentEntry ? m_live.menu().submenu(*m_parentEntry)
                       : m_live.menu().entriesUpTo(kMostShownReminders);
}

void NativeMenu::fill() {
  if (!m_parentEntry)
    m_live.refresh();
  synchronize();
}

void NativeMenu::popUpAt(QPoint place) {
  fill();
  const QScreen* screen = QGuiApplication::screenAt(place);
  if (!screen)
    screen = QGuiApplication::primaryScreen();
  const QRect room = screen->availableGeometry();
  // One that is taller than the screen starts at its top, not above the pointer with its end.
  if (sizeHint().height() >= room.height())
    place.setY(room.top());
  popup(place);
  activateWindow();
}

void NativeMenu::release() {
  if (isVisible())
    return;
  const Batch batch(*this);
  for (MenuEntryAction* action : std::exchange(m_items, {}))
    removeAction(action);
  m_entries.clear();
  m_documents.clear();
  if (!m_parentEntry)
    m_live.reset();
}

void NativeMenu::refresh() {
  if (!m_parentEntry)
    m_live.refresh();
  synchronize();
  if (m_highlighted && activeAction() != m_highlighted)
    setActiveAction(m_highlighted); // it moved
  // Texts are made when they are painted; that is all a second costs.
  QMenu::update();
}

void NativeMenu::synchronize() {
  std::vector<MenuEntry> entries = currentEntries();
  const MenuChanges changes = menuChanges(m_entries, entries);
  Batch batch(*this);
  if (!changes.isEmpty())
    batch.layOut();
  QAction* highlighted = activeAction();
  // What moves is taken out and put in again; what is gone goes with its submenu.
  std::vector<MenuEntryAction*> movers(changes.inserted.size());
  for (size_t i = 0; i < movers.size(); ++i) {
    if (const qsizetype from = changes.movedFrom[i]; from >= 0)
      movers[i] = std::exchange(m_items[size_t(from)], nullptr);
    if (movers[i])
      QMenu::removeAction(movers[i]);
  }
  for (const qsizetype position : changes.removed) {
    if (MenuEntryAction* gone = std::exchange(m_items[size_t(position)], nullptr)) {
      highlighted = gone == highlighted ? nullptr : highlighted;
      removeAction(gone);
    }
  }
  std::erase(m_items, nullptr);

  std::vector<MenuEntryAction*> items;
  items.reserve(entries.size());
  size_t inserted = 0;
  auto kept = m_items.begin();
  for (size_t position = 0; position < entries.size(); ++position) {
    if (inserted < movers.size() && changes.inserted[inserted] == qsizetype(position)) {
      MenuEntryAction* action = movers[inserted++];
      if (action)
        update(*action, entries[position]);
      else
        action = makeAction(entries[position]);
      insertAction(kept == m_items.end() ? nullptr : *kept, action);
      items.push_back(action);
      continue;
    }
    update(**kept, entries[position]);
    items.push_back(*kept);
    ++kept;
  }
  m_items = std::move(items);
  m_entries = std::move(entries);
  m_highlighted = highlighted;
}

MenuEntryAction* NativeMenu::makeAction(const MenuEntry& entry) {
  auto* action = new MenuEntryAction(entry, this);
  const StatusMenu& menu = m_live.menu();
  if (StatusMenu::isSeparator(entry)) {
    action->setSeparator(true);
    return action;
  }
  // The width of the menu comes from this text; what is painted is made anew.
  action->setText(elided(menuText(menuLabel(m_live.title(entry)))));
  action->setEnabled(menu.isEnabled(entry));
  action->setCheckable(StatusMenu::isCheckable(entry));
  action->setChecked(menu.isChecked(entry));
  action->setMenuRole(QAction::NoRole);
  if (StatusMenu::hasSubmenu(entry) && !entry.reminderUUID.isEmpty())
    return action; // its submenu is made when the pointer comes
  if (StatusMenu::hasSubmenu(entry))
    provideSubmenu(action);
  return action;
}

void NativeMenu::removeAction(MenuEntryAction* action) {
  if (QMenu* submenu = action->menu()) {
    submenu->close();
    submenu->deleteLater();
    action->setMenu(nullptr);
  }
  QMenu::removeAction(action);
  action->deleteLater();
}

void NativeMenu::update(MenuEntryAction& action, const MenuEntry& entry) {
  action.setEntry(entry);
  const StatusMenu& menu = m_live.menu();
  if (StatusMenu::isSeparator(entry))
    return;
  if (!StatusMenu::isLive(entry) || &action == activeAction())
    action.setEnabled(menu.isEnabled(entry));
  if (StatusMenu::isCheckable(entry))
    action.setChecked(menu.isChecked(entry));
  if (auto* submenu = qobject_cast<NativeMenu*>(action.menu())) {
    submenu->m_parentEntry = entry;
    if (submenu->isVisible())
      submenu->refresh();
  }
}

void NativeMenu::provideSubmenu(QAction* action) {
  auto* item = qobject_cast<MenuEntryAction*>(action);
  if (!item || item->menu() || !StatusMenu::hasSubmenu(item->entry()))
    return;
  auto* submenu = new NativeMenu(m_live, item->entry(), this);
  connect(submenu, &NativeMenu::activated, this, &NativeMenu::activated);
  const bool swallowed = std::exchange(m_swallowsChanges, true); // it looked like one before
  item->setMenu(submenu);
  m_swallowsChanges = swallowed;
}

QString NativeMenu::elided(const QString& text) const {
  return text.size() < 60
             ? text
             : fontMetrics().elidedText(text, Qt::ElideRight, kWidestText, Qt::TextShowMnemonic);
}

QString NativeMenu::paintedText(const QAction* action) const {
  const MenuEntryAction* item = entryAction(action);
  return item ? elided(menuText(menuLabel(m_live.title(item->entry())))) : action->text();
}

void NativeMenu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
  QMenu::initStyleOption(option, action);
  const MenuEntryAction* item = entryAction(action);
  if (!item || StatusMenu::isSeparator(item->entry()))
    return;
  const MenuEntry& entry = item->entry();
  if (StatusMenu::hasSubmenu(entry))
    option->menuItemType = QStyleOptionMenuItem::SubMenu;
  if (isReading(entry))
    option->palette = readingPalette(option->palette);
  if (entry.kind == MenuItemKind::QueueHeader)
    option->font.setBold(true);
  if (m_live.menu().richTitle(entry))
    option->text = kRichMark + QString::number(entry.row) + u' ' + entry.reminderUUID;
  else
    option->text = paintedText(action);
}

QTextDocument* NativeMenu::richDocumentOf(const QStyleOptionMenuItem& option) const {
  if (!option.text.startsWith(kRichMark))
    return nullptr;
  const qsizetype blank = option.text.indexOf(u' ');
  const MenuEntry entry{MenuItemKind::ReminderTitle,
                        QStringView(option.text).mid(1, blank - 1).toInt(),
                        option.text.mid(blank + 1)};
  const RichText* title = m_live.menu().richTitle(entry);
  return title ? m_documents.document(entry.reminderUUID, *title, option.font) : nullptr;
}

void NativeMenu::actionEvent(QActionEvent* event) {
  if (m_swallowsChanges && event->type() == QEvent::ActionChanged)
    return;
  QMenu::actionEvent(event);
}

// QMenu opens the submenu of an item that has one and never runs its action; a reminder's title
// does both, as the arrow and the rest of the item.
bool NativeMenu::chooseTitle(QAction* action) {
  const MenuEntryAction* item = entryAction(action);
  if (!item || item->entry().kind != MenuItemKind::ReminderTitle ||
      !m_live.menu().isActionAvailable(item->entry()))
    return false;
  const MenuActivation activation = m_live.activation(item->entry());
  close();
  Q_EMIT activated(activation);
  return true;
}

void NativeMenu::mouseReleaseEvent(QMouseEvent* event) {
  if (isBeside(*event))
    return;
  QAction* action = actionAt(event->position().toPoint());
  const QRect place = action ? actionGeometry(action) : QRect();
  const bool onArrow = isRightToLeft() ? event->position().x() < place.left() + place.height()
                                       : event->position().x() > place.right() - place.height();
  if (action && action == activeAction() && !onArrow && chooseTitle(action))
    return;
  QMenu::mouseReleaseEvent(event);
}

// QMenu takes a pointer anywhere below it, as on the tray's icon, for one on its scroll arrow.
bool NativeMenu::isBeside(const QMouseEvent& event) const {
  if (m_parentEntry || rect().contains(event.position().toPoint()))
    return false;
  const QMenu* submenu = activeAction() ? activeAction()->menu() : nullptr;
  return !submenu || !submenu->isVisible();
}

void NativeMenu::mousePressEvent(QMouseEvent* event) {
  if (isBeside(*event))
    close();
  else
    QMenu::mousePressEvent(event);
}

void NativeMenu::mouseMoveEvent(QMouseEvent* event) {
  if (!isBeside(*event))
    QMenu::mouseMoveEvent(event);
}

void NativeMenu::keyPressEvent(QKeyEvent* event) {
  const bool chooses = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                       event->key() == Qt::Key_Space;
  if (chooses && activeAction() && chooseTitle(activeAction()))
    return;
  QMenu::keyPressEvent(event);
}

bool NativeMenu::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const MenuEntryAction* item = entryAction(actionAt(help->pos()));
    const QString text = item ? m_live.toolTip(item->entry()) : QString();
    QToolTip::showText(help->globalPos(), text, this);
    return true;
  }
  return QMenu::event(event);
}

} // namespace tockwise
