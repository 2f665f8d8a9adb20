// Pictures of unknown origin, read with limits: told by their contents, upright, and never larger
// in memory than is asked for.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace tockwise {

/// The size in pixels of a picture as it is shown (turned upright), from its header alone. Invalid
/// when contents are no picture of a known kind, or more bytes or pixels than are read. Any one
/// thread.
QSize pictureSize(const QByteArray& contents);

/// The picture, upright and in sRGB; null when pictureSize() would be invalid, or it is damaged. A
/// picture wider than width is made smaller while it is decoded, to no less than width; 0 for its
/// own size. Any one thread.
QImage readPicture(const QByteArray& contents, int width = 0);

} // namespace tockwise
