// The display that windows are to be shown on.
#pragma once

#include <QtGlobal>

namespace tockwise {

/// Whether the session names one; it may still not work.
bool hasDisplay();

/// While it lives, a display that Qt cannot use ends the program with one line on stderr and status
/// 1; without it, with a core dump. To be around the application's construction only.
class DisplayFailure {
 public:
  DisplayFailure();
  ~DisplayFailure();
  DisplayFailure(const DisplayFailure&) = delete;
  DisplayFailure& operator=(const DisplayFailure&) = delete;
};

} // namespace tockwise
