#include "store/recent_reminders.h"

#include "store/text_cut.h"

namespace tockwise {
namespace {

const QString kFullDescription = QStringLiteral("full_description");
const QString kDescription = QStringLiteral("description");
const QString kType = QStringLiteral("type");

QString textUnder(const Value& record, const QString& key) {
  const Value* entry = record.find(key);
  const QString* text = entry ? entry->get<QString>() : nullptr;
  return text ? *text : QString();
}

} // namespace

void RecentReminders::append(const QString& text) {
  m_entries.push_back({text, cutText(text, kShown), 0});
  if (qsizetype(m_entries.size()) > kMost)
    m_entries.erase(m_entries.begin());
  ++m_revision;
}

void RecentReminders::clear() {
  m_entries.clear();
  ++m_revision;
}

int RecentReminders::setStored(const Value& stored) {
  m_entries.clear();
  ++m_revision;
  int leftOut = 0;
  const Value::Array* records = stored.get<Value::Array>();
  if (!records)
    return stored.isNull() ? 0 : 1;
  for (const Value& record : *records) {
    if (!record.get<Value::Dictionary>()) {
      ++leftOut;
      continue;
    }
    RecentReminder entry{textUnder(record, kFullDescription), textUnder(record, kDescription), 0};
    if (entry.fullDescription.isEmpty())
      entry.fullDescription = entry.description;
    if (const Value* type = record.find(kType); type && type->get<qint64>())
      entry.type = *type->get<qint64>();
    if (entry.description.isEmpty())
      entry.description = cutText(entry.fullDescription, kShown);
    m_entries.push_back(std::move(entry));
  }
  if (qsizetype(m_entries.size()) > kMost)
    m_entries.erase(m_entries.begin(), m_entries.end() - kMost);
  return leftOut;
}

Value RecentReminders::stored() const {
  Value::Array records;
  for (const RecentReminder& entry : m_entries) {
    records.push_back(Value::Dictionary{{kFullDescription, entry.fullDescription},
                                        {kDescription, entry.description},
                                        {kType, entry.type}});
  }
  return records;
}

} // namespace tockwise
