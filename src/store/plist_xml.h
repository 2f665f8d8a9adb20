// Reading the XML form of property lists, which people and tools write.
#pragma once

#include "base/result.h"
#include "store/value.h"

namespace tockwise::plist {

/// Whether bytes look like the XML form rather than the binary one.
bool isXml(const QByteArray& bytes);
/// Damaged, with the line, when it is no sound property list. A dictionary with the single key
/// "CF$UID" is a Uid. Nesting is limited as in Reader. Entities of the document's own are refused.
Result<Value> readXml(const QByteArray& bytes);

} // namespace tockwise::plist
