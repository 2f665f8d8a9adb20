#include "store/archive/text_archive.h"
