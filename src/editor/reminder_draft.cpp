#include "editor/reminder_draft.h"
