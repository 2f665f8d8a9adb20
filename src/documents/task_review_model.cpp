#include "documents/task_review_model.h"

#include "base/harmless_text.h"
#include "dates/calendar.h"
#include "store/text_cut.h"

#include <algorithm>

namespace tockwise {
namespace {

// Characters of a cell: more than any screen shows, and few enough to be measured at each paint.
constexpr qsizetype kMostOfCell = 300;

QString firesText(Date fires) {
  if (!(fires < kDistantFuture))
    return QStringLiteral("Never");
  return Calendar::current().dateStringWithFormat(fires, kDisplayPattern);
}

QString columnTitle(int column) {
  switch (column) {
  case TaskReviewModel::Reminder:
    return QStringLiteral("Reminder");
  case TaskReviewModel::Fires:
    return QStringLiteral("Fires");
  case TaskReviewModel::Kind:
    return QStringLiteral("What it does then");
  default:
    return QStringLiteral("With");
  }
}

} // namespace

TaskReviewModel::TaskReviewModel(std::vector<DocumentTask> tasks, QObject* parent)
    : QAbstractTableModel(parent), m_tasks(std::move(tasks)) {
  for (const DocumentTask& task : m_tasks)
    m_ticked.push_back(startsNothingHere(task.task));
  m_tickedCount = int(std::count(m_ticked.begin(), m_ticked.end(), true));
}

int TaskReviewModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(m_tasks.size());
}

int TaskReviewModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(ColumnCount);
}

QString TaskReviewModel::text(int row, int column) const {
  const DocumentTask& task = m_tasks[size_t(row)];
  const QString more = QStringLiteral("\u2026");
  switch (column) {
  case Reminder:
    return harmlessLine(cutText(task.reminder, kMostOfCell, more));
  case Fires:
    return firesText(task.fires);
  case Kind:
    return taskKindText(task.task);
  default:
    return harmlessLine(cutText(task.task.path, kMostOfCell, more));
  }
}

QVariant TaskReviewModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid))
    return {};
  if (role == Qt::CheckStateRole && index.column() == Reminder)
    return isTicked(index.row()) ? Qt::Checked : Qt::Unchecked;
  if (role == Qt::DisplayRole)
    return text(index.row(), index.column());
  if (role == Qt::AccessibleTextRole && index.column() == Reminder) {
    return QStringLiteral("%1: %2, %3 %4")
        .arg(isTicked(index.row()) ? u"ticked" : u"not ticked", text(index.row(), Reminder),
             text(index.row(), Kind), text(index.row(), Path));
  }
  return {};
}

QVariant TaskReviewModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal)
    return {};
  if (role == Qt::DisplayRole)
    return columnTitle(section);
  if (role == Qt::TextAlignmentRole)
    return int(Qt::AlignLeading | Qt::AlignVCenter);
  return {};
}

Qt::ItemFlags TaskReviewModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
  return index.column() == Reminder ? flags | Qt::ItemIsUserCheckable : flags;
}

bool TaskReviewModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
    return false;
  setTicked(index.row(), value.toInt() == Qt::Checked);
  return true;
}

bool TaskReviewModel::isTicked(int row) const {
  return row >= 0 && row < rowCount() && m_ticked[size_t(row)];
}

void TaskReviewModel::setTicked(int row, bool ticked) {
  if (row < 0 || row >= rowCount() || m_ticked[size_t(row)] == ticked)
    return;
  m_ticked[size_t(row)] = ticked;
  m_tickedCount += ticked ? 1 : -1;
  Q_EMIT dataChanged(index(row, Reminder), index(row, Reminder), {Qt::CheckStateRole});
  Q_EMIT ticksChanged();
}

QString TaskReviewModel::wholePath(int row) const {
  return row >= 0 && row < rowCount() ? harmlessLine(m_tasks[size_t(row)].task.path) : QString();
}

std::vector<qsizetype> TaskReviewModel::untickedRows() const {
  std::vector<qsizetype> rows;
  for (size_t i = 0; i < m_tasks.size(); ++i) {
    if (!m_ticked[i])
      rows.push_back(m_tasks[i].row);
  }
  return rows;
}

} // namespace tockwise
