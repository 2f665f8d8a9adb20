#include "store/archive/keyed_value.h"
