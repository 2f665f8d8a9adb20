#include "editor/option_window_controller.h"
