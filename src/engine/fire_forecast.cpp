#include "engine/fire_forecast.h"
