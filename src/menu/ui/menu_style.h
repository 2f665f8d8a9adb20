// What the program's menus ask of the style beyond the desktop's own.
#pragma once

#include <QProxyStyle>

namespace tockwise {

/// A menu taller than the screen scrolls instead of going on in further columns; items with rich
/// titles are drawn with them. Used by NativeMenu.
class MenuStyle final : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
};

} // namespace tockwise
