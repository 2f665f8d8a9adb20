#include "prefs/ui/hot_key_text_field.h"

namespace tockwise {

HotKeyTextField::HotKeyTextField(QWidget* parent) : QLineEdit(parent) {
  setText(QStringLiteral("Ready"));
}

void HotKeyTextField::follow(HotKeys&) {}

} // namespace tockwise
