#include "store/archive/attributed_text.h"
