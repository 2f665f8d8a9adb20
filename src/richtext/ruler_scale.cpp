#include "richtext/ruler_scale.h"

#include <QCoreApplication>

#include <cmath>

namespace tockwise {
namespace {

constexpr double kInch = 96.0;
constexpr double kCentimetre = kInch / 2.54;

} // namespace

double RulerScale::snapped(double pixels) const {
  return std::round(pixels / grain) * grain;
}

QString RulerScale::text(double pixels, const QLocale& locale) const {
  const double value = std::round(pixels / unit * 100) / 100;
  return locale.toString(value == 0 ? 0 : value, 'g', 4) + u' ' + suffix;
}

RulerScale scaleFor(const QLocale& locale) {
  if (locale.measurementSystem() == QLocale::ImperialUSSystem)
    return {kInch, 8, kInch / 16, QCoreApplication::translate("TextRuler", "in")};
  return {kCentimetre, 4, kCentimetre / 10, QCoreApplication::translate("TextRuler", "cm")};
}

} // namespace tockwise
