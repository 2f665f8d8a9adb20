#include "editor/reminder_editing.h"
