// A quiet button of the formatting bar.
#pragma once

#include "richtext/bar_icons.h"

#include <QToolButton>

namespace tockwise {

/// Main thread. Has no frame until the mouse or the keyboard is on it, and takes the keyboard by
/// Tab only, so that a click leaves it in the text.
class BarButton final : public QToolButton {
 public:
  BarButton(BarSign sign, const QString& name, QWidget* parent);

  void setSign(BarSign sign);
  /// The sign's second colour; invalid: the palette's accent.
  void setAccent(const QColor& color);
  /// Whether it shows that it opens something; a button with a menu does.
  void setOpensPopup(bool opens);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void drawAgain();
  bool hasArrow() const { return m_opensPopup || popupMode() == InstantPopup; }

  BarSign m_sign;
  QColor m_accent;
  bool m_opensPopup = false;
};

} // namespace tockwise
