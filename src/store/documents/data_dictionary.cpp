#include "store/documents/data_dictionary.h"

#include "base/log.h"
#include "base/main_thread.h"
#include "store/archive/keyed_writer.h"
#include "store/documents/archive_source.h"
#include "store/element_layout.h"

#include <QSet>

#include <algorithm>
#include <array>

namespace tockwise {
namespace {

constexpr size_t kArrays = std::tuple_size_v<decltype(kDictionaryFields)>;

using Arrays = std::array<std::vector<ArchiveSource::Handle>, kArrays>;

Error damaged(const QString& what) {
  return Error{Error::Kind::Damaged, what};
}

Error tooLarge() {
  return damaged(QStringLiteral("it unfolds beyond reason"));
}

template <typename Visitor> void visitFields(Visitor&& visit) {
  std::apply([&](const auto&... field) { (visit(field.first, field.second), ...); },
             kDictionaryFields);
}

// Elements are values: the blank interval of ten thousand reminders is one object.
class ArchiveSink {
 public:
  using Handle = KeyedWriter::Uid;

  explicit ArchiveSink(KeyedWriter& writer) : m_writer(writer) {}

  Handle boolean(bool value) { return m_writer.boolean(value); }
  Handle integer(qint64 value) { return m_writer.integer(value); }
  Handle date(Date value) { return m_writer.date(value); }
  Handle string(const QString& value) { return m_writer.string(value); }
  Handle data(const QByteArray& value) { return m_writer.data(value); }
  Handle array(std::span<const Handle> elements) { return m_writer.arrayValue(elements); }
  Handle dictionary(std::span<const Handle> keys, std::span<const Handle> values) {
    return m_writer.dictionaryValue(keys, values);
  }

 private:
  KeyedWriter& m_writer;
};

// The sixteen arrays of the dictionary at the archive's root, by position.
Result<Arrays> readArrays(const KeyedArchive& archive, ArchiveSource& source) {
  if (!source.pairCount(archive.root()))
    return damaged(QStringLiteral("it holds no dictionary"));
  Arrays arrays;
  for (size_t at = 0; at < kArrays; ++at) {
    const QString& key = dataDictionaryKeys()[qsizetype(at)];
    const auto array = source.find(archive.root(), key);
    if (!array)
      return damaged(QStringLiteral("it has no %1").arg(key));
    auto elements = source.elementsOf(*array);
    if (!elements)
      return damaged(QStringLiteral("its %1 is no array").arg(key));
    arrays[at] = std::move(*elements);
  }
  return arrays;
}

size_t positionOf(QStringView key) {
  return size_t(dataDictionaryKeys().indexOf(key));
}

Result<void> checkLengths(const Arrays& arrays, size_t rows) {
  for (size_t at = 0; at < kArrays; ++at) {
    if (arrays[at].size() < rows) {
      return damaged(QStringLiteral("its %1 reaches %2 of %3 reminders")
                         .arg(dataDictionaryKeys()[qsizetype(at)])
                         .arg(arrays[at].size())
                         .arg(rows));
    }
  }
  return {};
}

template <typename Member> bool isColumn(Member member, Member wanted) {
  return member == wanted;
}
template <typename Member, typename Other> bool isColumn(Member, Other) {
  return false; // of another type
}

template <typename Member> bool isFireDates(Member member) {
  return isColumn(member, &Columns::reminderQueue);
}

// Fills the columns of a dictionary from its arrays, as far as the rows go.
class ColumnReader {
 public:
  ColumnReader(ArchiveSource& source, const ReminderQueue::Pads& pads, DataDictionary& dictionary)
      : m_source(source), m_pad(elements::padRow(pads)), m_dictionary(dictionary) {}

