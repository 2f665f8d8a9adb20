// Which links go from one program to another.
#pragma once

#include <QString>

namespace tockwise {

/// Whether link is an absolute address of a scheme that is safe to follow: http, https, mailto.
bool isSafeLink(const QString& link);

} // namespace tockwise
