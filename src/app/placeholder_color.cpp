#include "app/placeholder_color.h"

#include <QApplication>
#include <QEvent>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

constexpr double kLeastContrast = 2.0; // such words are quiet: less than what text needs

double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

QColor laidOver(const QColor& ground, const QColor& ink) {
  const float part = ink.alphaF();
  const auto mixed = [part](float a, float b) { return a * part + b * (1 - part); };
  return QColor::fromRgbF(mixed(ink.redF(), ground.redF()), mixed(ink.greenF(), ground.greenF()),
                          mixed(ink.blueF(), ground.blueF()));
}

double contrast(const QColor& ground, const QColor& ink) {
  const auto [dark, light] = std::minmax({luminance(ground), luminance(laidOver(ground, ink))});
  return (light + 0.05) / (dark + 0.05);
}

} // namespace

QColor placeholderColor(const QPalette& palette) {
  const QColor own = palette.color(QPalette::Active, QPalette::PlaceholderText);
  if (contrast(palette.color(QPalette::Active, QPalette::Base), own) >= kLeastContrast)
    return own;
  QColor half = palette.color(QPalette::Active, QPalette::Text);
  half.setAlphaF(0.5F);
  return half;
}

PlaceholderColor::PlaceholderColor() {
  qApp->installEventFilter(this);
  correct();
}

bool PlaceholderColor::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
    correct();
  return false;
}

void PlaceholderColor::correct() {
  const QPalette present = QApplication::palette();
  const QColor color = placeholderColor(present);
  if (color == present.color(QPalette::Active, QPalette::PlaceholderText))
    return;
  QPalette changed = present; // remembers what was set, so that the rest follows the desktop
  changed.setColor(QPalette::PlaceholderText, color);
  QApplication::setPalette(changed);
}

} // namespace tockwise
