#include "richtext/formatting_bar.h"
