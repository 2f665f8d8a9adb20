#include "menu/ui/drop_frame.h"

#include "store/documents/document_file.h"
#include "store/documents/document_location.h"

#include <QMimeData>
#include <QMimeDatabase>
#include <QPainter>
#include <QUrl>

#include <algorithm>

namespace tockwise {
namespace {

constexpr int kTintOpacity = 40; // of 255
constexpr qreal kFrameWidth = 3;
constexpr int kRadius = 8;

bool isDocument(const QString& path) {
  return hasDocumentSuffix(path) ||
         QMimeDatabase().mimeTypeForFile(path).inherits(QString::fromUtf16(kDocumentMimeType));
}

} // namespace

QStringList draggedDocuments(const QMimeData& data) {
  QStringList documents;
  const QList<QUrl> urls = data.urls();
  for (const QUrl& url : urls) {
    const auto path = localPathOf(QString::fromLatin1(url.toEncoded()));
    if (path && isDocument(*path))
      documents += *path;
  }
  return documents;
}

DropFrame::DropFrame(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("dropFrame"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

void DropFrame::cover() {
  setGeometry(parentWidget()->rect());
  raise();
  show();
}

void DropFrame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor color = palette().color(QPalette::Highlight);
  QColor tint = color;
  tint.setAlpha(kTintOpacity);
  const QRectF frame =
      QRectF(rect()).adjusted(kFrameWidth, kFrameWidth, -kFrameWidth, -kFrameWidth);
  painter.setPen(QPen(color, kFrameWidth));
  painter.setBrush(tint);
  painter.drawRoundedRect(frame, kRadius, kRadius);

  const QString words = QStringLiteral("Drop to open these reminders");
  QFont bold = font();
  bold.setBold(true);
  painter.setFont(bold);
  const int margin = painter.fontMetrics().height() / 2;
  const int most = std::max(0, width() - 4 * margin);
  QRect text = painter.fontMetrics().boundingRect(QRect(0, 0, most, height()),
                                                  Qt::AlignCenter | Qt::TextWordWrap, words);
  text.moveCenter(rect().center());
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(text.adjusted(-2 * margin, -margin, 2 * margin, margin), kRadius,
                          kRadius);
  painter.setPen(palette().color(QPalette::HighlightedText));
  painter.drawText(text, Qt::AlignCenter | Qt::TextWordWrap, words);
}

} // namespace tockwise
