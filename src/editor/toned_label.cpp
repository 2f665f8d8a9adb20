#include "editor/toned_label.h"

#include "colors/color_contrast.h"

#include <QPainter>
#include <QStyle>

namespace tockwise {
namespace {

/// The part of the text colour in a quiet line; the rest is the window's.
constexpr double kQuiet = 0.72;

} // namespace

TonedLabel::TonedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void TonedLabel::say(const QString& text, Tone tone) {
  m_tone = tone;
  setText(text);
  setToolTip(QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()));
  update();
}

QSize TonedLabel::minimumSizeHint() const {
  const QSize hint = QLabel::minimumSizeHint();
  return {std::min(hint.width(), fontMetrics().averageCharWidth() * 12), hint.height()};
}

QColor TonedLabel::color() const {
  const QColor ink = palette().color(QPalette::WindowText);
  const QColor ground = palette().color(QPalette::Window);
  switch (m_tone) {
  case Tone::Quiet:
    return mixed(ink, ground, kQuiet);
  case Tone::Warning:
    return ground.lightnessF() < 0.5F ? QColor(0xff, 0xb4, 0x6b) : QColor(0x9c, 0x3d, 0x00);
  case Tone::Plain:
    break;
  }
  return ink;
}

void TonedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(color());
  const QRect area = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
  const int alignment =
      int(QStyle::visualAlignment(layoutDirection(), this->alignment()) | Qt::AlignAbsolute);
  // The words decide in which direction they run, the window only where they stand.
  painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  if (wordWrap()) {
    painter.drawText(area, alignment | Qt::TextWordWrap, text());
    return;
  }
  const QString line = fontMetrics().elidedText(text(), Qt::ElideRight, area.width());
  painter.drawText(area, alignment | Qt::TextSingleLine, line);
}

} // namespace tockwise
