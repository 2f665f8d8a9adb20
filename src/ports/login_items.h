// What the desktop starts when the user logs in.
#pragma once

#include "base/result.h"

namespace tockwise {

/// Main thread.
class LoginItems {
 public:
  virtual ~LoginItems() = default;
  /// Whether this program is started at login.
  virtual bool isPresent() const = 0;
  /// Has this program started at login. Storage when the entry can't be written.
  virtual Result<void> add() = 0;
  /// Takes away every entry that starts this program, duplicates included, and no other. Storage
  /// when one can't be taken away.
  virtual Result<void> remove() = 0;
};

} // namespace tockwise
