// Pictures and files in a text: their formats and the document's resources for them.
#include "richtext/character_formats.h"
#include "richtext/format_properties.h"
#include "richtext/picture_reading.h"
#include "richtext/text_document.h"

#include <QCryptographicHash>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QUrl>

namespace tockwise {
namespace {

/// A picture is kept in memory no wider than this (pixels).
constexpr int kWidestInMemory = 2048;
constexpr QSize kIconSize(96, 72);
constexpr int kSheetWidth = 32;
constexpr int kSheetHeight = 40;
constexpr int kMargin = 4;

/// A sheet of paper with a corner turned down, and the file's name below it.
QImage fileIcon(const QString& name) {
  constexpr int kScale = 2; // for dense screens
  QImage icon(kIconSize * kScale, QImage::Format_ARGB32_Premultiplied);
  icon.setDevicePixelRatio(kScale);
  icon.fill(Qt::transparent);
  QPainter painter(&icon);
  painter.setRenderHint(QPainter::Antialiasing);
  // A plate of its own, so that the name can be read on any ground.
  painter.setPen(QPen(QColor(0, 0, 0, 60)));
  painter.setBrush(QColor(246, 246, 246));
  painter.drawRoundedRect(QRectF(QPointF(), kIconSize).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
  const QRectF sheet((kIconSize.width() - kSheetWidth) / 2.0, kMargin + 2, kSheetWidth,
                     kSheetHeight);
  constexpr double kCorner = 10;
  QPainterPath path(sheet.topLeft());
  path.lineTo(sheet.right() - kCorner, sheet.top());
  path.lineTo(sheet.right(), sheet.top() + kCorner);
  path.lineTo(sheet.bottomRight());
  path.lineTo(sheet.bottomLeft());
  path.closeSubpath();
  painter.setPen(QPen(QColor(120, 120, 120), 1));
  painter.setBrush(Qt::white);
  painter.drawPath(path);
  painter.drawPolyline(QPolygonF({QPointF(sheet.right() - kCorner, sheet.top()),
                                  QPointF(sheet.right() - kCorner, sheet.top() + kCorner),
                                  QPointF(sheet.right(), sheet.top() + kCorner)}));
  QFont font = QGuiApplication::font();
  font.setPixelSize(11);
  painter.setFont(font);
  painter.setPen(QColor(40, 40, 40));
  const QRect label(kMargin, kIconSize.height() - 22, kIconSize.width() - 2 * kMargin, 18);
  const QString shown = QFontMetrics(font).elidedText(name, Qt::ElideMiddle, label.width());
  painter.drawText(label, Qt::AlignCenter | Qt::TextSingleLine, shown);
  return icon;
}

/// How a resource is named: pictures by their contents, files by what their icon shows.
QUrl resourceName(const TextAttachment& attachment, bool isPicture) {
  QUrl url;
  url.setScheme(isPicture ? QStringLiteral("tockwise-picture") : QStringLiteral("tockwise-file"));
  const QByteArray source = isPicture ? attachment.contents : attachment.name.toUtf8();
  url.setPath(
      QString::fromLatin1(QCryptographicHash::hash(source, QCryptographicHash::Sha1).toHex()));
  return url;
}

} // namespace

QTextCharFormat attachmentFormat(const TextAttachment& attachment, QTextDocument& document) {
  QSize size = pictureSize(attachment.contents);
  QUrl name = resourceName(attachment, size.isValid());
  if (!document.resource(QTextDocument::ImageResource, name).isValid()) {
    QImage image;
    if (size.isValid())
      image =
          readPicture(attachment.contents, size.width() > kWidestInMemory ? kWidestInMemory : 0);
    if (image.isNull()) {
      size = QSize();
      name = resourceName(attachment, false);
      image = fileIcon(attachment.name);
    }
    document.addResource(QTextDocument::ImageResource, name, image);
  }
  QTextImageFormat format;
  format.setName(name.toString());
  // Stated, so that a copy of the document is laid out alike without the pictures.
  format.setWidth(size.isValid() ? size.width() : kIconSize.width());
  format.setHeight(size.isValid() ? size.height() : kIconSize.height());
  TextAttributes attributes;
  attributes.attachment = attachment;
  setOrigin(format, attributes);
  return format;
}

std::optional<TextAttachment> attachmentOf(const QTextCharFormat& format) {
  const TextAttributes* origin = originOf(format);
  return origin && format.objectType() == QTextFormat::ImageObject ? origin->attachment
                                                                   : std::nullopt;
}

} // namespace tockwise
