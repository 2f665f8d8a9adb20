#include "richtext/qs_text_view.h"