  template <typename Member, typename Field>
  void read(Member member, Field field, const std::vector<ArchiveSource::Handle>& array,
            size_t rows) {
    auto& column = m_dictionary.columns.*member;
    auto& values = ReminderQueue::valuesOf(column);
    using Element = typename std::remove_reference_t<decltype(column)>::value_type;
    const size_t count = std::min(rows, array.size());
    if (!m_source.charge(qsizetype(count) * qsizetype(sizeof(Element))))
      return;
    values.reserve(count);
    std::vector<size_t> foreign;
    for (size_t i = 0; i < count && !m_source.isExhausted(); ++i) {
      Element value{};
      if (!elements::read(m_source, array[i], value)) {
        value = pad<Element>(member, field);
        foreign.push_back(i);
      }
      values.push_back(std::move(value));
    }
    if (isFireDates(member))
      m_dictionary.rowsWithoutFireDate.assign(foreign.begin(), foreign.end());
    else
      tellForeign(column.key(), foreign);
  }

 private:
  template <typename Element, typename Member, typename Field>
  Element pad(Member member, Field field) const {
    if constexpr (std::is_same_v<Element, Date>) {
      if (isFireDates(member))
        return kDistantFuture;
    }
    if constexpr (std::is_same_v<Element, QString>) {
      if (isColumn(member, &Columns::reminderUUID))
        return UUIDString();
    }
    return m_pad.*field;
  }

  void tellForeign(const QString& key, const std::vector<size_t>& foreign) {
    if (foreign.empty())
      return;
    m_dictionary.foreignElements += qsizetype(foreign.size());
    logLine(QStringLiteral("%1: %2 elements are of a foreign kind, the first is %3")
                .arg(key)
                .arg(foreign.size())
                .arg(foreign.front()));
  }

