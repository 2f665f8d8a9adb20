// The unit of a ruler: centimetres or inches, by the user's locale.
#pragma once

#include <QLocale>
#include <QString>

namespace tockwise {

/// Lengths in pixels of 96 to the inch.
struct RulerScale {
  double unit = 0;  // a numbered mark
  int parts = 1;    // small marks to a unit
  double grain = 0; // what dragging snaps to
  QString suffix;   // "cm"

  double snapped(double pixels) const;
  /// "1.5 cm" in the locale's figures.
  QString text(double pixels, const QLocale& locale) const;
};

RulerScale scaleFor(const QLocale& locale);

} // namespace tockwise
