// The meta objects of the ports.
#include "ports/power_events.h"
#include "ports/prompter.h"
#include "ports/script_host.h"
#include "ports/sound_player.h"
#include "ports/wake_timer.h"
#include "ports/workspace.h"
