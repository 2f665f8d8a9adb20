// Property-list values as keyed archives: what reminders documents are.
#pragma once

#include "base/result.h"
#include "store/value.h"

namespace tockwise {

/// The root of a keyed archive as a value: dictionaries, arrays, strings, numbers, booleans, dates
/// and data, mutable or not. Damaged when the archive is none, Unsupported kinds of objects
/// likewise, naming the class. A cycle is refused. Any one thread.
Result<Value> unarchiveValue(const QByteArray& archive);

/// value as a keyed archive. Equal scalars are written once. Any one thread.
QByteArray archiveValue(const Value& value);

} // namespace tockwise
