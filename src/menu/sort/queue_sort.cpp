#include "menu/sort/queue_sort.h"

#include "base/log.h"
#include "menu/sort/folded_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace tockwise {
namespace {

using Order = std::optional<std::vector<quint32>>;

constexpr SortOrder kOrders[] = {
    {SortType::Date, u"By Date", u"date"},
    {SortType::DateReverse, u"By Reverse Date", u"reverse date"},
    {SortType::DateCreated, u"By Date Created", u"creation date"},
    {SortType::DateCreatedReverse, u"By Reverse Date Created", u"reverse creation date"},
    {SortType::Name, u"By Name", u"name"},
    {SortType::NameReverse, u"By Reverse Name", u"reverse name"},
    {SortType::DateFired, u"By Date Fired", u"fired date"},
    {SortType::DateFiredReverse, u"By Reverse Date Fired", u"reverse fired date"},
    {SortType::DateModified, u"By Date Modified", u"modification date"},
    {SortType::DateModifiedReverse, u"By Reverse Date Modified", u"reverse modification date"},
};

enum class Direction { Ascending, Descending };

struct DateKey {
  double seconds;
  quint32 index;
};

const Column<Date>& dateColumn(const Columns& columns, SortType type) {
  switch (type) {
  case SortType::DateCreated:
  case SortType::DateCreatedReverse:
    return columns.reminderDateTimeCreated;
  case SortType::DateFired:
  case SortType::DateFiredReverse:
    return columns.reminderDateTimeFired;
  case SortType::DateModified:
  case SortType::DateModifiedReverse:
    return columns.reminderDateTimeModified;
  default:
    return columns.reminderQueue;
  }
}

Direction directionOf(SortType type) {
  switch (type) {
  case SortType::Date:
  case SortType::DateCreatedReverse:
  case SortType::Name:
  case SortType::DateFiredReverse:
  case SortType::DateModifiedReverse:
    return Direction::Ascending;
  default:
    return Direction::Descending;
  }
}

/// What is no number becomes later than everything, so that all dates can be compared.
double comparable(Date date) {
  return std::isnan(date.seconds) ? std::numeric_limits<double>::infinity() : date.seconds;
}

Order orderOfDates(std::span<const Date> dates, Direction direction) {
  // Ascending keys throughout: the negative of a date orders it the other way round.
  const double sign = direction == Direction::Ascending ? 1 : -1;
  const auto isOutOfOrder = [sign](Date left, Date right) {
    return sign * comparable(right) < sign * comparable(left);
  };
  if (std::adjacent_find(dates.begin(), dates.end(), isOutOfOrder) == dates.end())
    return std::nullopt;
  std::vector<DateKey> keys;
  keys.reserve(dates.size());
  for (const Date date : dates)
    keys.push_back({sign * comparable(date), quint32(keys.size())});
  std::stable_sort(keys.begin(), keys.end(), [](const DateKey& left, const DateKey& right) {
    return left.seconds < right.seconds;
  });
  std::vector<quint32> order;
  order.reserve(keys.size());
  for (const DateKey& key : keys)
    order.push_back(key.index);
  return order;
}

Order orderOfNames(const std::vector<QString>& names, Direction direction) {
  const bool ascending = direction == Direction::Ascending;
  const auto isOutOfOrder = [ascending](const QString& left, const QString& right) {
    const int result = compareFolded(left, right);
    return ascending ? result > 0 : result < 0;
  };
  if (std::adjacent_find(names.begin(), names.end(), isOutOfOrder) == names.end())
    return std::nullopt;
  const FoldedTexts texts(names);
  std::vector<quint32> order(names.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](quint32 left, quint32 right) {
    return ascending ? texts.isBefore(left, right) : texts.isBefore(right, left);
  });
  return order;
}

} // namespace

std::span<const SortOrder> sortOrders() {
  return kOrders;
}

Result<Order> orderOf(const ReminderQueue& queue, SortType type) {
  const Columns& columns = queue.columns();
  const Direction direction = directionOf(type);
  if (type == SortType::Name || type == SortType::NameReverse)
    return orderOfNames(columns.reminderDescriptions.values(), direction);
  const Column<Date>& dates = dateColumn(columns, type);
  const bool countsItself = type == SortType::DateCreated || type == SortType::DateCreatedReverse;
  const qsizetype count = countsItself ? dates.size() : queue.count();
  if (count > 0 && !dates.holds(count - 1))
    return dates.at(count - 1).error();
  return orderOfDates(std::span(dates.values()).first(size_t(count)), direction);
}

QueueSort::QueueSort(ReminderQueue& queue, Settings& settings, Prompter& prompter,
                     std::function<void()> saveDefaults)
    : m_queue(queue),
      m_settings(settings),
      m_prompter(prompter),
      m_saveDefaults(std::move(saveDefaults)),
      m_key(QStringLiteral("sortType")) {}

void QueueSort::sort() {
  const auto type = sortType();
  if (!type) {
    m_prompter.beep();
    return;
  }
  if (m_sortedRevision != m_queue.revision() || m_sortedType != type) {
    if (m_queue.count() > 1)
      m_queue.syncImportedUIDs();
    const auto order = orderOf(m_queue, *type);
    auto failure = order ? std::nullopt : std::optional(order.error());
    if (order && *order) {
      if (const auto moved = m_queue.permute(**order); !moved)
        failure = moved.error();
    }
    if (failure) {
      logLine(failure->message);
      return;
    }
    m_sortedRevision = m_queue.revision();
    m_sortedType = type;
  }
  m_saveDefaults();
}

std::optional<SortType> QueueSort::sortType() const {
  const qint64 code = m_settings.integer(m_key);
  if (code < qint64(SortType::Date) || code > qint64(SortType::DateModifiedReverse))
    return std::nullopt;
  return SortType(code);
}

QString QueueSort::sortTypeText() const {
  const auto type = sortType();
  if (!type) {
    m_prompter.beep();
    return {};
  }
  return QString::fromUtf16(kOrders[size_t(*type) - 1].text);
}

void QueueSort::sortBy(SortType type) {
  m_settings.setValue(m_key, int(type));
  if (type >= SortType::DateFired)
    m_settings.synchronize();
}

} // namespace tockwise
