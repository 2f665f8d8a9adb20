// What the user is told about the store.
#pragma once

#include "ports/prompter.h"
#include "store/reminder_store.h"

namespace tockwise {

/// A sentence or two about a store that could not be read or held foreign elements; "" when all
/// was well.
QString damageText(const StoreNotice& notice);
inline constexpr char16_t kDamageTitle[] = u"Your reminders could not be read";

/// Before the program ends with changes that could not be written; kQuitUnsaved ends it.
Question unsavedQuestion();
inline constexpr int kQuitUnsaved = 1;

QString writeFailureText(const Error& error);
inline constexpr char16_t kWriteFailureTitle[] = u"Your reminders could not be saved";

} // namespace tockwise
