#include "app/placeholder_color.h"

#include "colors/color_contrast.h"

#include <QApplication>
#include <QEvent>

namespace tockwise {
namespace {

constexpr double kLeastContrast = 2.0; // such words are quiet: less than what text needs

// A colour that lets the ground through is told from it as far as it covers it.
double contrastOn(const QColor& ground, const QColor& ink) {
  return contrast(ground, mixed(ink, ground, ink.alphaF()));
}

} // namespace

QColor placeholderColor(const QPalette& palette) {
  const QColor own = palette.color(QPalette::Active, QPalette::PlaceholderText);
  if (contrastOn(palette.color(QPalette::Active, QPalette::Base), own) >= kLeastContrast)
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