  ArchiveSource& m_source;
  const Reminder m_pad;
  DataDictionary& m_dictionary;
};

void logDroppedFireDate() {
  logLine(QStringLiteral("Huh? Don't have an NSDate or NSCalendarDate?"));
}

bool hasFireDate(const DataDictionary& dictionary, qsizetype row) {
  const auto& without = dictionary.rowsWithoutFireDate;
  return !std::binary_search(without.begin(), without.end(), row);
}

// Appends those rows of one column to another.
template <typename T>
void appendRows(const Column<T>& from, const std::vector<qsizetype>& rows, Column<T>& to) {
  auto& values = ReminderQueue::valuesOf(to);
  values.reserve(values.size() + rows.size());
  for (const qsizetype row : rows)
    values.push_back(from.values()[size_t(row)]);
}

bool isEven(const Columns& columns) {
  bool even = true;
  visitFields([&](auto member, auto) {
    even = even && (columns.*member).size() == columns.reminderQueue.size();
  });
  return even;
}

QByteArray archived(const ReminderQueue& queue) {
  KeyedWriter writer;
  ArchiveSink sink(writer);
  std::vector<KeyedWriter::Uid> keys;
  std::vector<KeyedWriter::Uid> values;
  visitFields([&](auto member, auto) {
    const auto& column = queue.columns().*member;
    std::vector<KeyedWriter::Uid> array;
    array.reserve(size_t(column.size()));
    for (const auto& element : column.values())
      array.push_back(elements::write(sink, element));
    keys.push_back(writer.string(column.key()));
    values.push_back(writer.mutableArray(array));
  });
  return writer.finish(writer.dictionary(keys, values));
}

void replaceWith(ReminderQueue& queue, DataDictionary dictionary) {
  if (!isEven(dictionary.columns)) {
    logLine(QStringLiteral("setDataWithDataDictionary - the arrays differ in length"));
    return;
  }
  auto& fireDates = ReminderQueue::valuesOf(dictionary.columns.reminderQueue);
  std::vector<Date> kept;
  kept.reserve(fireDates.size());
  for (size_t row = 0; row < fireDates.size(); ++row) {
    if (hasFireDate(dictionary, qsizetype(row)))
      kept.push_back(fireDates[row]);
    else
      logDroppedFireDate();
  }
  fireDates = std::move(kept);
  queue.setColumns(std::move(dictionary.columns));
  logLine(QStringLiteral("setDataWithDataDictionary - %1 items").arg(queue.count()));
}

Result<MergeCounts> mergeInto(ReminderQueue& queue, const DataDictionary& dictionary) {
  logLine(QStringLiteral("RootViewController: mergeDataWithDataDictionary"));
  const auto rows = rowsToMerge(queue, dictionary);
  if (!rows)
    return rows.error();
  if (!rows->empty()) {
    std::vector<qsizetype> dated;
    for (const qsizetype row : *rows) {
      if (hasFireDate(dictionary, row))
        dated.push_back(row);
      else
        logDroppedFireDate();
    }
    queue.syncImportedUIDs();
    Columns columns = queue.columns();
    visitFields([&](auto member, auto) {
      appendRows(dictionary.columns.*member, isFireDates(member) ? dated : *rows, columns.*member);
    });
    queue.setColumns(std::move(columns));
  }
  const MergeCounts counts{qsizetype(rows->size()),
                           dictionary.columns.reminderUUID.size() - qsizetype(rows->size())};
  logLine(QStringLiteral("nbrItemsMerged = %1, nbrItemsExisted = %2")
              .arg(counts.merged)
              .arg(counts.existed));
  return counts;
}

} // namespace

const QStringList& dataDictionaryKeys() {
  static const QStringList keys = [] {
    const Columns columns;
    QStringList list;
    visitFields([&](auto member, auto) { list.append((columns.*member).key()); });
    return list;
  }();
  return keys;
}

QByteArray archivedDataDictionary(const ReminderQueue& queue) {
  QByteArray archive;
  runOnMainThread([&] { archive = archived(queue); });
  return archive;
}

void setDataWithDataDictionary(ReminderQueue& queue, DataDictionary dictionary) {
  runOnMainThread([&] { replaceWith(queue, std::move(dictionary)); });
}

Result<MergeCounts> mergeDataWithDataDictionary(ReminderQueue& queue,
                                                const DataDictionary& dictionary) {
  Result<MergeCounts> counts = MergeCounts();
  runOnMainThread([&] { counts = mergeInto(queue, dictionary); });
  return counts;
}

Result<DataDictionary> unarchivedDataDictionary(const QByteArray& archive,
                                                const ReminderQueue::Pads& pads,
                                                DictionaryUse use) {
  const auto opened = KeyedArchive::open(archive);
  if (!opened)
    return opened.error();
  ArchiveSource source(**opened);
  const auto arrays = readArrays(**opened, source);
  if (!arrays)
    return arrays.error();
  if (source.isExhausted())
    return tooLarge();
  const bool replaces = use == DictionaryUse::Replace;
  const size_t rows = (*arrays)[positionOf(replaces ? u"reminderQueue" : u"reminderUUID")].size();
  if (replaces) {
    if (const auto checked = checkLengths(*arrays, rows); !checked)
      return checked.error();
  }
  DataDictionary dictionary;
  ColumnReader reader(source, pads, dictionary);
  size_t at = 0;
  visitFields([&](auto member, auto field) { reader.read(member, field, (*arrays)[at++], rows); });
  if (source.isExhausted())
    return tooLarge();
  return dictionary;
}

Result<std::vector<qsizetype>> rowsToMerge(const ReminderQueue& queue,
                                           const DataDictionary& dictionary) {
  const auto& live = queue->reminderUUID.values();
  QSet<QString> known(live.begin(), live.end());
  qsizetype complete = dictionary.columns.reminderUUID.size();
  visitFields([&](auto member, auto) {
    complete = std::min(complete, (dictionary.columns.*member).size());
  });
  std::vector<qsizetype> rows;
  const auto& identifiers = dictionary.columns.reminderUUID.values();
  for (size_t i = 0; i < identifiers.size(); ++i) {
    const qsizetype before = known.size();
    known.insert(identifiers[i]);
    if (known.size() == before)
      continue;
    if (qsizetype(i) >= complete) {
      return damaged(QStringLiteral("an array reaches %1 of %2 reminders")
                         .arg(complete)
                         .arg(identifiers.size()));
    }
    rows.push_back(qsizetype(i));
  }
  return rows;
}

} // namespace tockwise
