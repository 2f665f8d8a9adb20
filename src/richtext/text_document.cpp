#include "richtext/text_document.h"
