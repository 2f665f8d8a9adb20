// Pictures of unknown origin, read with limits: told by their contents, upright, and never larger
// in memory than is asked for.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace tockwise {

struct PictureHeader {
  QSize size; // in pixels, as it is shown (turned upright); invalid: no picture of a known kind
  bool isTooLarge = false; // more bytes or pixels than are read
};

/// What the header alone says. Any one thread.
PictureHeader readPictureHeader(const QByteArray& contents);

/// The size in its header; invalid when it is no picture or too large. Any one thread.
QSize pictureSize(const QByteArray& contents);

/// The picture, upright and in sRGB; null when pictureSize() would be invalid, or it is damaged. A
/// picture wider than width is made smaller while it is decoded, to no less than width; 0 for its
/// own size. Any one thread.
QImage readPicture(const QByteArray& contents, int width = 0);

} // namespace tockwise
