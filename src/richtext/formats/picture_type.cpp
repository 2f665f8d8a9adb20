#include "richtext/formats/picture_type.h"

#include "richtext/picture_reading.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <iterator>

namespace tockwise {
namespace {

struct Known {
  const char* format; // as QImageReader names it
  const char16_t* mimeType;
  const char16_t* suffix;
  bool isPortable;
};

constexpr Known kKnown[] = {
    {"png", u"image/png", u"png", true},     {"jpeg", u"image/jpeg", u"jpg", true},
    {"jpg", u"image/jpeg", u"jpg", true},    {"gif", u"image/gif", u"gif", true},
    {"webp", u"image/webp", u"webp", false}, {"bmp", u"image/bmp", u"bmp", false},
    {"tiff", u"image/tiff", u"tiff", false}, {"tif", u"image/tiff", u"tiff", false},
    {"heic", u"image/heic", u"heic", false}, {"heif", u"image/heif", u"heif", false},
    {"avif", u"image/avif", u"avif", false}, {"ico", u"image/x-icon", u"ico", false},
    {"icns", u"image/icns", u"icns", false}, {"jp2", u"image/jp2", u"jp2", false},
};

} // namespace

std::optional<PictureType> pictureTypeOf(const QByteArray& bytes) {
  const QSize size = pictureSize(bytes);
  if (!size.isValid())
    return std::nullopt;
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  const QByteArray format = QImageReader::imageFormat(&buffer);
  const auto* known = std::find_if(std::begin(kKnown), std::end(kKnown),
                                   [&](const Known& each) { return format == each.format; });
  if (known == std::end(kKnown))
    return std::nullopt;
  return PictureType{QString::fromUtf16(known->mimeType), QString::fromUtf16(known->suffix), size,
                     known->isPortable};
}

std::optional<Picture> portablePicture(const QByteArray& bytes, Gif gif) {
  auto type = pictureTypeOf(bytes);
  if (!type)
    return std::nullopt;
  if (type->isPortable && (gif == Gif::Keep || type->suffix != u"gif"))
    return Picture{bytes, *type};
  const QImage image = readPicture(bytes);
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  if (image.isNull() || !image.save(&buffer, "PNG"))
    return std::nullopt;
  *type = {QStringLiteral("image/png"), QStringLiteral("png"), image.size(), true};
  return Picture{png, *type};
}

} // namespace tockwise
