#include "colors/color_contrast.h"

#include <algorithm>
#include <cmath>

namespace tockwise {

double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const double light = std::max(luminance(a), luminance(b));
  const double dark = std::min(luminance(a), luminance(b));
  return (light + 0.05) / (dark + 0.05);
}

QColor mixed(const QColor& a, const QColor& b, double part) {
  const auto mix = [part](double x, double y) { return float(x * part + y * (1 - part)); };
  return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()),
                          mix(a.blueF(), b.blueF()));
}

QColor withOpacity(QColor color, double opacity) {
  color.setAlphaF(float(opacity));
  return color;
}

} // namespace tockwise
