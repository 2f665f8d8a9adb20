// What the reminder window asks and says.
#pragma once

#include "ports/prompter.h"

namespace tockwise {

/// Answers by position; a question's last button is also what Escape presses.
enum class Answer { Yes = 0, No = 1 };

Question blankReminderMessage();
Question pastDateQuestion();
Question undoChangesQuestion();
Question deleteReminderQuestion();

} // namespace tockwise
