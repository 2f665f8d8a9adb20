#include "editor/hair_line.h"

#include <QPainter>

namespace tockwise {

HairLine::HairLine(QWidget* parent) : QFrame(parent) {}

QSize HairLine::sizeHint() const {
  return frameShape() == QFrame::VLine ? QSize(1, -1) : QSize(-1, 1);
}

QColor HairLine::color() const {
  constexpr float kInk = 0.22F; // the rest is the window's
  const QColor ink = palette().color(QPalette::WindowText);
  const QColor ground = palette().color(QPalette::Window);
  const auto mixed = [](float a, float b) { return a * kInk + b * (1 - kInk); };
  return QColor::fromRgbF(mixed(ink.redF(), ground.redF()), mixed(ink.greenF(), ground.greenF()),
                          mixed(ink.blueF(), ground.blueF()));
}

void HairLine::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), color());
}

} // namespace tockwise
