#include "store/documents/data_dictionary.h"

namespace tockwise {

QStringList dataDictionaryKeys() {
  return {};
}

QByteArray archivedDataDictionary(const ReminderQueue&) {
  return {};
}

Result<DataDictionary> unarchivedDataDictionary(const QByteArray&, const ReminderQueue::Pads&) {
  return DataDictionary();
}

void setDataWithDataDictionary(ReminderQueue&, DataDictionary) {}

MergeCounts mergeDataWithDataDictionary(ReminderQueue&, const DataDictionary&) {
  return {};
}

} // namespace tockwise
