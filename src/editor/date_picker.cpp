#include "editor/date_picker.h"
