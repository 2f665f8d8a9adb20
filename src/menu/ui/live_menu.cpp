#include "menu/ui/live_menu.h"

namespace tockwise {
namespace {

QString oneLine(QString text) {
  for (QChar& character : text) {
    if (character == u'\n' || character == u'\r' || character == u'\t' ||
        character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
      character = u' ';
  }
  return text;
}

} // namespace

MenuLabel menuLabel(const QString& title) {
  static const QString hint = QStringLiteral("\t\t\t^\u2318");
  const qsizetype at = title.indexOf(hint);
  if (at < 0)
    return {oneLine(title), {}};
  return {oneLine(title.left(at)), QStringLiteral("Ctrl+Super+") + title.mid(at + hint.size())};
}

QString menuText(const MenuLabel& label) {
  QString text = label.text;
  text.replace(u'&', QStringLiteral("&&"));
  return label.key.isEmpty() ? text : text + u'\t' + label.key;
}

} // namespace tockwise
