#include "richtext/rich_runs.h"
