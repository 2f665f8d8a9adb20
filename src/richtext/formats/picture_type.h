// What kind of picture some bytes are, told by the bytes themselves.
#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <optional>

namespace tockwise {

struct PictureType {
  QString mimeType;        // "image/png"
  QString suffix;          // "png"
  QSize size;              // pixels
  bool isPortable = false; // PNG, JPEG or GIF, which every program shows
};

/// Nothing for bytes that are no picture that can be read here, that are too many, or that claim
/// too many pixels. Nothing is decoded but the header. Any one thread.
std::optional<PictureType> pictureTypeOf(const QByteArray& bytes);

struct Picture {
  QByteArray bytes;
  PictureType type;
};

enum class Gif { Keep, Convert };
/// The picture as it is when it is PNG, JPEG or a GIF that may be kept, else as PNG; nothing when
/// it cannot be read.
std::optional<Picture> portablePicture(const QByteArray& bytes, Gif gif);

} // namespace tockwise
