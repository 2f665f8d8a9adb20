#include "engine/firing.h"

#include "base/log.h"
#include "dates/calendar.h"
#include "engine/repeat_rules.h"
#include "store/text_cut.h"

#include <limits>
#include <optional>

namespace tockwise {
namespace {

constexpr qsizetype kSubjectLength = 30;
constexpr qsizetype kSMSLength = 140;

/// What firing reads of the record, as it was before.
struct FiredRecord {
  QString description;
  QByteArray RTFs;
  Date fireDate;
  Task task;
  bool sendEmail = false;
  bool sendSMS = false;
  Interval interval = kBlankInterval;
  Extra extra = kBlankExtra;
  qint64 recent = 0;
  Date fired;
  QString type;
  QString uuid;
};

template <typename Target, typename T>
void take(Target& target, const Column<T>& column, qsizetype index, std::optional<Error>& failure) {
  if (const T* element = column.find(index))
    target = *element;
  else if (!failure)
    failure = column.at(index).error();
}

Result<FiredRecord> recordAt(const Columns& columns, qsizetype index) {
  FiredRecord record;
  std::optional<Error> failure;
  take(record.description, columns.reminderDescriptions, index, failure);
  take(record.RTFs, columns.reminderRTFs, index, failure);
  take(record.fireDate, columns.reminderQueue, index, failure);
  take(record.task, columns.reminderTasks, index, failure);
  take(record.sendEmail, columns.reminderSendEmail, index, failure);
  take(record.sendSMS, columns.reminderSendSMS, index, failure);
  take(record.interval, columns.reminderIntervals, index, failure);
  take(record.extra, columns.reminderExtras, index, failure);
  take(record.recent, columns.reminderRecent, index, failure);
  take(record.fired, columns.reminderDateTimeFired, index, failure);
  take(record.type, columns.reminderTypes, index, failure);
  take(record.uuid, columns.reminderUUID, index, failure);
  if (failure)
    return *failure;
  return record;
}

void sendEmail(const FiredRecord& record, const Settings& settings, FiringActions& actions) {
  const QString subject =
      QStringLiteral("Reminder! ") + cutText(record.description, kSubjectLength);
  const auto sendPlain = [&] {
    actions.sendEmailWithSubject(
        subject, Calendar::current().dateStringWithFormat(record.fireDate, kDisplayPattern) +
                     QStringLiteral("\n \n") + record.description);
  };
  if (settings.integer(QStringLiteral("contentTypeIndex")) == 0 ||
      !actions.sendEmailWithSubjectAndHTMLMessage(subject, record.RTFs))
    sendPlain();
}

void sendSMS(const FiredRecord& record, FiringActions& actions) {
  actions.sendSMSWithSubject(
      QStringLiteral("Reminder!"),
      Calendar::current().dateStringWithFormat(record.fireDate, kDisplayPattern) + u'\n' +
          cutText(record.description, kSMSLength, QString()));
}

} // namespace

Firing::Firing(ReminderQueue& queue, const Settings& settings, const Clock& clock,
               FiringActions& actions)
    : m_queue(queue), m_settings(settings), m_clock(clock), m_actions(actions) {}

bool Firing::doReminder(qsizetype index) {
  const bool mayEmail = m_settings.boolean(QStringLiteral("sendEmail"));
  const bool maySMS = m_settings.boolean(QStringLiteral("sendSMS"));
  const auto taken = recordAt(m_queue.columns(), index);
  if (!taken) {
    logLine(taken.error().message);
    return false;
  }
  const FiredRecord& record = *taken;
  const Date now = m_clock.now();
  const bool rescheduled = isRepeatingReminder(record.interval);
  // The record holds every index that is set here: none of these can fail.
  if (rescheduled) {
    (void)m_queue.set<&Columns::reminderQueue>(
        index, nextFireDate(record.fireDate, record.interval, now, Calendar::current()));
  }
  if (record.extra != kBlankExtra && !checkExtra(record.extra, now, Calendar::current()))
    return rescheduled;
  if (record.recent != 0 && !rescheduled)
    return false;
  if (record.recent < std::numeric_limits<qint64>::max())
    (void)m_queue.set<&Columns::reminderRecent>(index, record.recent + 1);
  (void)m_queue.set<&Columns::reminderDateTimeFired>(index, now);

  // From here on event loops may run, and index may be another reminder's.
  m_actions.fired(record.uuid);
  m_actions.doTask(record.task);
  if (mayEmail && record.sendEmail)
    sendEmail(record, m_settings, m_actions);
  if (maySMS && record.sendSMS)
    sendSMS(record, m_actions);
  if (!m_settings.boolean(QStringLiteral("noReminder"))) {
    m_actions.openAlert({record.description, record.RTFs, record.fireDate, record.sendEmail,
                         record.sendSMS, rescheduled, record.type, record.uuid});
  }
  return true;
}

} // namespace tockwise
