#include "richtext/place_picture.h"

#include <QImage>
#include <QPainter>
#include <QTextDocument>
#include <QUrl>

namespace tockwise {
namespace {

constexpr QSize kSize(56, 40);
/// Drawn so many times larger, to be sharp on every screen.
constexpr int kDetail = 2;

} // namespace

QString placePictureName() {
  return QStringLiteral("tockwise-place");
}

QSizeF addPlacePicture(QTextDocument& document, const QPalette& palette) {
  QImage image(kSize * kDetail, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(kDetail);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor ink = palette.color(QPalette::Text);
  ink.setAlphaF(0.08F);
  painter.setBrush(ink);
  QColor edge = ink;
  edge.setAlphaF(0.25F);
  painter.setPen(QPen(edge, 1));
  painter.drawRoundedRect(QRectF({}, QSizeF(kSize)).adjusted(1.5, 1.5, -1.5, -1.5), 6, 6);
  ink.setAlphaF(0.45F);
  painter.setBrush(ink);
  painter.setPen(Qt::NoPen);
  for (int dot = -1; dot <= 1; ++dot)
    painter.drawEllipse(QPointF(kSize.width() / 2.0 + dot * 9, kSize.height() / 2.0), 2.5, 2.5);
  painter.end();
  document.addResource(QTextDocument::ImageResource, QUrl(placePictureName()), image);
  return kSize;
}

} // namespace tockwise
