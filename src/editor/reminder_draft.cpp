#include "editor/reminder_draft.h"

#include "base/log.h"
#include "store/plist_reader.h"
#include "store/plist_writer.h"
#include "store/preferences_store.h"
#include "store/store_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cmath>

namespace tockwise {
namespace {

constexpr qint64 kVersion = 1;
const QString kSuffix = QStringLiteral(".plist");

const QString kVersionKey = QStringLiteral("version");
const QString kPurpose = QStringLiteral("purpose");
const QString kUUID = QStringLiteral("reminderUUID");
const QString kDate = QStringLiteral("reminderDate");
const QString kText = QStringLiteral("reminderText");
const QString kRTFData = QStringLiteral("RTFData");
const QString kInterval = QStringLiteral("reminderInterval");
const QString kDays = QStringLiteral("days");
const QString kTimes = QStringLiteral("times");
const QString kOffset = QStringLiteral("reminderOffset");
const QString kTaskType = QStringLiteral("taskType"); // absent: no task
const QString kTaskPath = QStringLiteral("taskPath");
const QString kSMS = QStringLiteral("smsState");
const QString kEmail = QStringLiteral("emailState");

constexpr std::pair<EditorPurpose, const char16_t*> kPurposes[] = {
    {EditorPurpose::NewReminder, u"new"},
    {EditorPurpose::RecentReminder, u"recent"},
    {EditorPurpose::RemindAgain, u"again"},
    {EditorPurpose::EditReminder, u"edit"}};

template <typename T, size_t Count> Value arrayOf(const std::array<T, Count>& elements) {
  Value::Array array;
  for (const T element : elements)
    array.emplace_back(element);
  return array;
}

template <typename T, size_t Count>
bool readArray(const Value* stored, std::array<T, Count>& elements) {
  const auto* array = stored ? stored->get<Value::Array>() : nullptr;
  if (!array || array->size() != Count)
    return false;
  for (size_t i = 0; i < Count; ++i) {
    const T* element = (*array)[i].get<T>();
    if (!element)
      return false;
    elements[i] = *element;
  }
  return true;
}

Value storedForm(const ReminderDraft& draft) {
  Value::Dictionary stored{{kVersionKey, kVersion},
                           {kUUID, draft.reminderUUID},
                           {kDate, draft.reminderDate},
                           {kText, draft.reminderText},
                           {kRTFData, draft.RTFData},
                           {kInterval, arrayOf(draft.reminderInterval)},
                           {kDays, arrayOf(draft.reminderExtra.days)},
                           {kTimes, arrayOf(draft.reminderExtra.times)},
                           {kOffset, arrayOf(draft.reminderOffset)},
                           {kSMS, draft.smsState},
                           {kEmail, draft.emailState}};
  for (const auto& [purpose, name] : kPurposes) {
    if (purpose == draft.purpose)
      stored.emplace_back(kPurpose, QString::fromUtf16(name));
  }
  if (!draft.reminderTask.blank) {
    stored.emplace_back(kTaskType, draft.reminderTask.type);
    stored.emplace_back(kTaskPath, draft.reminderTask.path);
  }
  return stored;
}

bool readPurpose(const Value& stored, EditorPurpose& target) {
  QString found;
  if (!readEntry(stored, kPurpose, found))
    return false;
  for (const auto& [purpose, name] : kPurposes) {
    if (found == QStringView(name)) {
      target = purpose;
      return true;
    }
  }
  return false;
}

bool readTask(const Value& stored, Task& task) {
  if (!stored.find(kTaskType) && !stored.find(kTaskPath))
    return true;
  task.blank = false;
  return readEntry(stored, kTaskType, task.type) && readEntry(stored, kTaskPath, task.path);
}

Result<ReminderDraft> readDraft(QByteArray bytes) {
  const auto reader = plist::Reader::open(std::move(bytes));
  if (!reader)
    return reader.error();
  const Value stored = reader->value(reader->root());
  qint64 version = 0;
  if (readEntry(stored, kVersionKey, version) && version > kVersion)
    return Error{Error::Kind::Refused, QStringLiteral("it was kept by a newer version")};
  ReminderDraft draft;
  const bool isWhole =
      version == kVersion && readPurpose(stored, draft.purpose) &&
      readEntry(stored, kUUID, draft.reminderUUID) &&
      readEntry(stored, kDate, draft.reminderDate) && std::isfinite(draft.reminderDate.seconds) &&
      readEntry(stored, kText, draft.reminderText) && readEntry(stored, kRTFData, draft.RTFData) &&
      readArray(stored.find(kInterval), draft.reminderInterval) &&
      readArray(stored.find(kDays), draft.reminderExtra.days) &&
      readArray(stored.find(kTimes), draft.reminderExtra.times) &&
      readArray(stored.find(kOffset), draft.reminderOffset) &&
      readTask(stored, draft.reminderTask) && readEntry(stored, kSMS, draft.smsState) &&
      readEntry(stored, kEmail, draft.emailState);
  if (!isWhole)
    return Error{Error::Kind::Damaged, QStringLiteral("a value is missing or of a wrong kind")};
  return draft;
}

/// A file name and nothing else.
bool isIdentifier(const QString& identifier) {
  static const QRegularExpression form(QStringLiteral("\\A[0-9A-Za-z][0-9A-Za-z-]{0,99}\\z"));
  return form.match(identifier).hasMatch();
}

} // namespace

DraftStore::DraftStore(QString folder) : m_folder(std::move(folder)) {}

QString DraftStore::folderOfUser() {
  return QFileInfo(PreferencesStore::Paths::ofUser().backups).path() + QStringLiteral("/drafts");
}

QString DraftStore::path(const QString& identifier) const {
  return QDir(m_folder).filePath(identifier + kSuffix);
}

Result<void> DraftStore::keep(const ReminderDraft& draft) {
  if (!isIdentifier(draft.identifier))
    return Error{Error::Kind::Refused,
                 QStringLiteral("\"%1\" names no draft").arg(draft.identifier)};
  if (auto made = makePrivateFolder(m_folder); !made)
    return made;
  plist::Writer writer;
  const auto root = writer.value(storedForm(draft));
  return writeAtomically(path(draft.identifier), writer.finish(root));
}

void DraftStore::remove(const QString& identifier) {
  if (!isIdentifier(identifier))
    return;
  if (!QFile::remove(path(identifier)) && QFileInfo::exists(path(identifier)))
    logLine(QStringLiteral("Could not remove the draft %1").arg(path(identifier)));
}

std::vector<ReminderDraft> DraftStore::kept() const {
  std::vector<ReminderDraft> drafts;
  const QFileInfoList files = QDir(m_folder).entryInfoList(
      {QLatin1Char('*') + kSuffix}, QDir::Files, QDir::Time | QDir::Reversed);
  for (const QFileInfo& file : files) {
    const QString identifier = file.completeBaseName();
    auto bytes = isIdentifier(identifier) ? readWholeFile(file.filePath())
                                          : Error{Error::Kind::Refused, QStringLiteral("its name")};
    auto draft = bytes ? readDraft(std::move(bytes).value()) : bytes.error();
    if (draft) {
      draft->identifier = identifier;
      drafts.push_back(std::move(draft).value());
      continue;
    }
    QString line =
        QStringLiteral("Cannot read the draft %1: %2").arg(file.filePath(), draft.error().message);
    if (draft.error().kind == Error::Kind::Damaged) {
      if (const auto name = putAside(file.filePath(), QStringLiteral(".damaged")))
        line += QStringLiteral("; it is kept as %1").arg(*name);
    }
    logLine(line);
  }
  return drafts;
}

} // namespace tockwise
