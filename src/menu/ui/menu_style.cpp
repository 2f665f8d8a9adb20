#include "menu/ui/menu_style.h"

#include "menu/ui/native_menu.h"
#include "menu/ui/rich_document.h"

#include <QStyleOptionMenuItem>

namespace tockwise {
namespace {

QTextDocument* documentOf(const QStyleOption* option, const QWidget* widget) {
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  const auto* menu = qobject_cast<const NativeMenu*>(widget);
  return item && menu ? menu->richDocumentOf(*item) : nullptr;
}

} // namespace

int MenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* result) const {
  if (hint == SH_Menu_Scrollable)
    return 1;
  return QProxyStyle::styleHint(hint, option, widget, result);
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
  if (type == CT_MenuItem) {
    if (QTextDocument* document = documentOf(option, widget)) {
      return richItemSize(*baseStyle(), *qstyleoption_cast<const QStyleOptionMenuItem*>(option),
                          *document, widget);
    }
  }
  return QProxyStyle::sizeFromContents(type, option, size, widget);
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  if (element == CE_MenuItem) {
    if (QTextDocument* document = documentOf(option, widget)) {
      paintRichItem(*baseStyle(), *qstyleoption_cast<const QStyleOptionMenuItem*>(option),
                    *document, *painter, widget);
      return;
    }
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

} // namespace tockwise
