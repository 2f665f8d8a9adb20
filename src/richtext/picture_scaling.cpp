#include "richtext/picture_scaling.h"
