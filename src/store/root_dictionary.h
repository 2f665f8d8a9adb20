// A property list of either form whose root is a dictionary, as the store's file is.
#pragma once

#include "base/result.h"
#include "store/plist_reader.h"

namespace tockwise::plist {

/// Damaged when bytes are no such property list. Any thread.
Result<Reader> openRootDictionary(QByteArray bytes);
/// NotFound when there is no such file, Storage when it cannot be read. Any thread.
Result<Reader> readRootDictionary(const QString& path);

} // namespace tockwise::plist
