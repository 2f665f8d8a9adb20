// The table of settings: every key that a user may get or set, with its type. Any thread.
#pragma once

#include "base/result.h"
#include "store/value.h"

#include <QStringView>

#include <span>

namespace tockwise {

/// OptionalInteger: an integer, or empty text while none was chosen.
enum class SettingType { Boolean, Integer, OptionalInteger, String, StringArray };

struct SettingRow {
  const char16_t* key;
  SettingType type;
};

/// Every setting, in the table's order.
std::span<const SettingRow> settingTable();
/// The row of key, or null.
const SettingRow* findSetting(QStringView key);

/// text as a value of the type: YES/NO, true/false, 1/0; a decimal integer, or "" where it may
/// be empty; a string as it is; an array from its entries. Usage error when it is none.
Result<Value> parseSetting(SettingType type, const QStringList& words);
/// The value as the command line prints it: YES or NO, arrays one entry a line. "" for null.
QString formatSetting(SettingType type, const Value& value);

} // namespace tockwise
