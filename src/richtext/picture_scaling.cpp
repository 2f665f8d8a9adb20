#include "richtext/picture_scaling.h"

#include "base/log.h"
#include "richtext/picture_reading.h"

#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

constexpr QSizeF kFrameOfTexts(300.0, 300.0);
constexpr double kPartOfFrame = 0.95;
constexpr int kFullQuality = 100;
/// A picture is decoded so many times wider than it will be, and averaged down from there.
constexpr int kSpareWidth = 2;

/// The application's picture, where an attachment has none of its own.
QByteArray placeholderContents() {
  QFile file(QStringLiteral(":/tockwise/pictures/Icon@2x.png"));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

float widestFor(QSizeF frame) {
  return std::min(float(frame.width() * kPartOfFrame), float(kWidestPicture));
}

/// scaled on white, since the format has no transparency.
QByteArray jpegOf(const QImage& scaled) {
  QImage flat(scaled.size(), QImage::Format_RGB32);
  flat.fill(Qt::white);
  QPainter(&flat).drawImage(0, 0, scaled);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, "jpg");
  writer.setQuality(kFullQuality);
  if (writer.write(flat))
    return buffer.data();
  logLine(writer.errorString());
  return {};
}

/// The picture in contents no wider than widest; empty when it is narrow enough or has no size.
std::optional<QImage> narrowed(const QByteArray& contents, float widest) {
  const QSize size = pictureSize(contents);
  if (!(float(size.width()) > widest) || widest < 1)
    return QImage();
  const QImage image = readPicture(contents, int(widest) * kSpareWidth);
  if (image.isNull())
    return std::nullopt;
  const double ratio = double(widest) / size.width();
  const QSize target(int(widest), std::max(1, int(std::lround(size.height() * ratio))));
  return imageByScalingProportionallyToSize(image, target);
}

/// The largest size of size's proportions within target.
QSize proportionalSize(QSizeF size, QSize target) {
  const double across = target.width() / size.width();
  const double down = target.height() / size.height();
  const QSizeF exact = size * std::min(across, down);
  // Where target is that size rounded to whole pixels, no edge of it is left free.
  const auto whole = [](double length, int most) {
    return most - length < 1 ? most : std::max(1, int(std::lround(length)));
  };
  if (std::abs(size.height() * across - target.height()) < 1)
    return target;
  return {whole(exact.width(), target.width()), whole(exact.height(), target.height())};
}

} // namespace

QImage imageByScalingProportionallyToSize(const QImage& image, QSize size) {
  if (image.size() == size)
    return image;
  QImage canvas(size, QImage::Format_ARGB32_Premultiplied);
  if (image.isNull() || canvas.isNull())
    return {};
  canvas.fill(Qt::transparent);
  const QSize scaledSize = proportionalSize(image.size(), size);
  QImage scaled = image.scaled(scaledSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  scaled.setDevicePixelRatio(1.0);
  QPainter(&canvas).drawImage((size.width() - scaledSize.width()) / 2,
                              (size.height() - scaledSize.height()) / 2, scaled);
  return canvas;
}

std::optional<TextAttachment> resizedAttachmentImage(const TextAttachment& attachment,
                                                     QSizeF frame) {
  const float widest = widestFor(frame);
  std::optional<QImage> image;
  if (pictureSize(attachment.contents).isValid())
    image = narrowed(attachment.contents, widest);
  if (!image)
    image = narrowed(placeholderContents(), widest);
  if (!image || image->isNull())
    return std::nullopt;
  const QByteArray contents = jpegOf(*image);
  if (contents.isEmpty())
    return std::nullopt;
  return TextAttachment{QStringLiteral("image.jpg"), contents, {}};
}

int scaleAttachments(AttributedText& text) {
  // A text may name one picture any number of times: it is decoded once.
  QHash<QByteArray, std::optional<TextAttachment>> done;
  int count = 0;
  for (TextRun& run : text.runs) {
    std::optional<TextAttachment>& attachment = run.attributes.attachment;
    if (!attachment)
      continue;
    auto known = done.constFind(attachment->contents);
    if (known == done.constEnd())
      known = done.insert(attachment->contents, resizedAttachmentImage(*attachment, kFrameOfTexts));
    if (!known->has_value())
      continue;
    attachment = *known;
    ++count;
  }
  return count;
}

} // namespace tockwise
