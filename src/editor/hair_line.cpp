#include "editor/hair_line.h"

#include "colors/color_contrast.h"

#include <QPainter>

namespace tockwise {

HairLine::HairLine(QWidget* parent) : QFrame(parent) {}

QSize HairLine::sizeHint() const {
  return frameShape() == QFrame::VLine ? QSize(1, -1) : QSize(-1, 1);
}

QColor HairLine::color() const {
  constexpr double kInk = 0.22; // the rest is the window's
  return mixed(palette().color(QPalette::WindowText), palette().color(QPalette::Window), kInk);
}

void HairLine::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), color());
}

} // namespace tockwise
