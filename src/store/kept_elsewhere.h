// Settings whose values stand somewhere else than in the file: the file only names their keys.
#pragma once

#include "store/plist_reader.h"

#include <set>

namespace tockwise {

/// The key of the root dictionary under which they are named, an array of strings.
extern const QString kKeptElsewhere;

/// What a file names. Any thread.
std::set<QString> keptElsewhere(const plist::Reader& reader);
/// As the file has them. Any thread.
Value keptElsewhereValue(const std::set<QString>& keys);

/// A store's file with the keys named in place of their values; bytes as they are when the file
/// has none of the values, or is no property list. Any thread.
QByteArray withoutValues(const QByteArray& bytes, const std::set<QString>& keys);

} // namespace tockwise
