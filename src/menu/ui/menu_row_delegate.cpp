#include "menu/ui/menu_row_delegate.h"

#include "menu/ui/menu_list_model.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>

namespace tockwise {
namespace {

const MenuListModel& modelOf(const QModelIndex& index) {
  return *static_cast<const MenuListModel*>(index.model());
}

bool isHeading(const MenuEntry& entry) {
  return entry.kind == MenuItemKind::QueueHeader;
}

} // namespace

int MenuRowDelegate::plainHeight(const QStyleOptionViewItem& option) const {
  if (m_plainHeight == 0 || m_heightFont != option.font) {
    QStyleOptionMenuItem item;
    item.font = option.font;
    item.fontMetrics = option.fontMetrics;
    item.menuItemType = QStyleOptionMenuItem::Normal;
    item.text = QStringLiteral("X");
    const QSize text(option.fontMetrics.horizontalAdvance(u'X'), option.fontMetrics.height());
    m_plainHeight = option.widget->style()
                        ->sizeFromContents(QStyle::CT_MenuItem, &item, text, nullptr)
                        .height();
    m_heightFont = option.font;
  }
  return m_plainHeight;
}

QSize MenuRowDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
  const MenuListModel& model = modelOf(index);
  const MenuEntry* entry = model.entry(index);
  if (!entry || StatusMenu::isSeparator(*entry))
    return {1, 7};
  if (entry->kind == MenuItemKind::ReminderTitle) {
    if (const RichText* rich = model.live().menu().richTitle(*entry)) {
      QTextDocument* document = m_documents.document(entry->reminderUUID, *rich, option.font);
      const QStyleOptionMenuItem item = menuOption(option, model, *entry);
      return {1, richItemSize(*option.widget->style(), item, *document, nullptr).height()};
    }
  }
  return {1, plainHeight(option)};
}

QStyleOptionMenuItem MenuRowDelegate::menuOption(const QStyleOptionViewItem& option,
                                                 const MenuListModel& model,
                                                 const MenuEntry& entry) const {
  const StatusMenu& menu = model.live().menu();
  QStyleOptionMenuItem item;
  item.rect = option.rect;
  item.palette = option.widget->palette(); // the option's is greyed for a row that is disabled
  item.palette.setColor(QPalette::Active, QPalette::Window, item.palette.color(QPalette::Base));
  item.palette.setColor(QPalette::Active, QPalette::WindowText, item.palette.color(QPalette::Text));
  item.direction = option.direction;
  item.fontMetrics = option.fontMetrics;
  item.font = option.font;
  item.state = QStyle::State_Active;
  item.menuHasCheckableItems = false;
  item.menuRect = option.rect;
  if (StatusMenu::isSeparator(entry)) {
    item.menuItemType = QStyleOptionMenuItem::Separator;
    return item;
  }
  const MenuLabel label = menuLabel(model.live().title(entry));
  item.menuItemType =
      StatusMenu::hasSubmenu(entry) ? QStyleOptionMenuItem::SubMenu : QStyleOptionMenuItem::Normal;
  if (!label.key.isEmpty())
    item.reservedShortcutWidth = option.fontMetrics.horizontalAdvance(label.key) + 12;
  const int room = option.rect.width() - 56 - item.reservedShortcutWidth;
  item.text =
      menuText({option.fontMetrics.elidedText(label.text, Qt::ElideRight, room), label.key});
  if (menu.isEnabled(entry)) {
    item.state |= QStyle::State_Enabled;
    if (option.state & (QStyle::State_Selected | QStyle::State_MouseOver))
      item.state |= QStyle::State_Selected;
  } else {
    if (isReading(entry))
      item.palette = readingPalette(item.palette);
    item.palette.setCurrentColorGroup(QPalette::Disabled);
  }
  if (isHeading(entry)) {
    item.font.setBold(true);
    item.fontMetrics = QFontMetrics(item.font);
  }
  return item;
}

void MenuRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  const MenuListModel& model = modelOf(index);
  const MenuEntry* entry = model.entry(index);
  if (!entry)
    return;
  const QStyleOptionMenuItem item = menuOption(option, model, *entry);
  const QStyle& style = *option.widget->style();
  if (const RichText* rich = model.live().menu().richTitle(*entry)) {
    QTextDocument* document = m_documents.document(entry->reminderUUID, *rich, option.font);
    paintRichItem(style, item, *document, *painter, nullptr);
    return;
  }
  painter->save();
  painter->setFont(item.font);
  style.drawControl(QStyle::CE_MenuItem, &item, painter, nullptr);
  painter->restore();
}

} // namespace tockwise
