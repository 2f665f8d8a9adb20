#include "prefs/ui/quick_remind_list.h"

#include "prefs/quick_time.h"

#include <QApplication>
#include <QPainter>

namespace tockwise {
namespace {

constexpr int kPadding = 3; // pixels above and below a row

QString withRemark(const QString& entry, const QString& remark) {
  return remark.isEmpty() ? entry : QStringLiteral("%1, %2").arg(entry.trimmed(), remark);
}

} // namespace

QuickRemindModel::QuickRemindModel(const QuickRemindMenu& menu, QObject* parent)
    : QAbstractListModel(parent), m_menu(menu), m_entries(menu.entries()) {}

void QuickRemindModel::reload() {
  const QStringList entries = m_menu.entries();
  if (entries == m_entries)
    return;
  beginResetModel();
  m_entries = entries;
  endResetModel();
}

int QuickRemindModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant QuickRemindModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= m_entries.size())
    return {};
  const QString& entry = m_entries[index.row()];
  switch (role) {
  case Qt::DisplayRole:
    return entry;
  case Qt::AccessibleTextRole:
    return withRemark(entry, quickTimeRemark(entry));
  case Qt::ToolTipRole: {
    const QString remark = quickTimeRemark(entry);
    return remark.isEmpty()
               ? QStringLiteral("%1 from now").arg(durationText(stringToSeconds(entry)))
               : remark;
  }
  case kQuickTimeRemarkRole:
    return quickTimeRemark(entry);
  default:
    return {};
  }
}

void QuickRemindDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  const QString remark = index.data(kQuickTimeRemarkRole).toString();
  if (remark.isEmpty())
    return;
  QStyleOptionViewItem shown = option;
  initStyleOption(&shown, index);
  const QStyle* style = shown.widget ? shown.widget->style() : QApplication::style();
  const QRect area = style->subElementRect(QStyle::SE_ItemViewItemText, &shown, shown.widget);
  const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &shown, shown.widget) + 1;
  const int taken = shown.fontMetrics.horizontalAdvance(shown.text.trimmed() + u' ');
  const QRect rest = area.adjusted(margin + taken + margin * 3, 0, -margin, 0);
  const bool selected = shown.state & QStyle::State_Selected;
  QColor color = shown.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
  color.setAlphaF(0.7F);
  painter->save();
  painter->setFont(shown.font);
  painter->setPen(color);
  painter->drawText(rest, Qt::AlignVCenter | Qt::AlignLeft,
                    shown.fontMetrics.elidedText(remark, Qt::ElideRight, rest.width()));
  painter->restore();
}

QSize QuickRemindDelegate::sizeHint(const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 2 * kPadding);
}

} // namespace tockwise
