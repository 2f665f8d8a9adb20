// The words in empty fields, readable on any desktop.
#pragma once

#include <QColor>
#include <QObject>
#include <QPalette>

namespace tockwise {

/// The colour of such words for a palette: its own where that can be read on the field's ground,
/// else its text at half strength. Some desktops set the colours of a dark theme and leave this
/// one black. Any thread.
QColor placeholderColor(const QPalette& palette);

/// While it lives, corrects the application's palette, also when the desktop changes it. Main
/// thread; the application must exist.
class PlaceholderColor final : public QObject {
  Q_OBJECT
 public:
  PlaceholderColor();
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static void correct();
};

} // namespace tockwise
