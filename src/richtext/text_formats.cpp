#include "richtext/text_formats.h"
