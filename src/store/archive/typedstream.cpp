#include "store/archive/typedstream.h"
