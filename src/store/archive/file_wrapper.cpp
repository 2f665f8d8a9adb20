#include "store/archive/file_wrapper.h"
