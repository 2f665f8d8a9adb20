#include "richtext/text_fonts.h"
