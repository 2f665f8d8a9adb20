#include "alerts/kept_alerts_file.h"

#include "store/plist_reader.h"
#include "store/plist_writer.h"

#include <cmath>
#include <optional>

namespace tockwise {
namespace {

constexpr qint64 kVersion = 1;

const QString kVersionKey = QStringLiteral("version");
const QString kAlerts = QStringLiteral("alerts");
const QString kReminder = QStringLiteral("reminder");
const QString kRTFData = QStringLiteral("RTFData"); // absent: plain text
const QString kDate = QStringLiteral("date");
const QString kSentEmail = QStringLiteral("sentEmail");
const QString kSentSMS = QStringLiteral("sentSMS");
const QString kRescheduled = QStringLiteral("rescheduled");
const QString kType = QStringLiteral("reminderType");
const QString kUUID = QStringLiteral("reminderUUID");
const QString kLevel = QStringLiteral("level");
const QString kHidden = QStringLiteral("hidden");

Value storedForm(const AlertState& state, bool withRichText) {
  const AlertRequest& request = state.request;
  Value::Dictionary stored{{kReminder, request.reminder},
                           {kDate, request.date},
                           {kSentEmail, request.sentEmail},
                           {kSentSMS, request.sentSMS},
                           {kRescheduled, request.rescheduled},
                           {kType, request.reminderType},
                           {kUUID, request.reminderUUID},
                           {kLevel, qint64(state.level)},
                           {kHidden, state.hidden}};
  if (withRichText)
    stored.emplace_back(kRTFData, request.RTFData);
  return stored;
}

std::optional<AlertLevel> levelOf(qint64 number) {
  for (const AlertLevel level : {AlertLevel::ModalPanel, AlertLevel::MainMenu}) {
    if (number == qint64(level))
      return level;
  }
  return std::nullopt;
}

std::optional<AlertState> readState(const Value& stored) {
  AlertState state;
  AlertRequest& request = state.request;
  qint64 number = 0;
  const bool isWhole =
      readEntry(stored, kReminder, request.reminder) && readEntry(stored, kDate, request.date) &&
      std::isfinite(request.date.seconds) && readEntry(stored, kSentEmail, request.sentEmail) &&
      readEntry(stored, kSentSMS, request.sentSMS) &&
      readEntry(stored, kRescheduled, request.rescheduled) &&
      readEntry(stored, kType, request.reminderType) &&
      readEntry(stored, kUUID, request.reminderUUID) && readEntry(stored, kLevel, number) &&
      readEntry(stored, kHidden, state.hidden) &&
      (!stored.find(kRTFData) || readEntry(stored, kRTFData, request.RTFData));
  const auto level = levelOf(number);
  if (!isWhole || !level)
    return std::nullopt;
  state.level = *level;
  return state;
}

} // namespace

QByteArray writeKeptAlerts(const std::vector<AlertState>& states) {
  Value::Array alerts;
  qsizetype richText = 0;
  for (const AlertState& state : states) {
    const qsizetype size = state.request.RTFData.size();
    const bool withRichText = size > 0 && size <= kMostKeptRichText - richText;
    richText += withRichText ? size : 0;
    alerts.push_back(storedForm(state, withRichText));
  }
  plist::Writer writer;
  const auto root =
      writer.value(Value::Dictionary{{kVersionKey, kVersion}, {kAlerts, std::move(alerts)}});
  return writer.finish(root);
}

Result<KeptAlertsFile> readKeptAlerts(QByteArray bytes) {
  const auto reader = plist::Reader::open(std::move(bytes));
  if (!reader)
    return reader.error();
  const Value stored = reader->value(reader->root());
  qint64 version = 0;
  if (readEntry(stored, kVersionKey, version) && version > kVersion)
    return Error{Error::Kind::Refused, QStringLiteral("it was written by a newer version")};
  const Value* alerts = stored.find(kAlerts);
  const auto* array = alerts ? alerts->get<Value::Array>() : nullptr;
  if (version != kVersion || !array)
    return Error{Error::Kind::Damaged, QStringLiteral("it is no list of alerts")};
  KeptAlertsFile file;
  for (const Value& entry : *array) {
    if (auto state = readState(entry))
      file.states.push_back(std::move(*state));
    else
      ++file.damaged;
  }
  return file;
}

} // namespace tockwise
