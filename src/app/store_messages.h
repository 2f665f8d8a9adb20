// What the user is told about the store.
#pragma once

#include "store/reminder_store.h"

namespace tockwise {

/// A sentence or two about a store that could not be read or held foreign elements; "" when all
/// was well.
QString damageText(const ReminderStore::LoadReport& report);
inline constexpr char16_t kDamageTitle[] = u"Your reminders could not be read";

QString writeFailureText(const Error& error);
inline constexpr char16_t kWriteFailureTitle[] = u"Your reminders could not be saved";

} // namespace tockwise
