#include "app/command_service.h"

#include "app/json.h"
#include "app/reminder_options.h"
#include "menu/menu_item.h"
#include "prefs/setting_table.h"
#include "richtext/rich_runs.h"

namespace tockwise {
namespace {

const QString kAt = QStringLiteral("at");
const QString kIn = QStringLiteral("in");
const QString kText = QStringLiteral("text");
const QString kRich = QStringLiteral("rich");

// What a new reminder starts from, as a new editor does.
Reminder reminderFromDefaults(const Settings& settings) {
  Reminder reminder;
  reminder.reminderSendEmail = settings.boolean(QStringLiteral("sendEmail"));
  reminder.reminderSendSMS = settings.boolean(QStringLiteral("sendSMS"));
  if (settings.boolean(QStringLiteral("useDefaultTask"))) {
    reminder.reminderTasks = {false, settings.integer(QStringLiteral("defaultTask")),
                              settings.string(QStringLiteral("defaultTaskPath"))};
  }
  return reminder;
}

} // namespace

CommandService::CommandService(ReminderStore& store, std::function<void()> onChanged,
                               std::function<void()> onDataModified)
    : m_store(store),
      m_onChanged(std::move(onChanged)),
      m_onDataModified(std::move(onDataModified)),
      m_documents(store, [this] { return finishData(); }) {}

Result<void> CommandService::finishData() {
  m_onDataModified();
  return finish();
}

Result<void> CommandService::finish() {
  m_onChanged();
  return saved();
}

Result<void> CommandService::saved() const {
  if (const auto& failure = m_store.preferences().writeFailure()) {
    return Error{Error::Kind::Storage,
                 QStringLiteral("the change could not be saved: %1").arg(failure->message)};
  }
  return {};
}

Result<QString> CommandService::add(const QString& text, const QVariantMap& options) {
  if (options.contains(kAt) == options.contains(kIn))
    return Error{Error::Kind::Usage, QStringLiteral("say when: either --at or --in")};
  QVariantMap all = options;
  if (!options.contains(kRich)) // which has a text of its own
    all.insert(kText, text);
  Reminder reminder = reminderFromDefaults(m_store.preferences());
  const auto applied =
      applyReminderOptions(all, reminder, m_store.clock().now(), Calendar::current());
  if (!applied)
    return applied.error();
  const QString uuid = m_store.appendReminder(std::move(reminder), ReminderStore::RecentEntry::Add);
  if (const auto finished = finishData(); !finished)
    return finished.error();
  return uuid;
}

QJsonArray CommandService::list() const {
  QJsonArray array;
  for (qsizetype i = 0; i < m_store.queue().count(); ++i) {
    if (const auto reminder = m_store.queue().reminder(i))
      array.append(reminderToJson(*reminder));
  }
  return array;
}

Result<qsizetype> CommandService::find(const QString& which) const {
  bool isPosition = false;
  const qlonglong position = which.toLongLong(&isPosition);
  if (isPosition) {
    if (position >= 1 && position <= m_store.queue().count())
      return qsizetype(position - 1);
    return Error{Error::Kind::NotFound, QStringLiteral("there is no reminder %1; the queue has %2")
                                            .arg(which)
                                            .arg(m_store.queue().count())};
  }
  if (const auto index = m_store.queue().indexOf(which.toUpper()))
    return *index;
  if (const auto index = m_store.queue().indexOf(which))
    return *index;
  return Error{Error::Kind::NotFound, QStringLiteral("there is no reminder \"%1\"").arg(which)};
}

Result<QJsonObject> CommandService::show(const QString& which) const {
  const auto index = find(which);
  if (!index)
    return index.error();
  const auto reminder = m_store.queue().reminder(*index);
  if (!reminder)
    return reminder.error();
  QJsonObject object = reminderToJson(*reminder);
  const std::optional<RichText> runs = unarchiveRuns(reminder->reminderRTFs);
  object.insert(QStringLiteral("richText"), runs ? richTextToJson(*runs) : QJsonValue());
  return object;
}

Result<QString> CommandService::edit(const QString& which, const QVariantMap& options) {
  const auto index = find(which);
  if (!index)
    return index.error();
  auto reminder = m_store.queue().reminder(*index);
  if (!reminder)
    return reminder.error();
  const auto applied =
      applyReminderOptions(options, *reminder, m_store.clock().now(), Calendar::current());
  if (!applied)
    return applied.error();
  const QString uuid = reminder->reminderUUID;
  if (const auto edited = m_store.editReminder(uuid, std::move(*reminder)); !edited)
    return edited.error();
  if (const auto finished = finishData(); !finished)
    return finished.error();
  return uuid;
}

Result<QString> CommandService::remove(const QString& which) {
  const auto index = find(which);
  if (!index)
    return index.error();
  const auto uuid = m_store.queue()->reminderUUID.at(*index);
  if (!uuid)
    return uuid.error();
  if (const auto removed = m_store.removeReminder(*uuid); !removed)
    return removed.error();
  if (const auto finished = finishData(); !finished)
    return finished.error();
  return *uuid;
}

Result<void> CommandService::clear() {
  m_store.clearQueue();
  return finishData();
}

Result<QString> CommandService::getPreference(const QString& key) const {
  const SettingRow* row = findSetting(key);
  if (!row)
    return Error{Error::Kind::Usage, QStringLiteral("there is no setting \"%1\"").arg(key)};
  if (m_store.preferences().isUnread(key)) {
    return Error{Error::Kind::Unavailable,
                 QStringLiteral("%1 is kept in the desktop's password store, which is locked or "
                                "does not answer")
                     .arg(key)};
  }
  return formatSetting(row->type, m_store.preferences().value(key));
}

Result<void> CommandService::setPreference(const QString& key, const QStringList& words) {
  const SettingRow* row = findSetting(key);
  if (!row)
    return Error{Error::Kind::Usage, QStringLiteral("there is no setting \"%1\"").arg(key)};
  auto value = parseSetting(row->type, words);
  if (!value) {
    return Error{value.error().kind, QStringLiteral("%1: %2").arg(key, value.error().message)};
  }
  m_store.preferences().setValue(key, std::move(*value));
  m_store.preferences().synchronize();
  return finish();
}

QList<std::pair<QString, QString>> CommandService::preferences() const {
  QList<std::pair<QString, QString>> list;
  for (const SettingRow& row : settingTable()) {
    const QString key = QString::fromUtf16(row.key);
    QString text = formatSetting(row.type, m_store.preferences().value(key));
    if (key == u"passwordAD" && (!text.isEmpty() || m_store.preferences().isUnread(key)))
      text = QStringLiteral("(set)");
    list.append({key, text});
  }
  return list;
}

} // namespace tockwise
