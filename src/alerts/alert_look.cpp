#include "alerts/alert_look.h"

#include "colors/color_contrast.h"

namespace tockwise {
QColor textOn(const QColor& background) {
  // White is preferred on an accent colour as long as it can be read at a button's size.
  return contrast(Qt::white, background) >= 3.6 ? QColor(Qt::white) : QColor(0x1b, 0x1b, 0x1f);
}

bool isDark(const QPalette& palette) {
  return luminance(palette.color(QPalette::Window)) < 0.2;
}

QColor alertAccent(const QPalette& palette) {
  const QColor window = palette.color(QPalette::Window);
  QColor accent = palette.color(QPalette::Highlight);
  for (int step = 0; step < 8 && contrast(accent, window) < 2.6; ++step)
    accent = isDark(palette) ? accent.lighter(115) : accent.darker(115);
  return accent;
}

QPalette alertPalette(const QPalette& desktop) {
  QPalette palette = desktop;
  const QColor base = desktop.color(QPalette::Base);
  const QColor window = desktop.color(QPalette::Window);
  // Paper is the lighter of the two in a light theme; a dark theme's window colour is easier on
  // the eyes than its nearly black text fields.
  const QColor ground = isDark(desktop) ? window : base;
  const QColor ink =
      isDark(desktop) ? desktop.color(QPalette::WindowText) : desktop.color(QPalette::Text);
  palette.setColor(QPalette::Window, ground);
  palette.setColor(QPalette::Base, ground);
  palette.setColor(QPalette::WindowText, ink);
  palette.setColor(QPalette::Text, ink);
  return palette;
}

QString alertStyleSheet(const QPalette& palette) {
  const QColor ground = palette.color(QPalette::Window);
  const QColor ink = palette.color(QPalette::WindowText);
  const QColor accent = alertAccent(palette);
  const QColor button = mixed(ink, ground, 0.07);
  QString sheet = QStringLiteral(R"(
#AlertWindow { background: @ground; }
#footer { background: @footer; border: none; border-top: 1px solid @line; }
#dateField { color: @dim; }
#resecheduledField { color: @dim; }
#reminderView { background: transparent; border: none; selection-background-color: @accent;
  selection-color: @onAccent; }
QPushButton { background: @button; color: @ink; border: 1px solid @line; border-radius: 7px;
  padding: 6px 14px; min-width: 2.2em; }
QPushButton:hover { background: @hover; }
QPushButton:pressed { background: @pressed; }
QPushButton:focus { border: 2px solid @accent; padding: 5px 13px; }
QPushButton#okButton { background: @accent; color: @onAccent; border: 1px solid @accent;
  padding: 6px 26px; font-weight: 600; }
QPushButton#okButton:hover { background: @accentHover; }
QPushButton#okButton:pressed { background: @accentPressed; }
QPushButton#okButton:focus { border: 2px solid @focusOnAccent; padding: 5px 25px; }
QPushButton#deleteButton { color: @danger; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 0; }
QScrollBar::handle:vertical { background: @line; border-radius: 4px; min-height: 28px;
  margin-left: 2px; }
QScrollBar::handle:vertical:hover { background: @dim; }
QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }
QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }
)");
  const QColor danger = isDark(palette) ? QColor(0xff, 0x8a, 0x80) : QColor(0xb3, 0x26, 0x1e);
  const std::pair<const char*, QColor> colours[] = {
      {"@ground", ground},
      {"@footer", mixed(ink, ground, isDark(palette) ? 0.05 : 0.035)},
      {"@line", mixed(ink, ground, 0.14)},
      {"@dim", mixed(ink, ground, 0.66)},
      {"@onAccent", textOn(accent)},
      {"@accentHover", accent.lighter(108)},
      {"@accentPressed", accent.darker(112)},
      {"@accent", accent},
      {"@button", button},
      {"@ink", ink},
      {"@hover", mixed(ink, ground, 0.12)},
      {"@pressed", mixed(ink, ground, 0.18)},
      {"@focusOnAccent", mixed(accent, ink, 0.45)},
      {"@danger", danger},
  };
  for (const auto& [name, colour] : colours)
    sheet.replace(QLatin1String(name), colour.name());
  return sheet;
}

} // namespace tockwise
