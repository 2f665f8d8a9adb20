// The characters of an HTML file or clipboard.
#pragma once

#include <QByteArray>
#include <QString>

namespace tockwise {

/// By its byte order mark, its shape, what it says of itself, as UTF-8 where it is that, and else
/// as windows-1252.
QString decodedHTML(const QByteArray& bytes);

} // namespace tockwise
