#include "editor/task_window_controller.h"
