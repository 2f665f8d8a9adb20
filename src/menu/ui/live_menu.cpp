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

bool isReading(const MenuEntry& entry) {
  switch (entry.kind) {
  case MenuItemKind::QueueHeader:
  case MenuItemKind::QueueCount:
  case MenuItemKind::NoReminders:
  case MenuItemKind::NoAlerts:
  case MenuItemKind::ReminderIndex:
  case MenuItemKind::ReminderDate:
  case MenuItemKind::ReminderCountdown:
  case MenuItemKind::ReminderLast:
    return true;
  default:
    return false;
  }
}

QPalette readingPalette(QPalette palette) {
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const QColor ground = palette.color(QPalette::Active, QPalette::Window);
  const auto between = [](float one, float other) { return 0.66f * one + 0.34f * other; };
  const QColor color =
      QColor::fromRgbF(between(text.redF(), ground.redF()), between(text.greenF(), ground.greenF()),
                       between(text.blueF(), ground.blueF()));
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, color);
  return palette;
}

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
