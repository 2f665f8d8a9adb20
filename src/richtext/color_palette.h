// The pop-up in which a text colour is chosen.
#pragma once

#include <QColor>
#include <QFrame>

#include <optional>

namespace tockwise {

/// Main thread. Opens as a pop-up, closes with a choice or Escape; arrow keys go from colour to
/// colour.
class ColorPalette final : public QFrame {
  Q_OBJECT
 public:
  explicit ColorPalette(QWidget* parent);
  /// Marks the colour that the text has; nothing: the theme's own.
  void setCurrent(const std::optional<QColor>& color);
  /// Opens below anchor.
  void popupBelow(const QWidget& anchor);

 Q_SIGNALS:
  void chosen(const QColor& color);
  /// The theme's own colour.
  void themeChosen();
  /// Another colour than those shown is wanted.
  void othersWanted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// A key that goes to another colour, chooses or closes; false for any other.
  bool handle(const QKeyEvent& event);
  void moveFocus(int columns, int rows);
};

/// Moves a pop-up of that size (pixels) below a place of the screen, and into the screen.
QPoint popupPlace(const QWidget& anchor, QRect below, QSize size);

} // namespace tockwise
