#include "richtext/picture_reading.h"

#include "richtext/picture_scaling.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

/// Kinds that hold nothing but pixels: no scripts, no references to files.
bool isKnownKind(const QByteArray& format) {
  static constexpr const char* kKinds[] = {"png",  "jpeg", "jpg",  "gif", "bmp",  "tiff", "tif",
                                           "webp", "ico",  "icns", "jp2", "heic", "heif", "avif"};
  return std::any_of(std::begin(kKinds), std::end(kKinds),
                     [&](const char* kind) { return format == kind; });
}

bool isWithinLimit(QSize size) {
  return qint64(size.width()) * size.height() <= kMostPicturePixels;
}

/// Lets Qt decode whatever is within our own limit; its default ends at a quarter of that.
void allowWholePictures() {
  constexpr qint64 kBytesPerPixel = 4;
  constexpr qint64 kMegabyte = 1 << 20;
  static const bool isDone = [] {
    QImageReader::setAllocationLimit(int(kMostPicturePixels * kBytesPerPixel / kMegabyte));
    return true;
  }();
  Q_UNUSED(isDone)
}

/// A reader of contents that has looked at the header.
class PictureReader {
 public:
  explicit PictureReader(const QByteArray& contents)
      : m_hasTooManyBytes(contents.size() > kMostPictureBytes) {
    allowWholePictures();
    m_buffer.setData(contents);
    m_buffer.open(QIODevice::ReadOnly);
    m_reader.setDevice(&m_buffer);
    m_reader.setDecideFormatFromContent(true);
    m_reader.setAutoTransform(true);
    if (!m_reader.canRead() || !isKnownKind(m_reader.format()))
      return;
    m_isTurned = m_reader.transformation() & QImageIOHandler::TransformationRotate90;
    m_stored = m_reader.size();
  }

  bool isPicture() const { return !m_stored.isEmpty(); }
  bool isTooLarge() const { return isPicture() && (m_hasTooManyBytes || !isWithinLimit(m_stored)); }
  bool isReadable() const { return isPicture() && !isTooLarge(); }
  QSize uprightSize() const { return m_isTurned ? m_stored.transposed() : m_stored; }

  QImage read(int width) {
    const QSize upright = uprightSize();
    if (width > 0 && upright.width() > width) {
      const double ratio = double(width) / upright.width();
      const QSize scaled(width, std::max(1, int(std::lround(upright.height() * ratio))));
      m_reader.setScaledSize(m_isTurned ? scaled.transposed() : scaled);
    }
    return m_reader.read();
  }

 private:
  QBuffer m_buffer;
  QImageReader m_reader;
  QSize m_stored;
  bool m_hasTooManyBytes;
  bool m_isTurned = false;
};

QImage inStandardColors(QImage image) {
  const QColorSpace standard(QColorSpace::SRgb);
  if (image.colorSpace().isValid() && image.colorSpace() != standard)
    image.convertToColorSpace(standard);
  return image;
}

} // namespace

PictureHeader readPictureHeader(const QByteArray& contents) {
  const PictureReader reader(contents);
  return {reader.isPicture() ? reader.uprightSize() : QSize(), reader.isTooLarge()};
}

QSize pictureSize(const QByteArray& contents) {
  const PictureReader reader(contents);
  return reader.isReadable() ? reader.uprightSize() : QSize();
}

QImage readPicture(const QByteArray& contents, int width) {
  PictureReader reader(contents);
  return reader.isReadable() ? inStandardColors(reader.read(width)) : QImage();
}

} // namespace tockwise
