#include "store/archive/old_rich_text.h"
