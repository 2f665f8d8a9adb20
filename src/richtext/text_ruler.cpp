#include "richtext/text_ruler.h"
