// The signs on the buttons of the formatting bar, drawn at whatever size and scale they are shown.
#pragma once

#include <QColor>
#include <QIcon>

namespace tockwise {

enum class BarSign {
  Bold,
  Italic,
  Underline,
  Color,
  Bullets,
  Numbers,
  AlignLeft,
  AlignCenter,
  AlignRight,
  AlignBlock,
  Link,
  Picture,
  Crazy
};

/// accent: what the sign has of a second colour, such as the bar under the letter of Color. Main
/// thread.
QIcon barIcon(BarSign sign, const QColor& ink, const QColor& accent);

} // namespace tockwise
