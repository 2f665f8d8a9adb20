#include "editor/reminder_window_controller.h"
