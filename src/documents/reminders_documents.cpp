#include "documents/reminders_documents.h"

namespace tockwise {

RemindersDocuments::RemindersDocuments(Surroundings surroundings, QObject* parent)
    : QObject(parent), m_surroundings(std::move(surroundings)) {}

RemindersDocuments::~RemindersDocuments() = default;

void RemindersDocuments::selItemSaveReminders() {}

void RemindersDocuments::selItemOpenReminders() {}

bool RemindersDocuments::askOpenFile(const QString&) {
  return false;
}

bool RemindersDocuments::openFile(const QString& path) {
  askOpenFile(path);
  return true;
}

} // namespace tockwise
