#include "platform/hotkeys/bus_shortcuts.h"

#include <Qt>

#include <iterator>

namespace tockwise {
namespace {

constexpr int kModifiers = int(Qt::CTRL) | int(Qt::META);

constexpr ShortcutName kNames[] = {
    {u"new-reminder", u"New reminder", u"CTRL+LOGO+m", kModifiers | Qt::Key_M},
    {u"show-alerts", u"Show all current alerts", u"CTRL+LOGO+s", kModifiers | Qt::Key_S},
    {u"hide-alerts", u"Hide all current alerts", u"CTRL+LOGO+h", kModifiers | Qt::Key_H},
    {u"print-alerts", u"Print all current alerts", u"CTRL+LOGO+p", kModifiers | Qt::Key_P},
};

} // namespace

const ShortcutName* shortcutNames() {
  return kNames;
}

int shortcutNumber(const QString& identifier) {
  for (size_t i = 0; i < std::size(kNames); ++i) {
    if (identifier == QStringView(kNames[i].identifier))
      return int(i) + 1;
  }
  return 0;
}

} // namespace tockwise
