// The about box.
#pragma once

#include "ports/prompter.h"

namespace tockwise {

/// Shows name, version and licence, without waiting for it to be closed. Main thread.
void about(Prompter& prompter);

} // namespace tockwise
