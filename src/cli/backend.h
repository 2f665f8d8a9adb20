// Where a command is carried out: in the running application, or on the store itself.
#pragma once

#include "base/result.h"

#include <QVariant>

namespace tockwise {

/// Main thread.
class Backend {
 public:
  virtual ~Backend() = default;
  /// Calls a method of the D-Bus interface by its name, with its arguments; returns what it
  /// returns (nothing: an invalid variant). Usage when the words are wrong; any other kind when
  /// the request could not be done.
  virtual Result<QVariant> call(const QString& method, const QVariantList& arguments) = 0;
};

} // namespace tockwise
