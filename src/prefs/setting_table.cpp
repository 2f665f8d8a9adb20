#include "prefs/setting_table.h"

#include "store/settings.h"

#include <algorithm>

namespace tockwise {
namespace {

constexpr SettingRow kTable[] = {
    {u"email", SettingType::String},
    {u"sendEmail", SettingType::Boolean},
    {u"sms", SettingType::String},
    {u"phoneBox", SettingType::String},
    {u"sendSMS", SettingType::Boolean},
    {u"loginItem", SettingType::Boolean},
    {u"noReminder", SettingType::Boolean},
    {u"useADPrefsNoAuth", SettingType::Boolean},
    {u"useADPrefs", SettingType::Boolean},
    {u"emailAddressAD", SettingType::String},
    {u"smtpServerNameAD", SettingType::String},
    {u"serverPortAD", SettingType::OptionalInteger},
    {u"authenticationAD", SettingType::Integer},
    {u"usernameAD", SettingType::String},
    {u"passwordAD", SettingType::String},
    {u"useSSL", SettingType::Boolean},
    {u"useGlobalHotKeys", SettingType::Boolean},
    {u"defaultTask", SettingType::Integer},
    {u"defaultTaskPath", SettingType::String},
    {u"useDefaultTask", SettingType::Boolean},
    {u"useCountdown", SettingType::Boolean},
    {u"useAbsolute", SettingType::Boolean},
    {u"quickRemindMenuArray", SettingType::StringArray},
    {u"clockoption", SettingType::Integer},
    {u"importEventsFromCalendar", SettingType::Boolean},
    {u"datepicker", SettingType::Boolean},
    {u"showRuler", SettingType::Boolean},
    {u"sortType", SettingType::Integer},
    {u"showItemIndex", SettingType::Boolean},
    {u"showRichText", SettingType::Boolean},
    {u"truncateReminders", SettingType::Boolean},
    {u"iCalCalendars", SettingType::StringArray},
    {u"selectedSoundFilename", SettingType::String},
    {u"reminderSoundPopUpButtonSelectedIndex", SettingType::Integer},
    {u"pickSoundRandomly", SettingType::Boolean},
    {u"rateIndex", SettingType::Integer},
    {u"showUndoChangesAlert", SettingType::Boolean},
    {u"UseMailScript", SettingType::Boolean},
    {u"contentTypeIndex", SettingType::Integer},
};

Error wrongType(const QString& expected) {
  return Error{Error::Kind::Usage, QStringLiteral("the value is not %1").arg(expected)};
}

} // namespace

std::span<const SettingRow> settingTable() {
  return kTable;
}

const SettingRow* findSetting(QStringView key) {
  const auto* found =
      std::find_if(std::begin(kTable), std::end(kTable),
                   [&](const SettingRow& row) { return key == QStringView(row.key); });
  return found == std::end(kTable) ? nullptr : found;
}

Result<Value> parseSetting(SettingType type, const QStringList& words) {
  if (type == SettingType::StringArray)
    return Value(words);
  if (words.size() != 1)
    return Error{Error::Kind::Usage, QStringLiteral("this setting takes one value")};
  const QString& word = words.front();
  switch (type) {
  case SettingType::Boolean: {
    const auto is = [&](QStringView name) { return word.compare(name, Qt::CaseInsensitive) == 0; };
    if (is(u"YES") || is(u"true") || word == u"1")
      return Value(true);
    if (is(u"NO") || is(u"false") || word == u"0")
      return Value(false);
    return wrongType(QStringLiteral("YES or NO"));
  }
  case SettingType::OptionalInteger:
    if (word.isEmpty())
      return Value(word);
    [[fallthrough]];
  case SettingType::Integer: {
    bool numeric = false;
    const qint64 number = word.toLongLong(&numeric);
    if (!numeric)
      return wrongType(QStringLiteral("a whole number"));
    return Value(number);
  }
  case SettingType::String:
  case SettingType::StringArray:
    break;
  }
  return Value(word);
}

QString formatSetting(SettingType type, const Value& value) {
  if (value.isNull())
    return {};
  MemorySettings reader({{QString(), value}});
  switch (type) {
  case SettingType::Boolean:
    return reader.boolean({}) ? QStringLiteral("YES") : QStringLiteral("NO");
  case SettingType::Integer:
  case SettingType::OptionalInteger:
    // A port that was never saved is empty text, not 0.
    return value.get<QString>() ? *value.get<QString>() : QString::number(reader.integer({}));
  case SettingType::String:
    return reader.string({});
  case SettingType::StringArray:
    return reader.stringList({}).join(u'\n');
  }
  return {};
}

} // namespace tockwise
