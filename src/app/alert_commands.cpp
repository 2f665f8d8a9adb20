#include "app/alert_commands.h"

#include "dates/date_text.h"

#include <QJsonObject>

namespace tockwise {

QJsonArray alertsToJson(const AlertWindows& alerts, const ReminderQueue& queue) {
  QJsonArray array;
  for (const AlertEntry& entry : alerts.entries()) {
    const bool gone = !queue.indexOf(entry.reminderUUID);
    array.append(QJsonObject{
        {QStringLiteral("position"), entry.position + 1},
        {QStringLiteral("uuid"), gone ? QJsonValue::Null : QJsonValue(entry.reminderUUID)},
        {QStringLiteral("text"), entry.text},
        {QStringLiteral("date"), iso8601UTC(entry.date)},
        {QStringLiteral("shown"), entry.shown},
        {QStringLiteral("rescheduled"), entry.rescheduled}});
  }
  return array;
}

Result<void> alertCommand(AlertWindows& alerts, const QString& action, int position) {
  const qsizetype index = position > 0 ? position - 1 : 0;
  if (action == u"ok-all") {
    alerts.okAll();
    return {};
  }
  if (action == u"hide" && position == 0) {
    alerts.hideAllCurrentAlerts();
    return {};
  }
  if (action == u"show" && position == 0) {
    alerts.showAllCurrentAlerts();
    return {};
  }
  if (index >= alerts.count()) {
    return Error{Error::Kind::NotFound, alerts.count() == 0
                                            ? QStringLiteral("There Are No Current Alerts")
                                            : QStringLiteral("there is no alert %1; %2 are open")
                                                  .arg(position)
                                                  .arg(alerts.count())};
  }
  // The buttons that an alert does not show are not to be pressed from outside either.
  const bool rescheduled = alerts.entries()[size_t(index)].rescheduled;
  if ((action == u"again" && rescheduled) || (action == u"delete" && !rescheduled)) {
    return Error{Error::Kind::Refused,
                 rescheduled ? QStringLiteral("this alert's reminder repeats by itself")
                             : QStringLiteral("only the alert of a repeating reminder deletes it")};
  }
  if (action == u"ok")
    return alerts.OK(index);
  if (action == u"again")
    return alerts.remindAgain(index);
  if (action == u"delete")
    return alerts.deleteReminder(index);
  if (action == u"show")
    return alerts.exposeCurrentAlert(index);
  if (action == u"hide")
    return alerts.hide(index);
  return Error{Error::Kind::Usage, QStringLiteral("there is no alert action \"%1\"").arg(action)};
}

} // namespace tockwise
