#include "prefs/ui/hot_key_text_field.h"

#include "prefs/hot_key_text.h"

#include <QKeyEvent>

#include <algorithm>
#include <iterator>
#include <optional>

namespace tockwise {
namespace {

std::optional<HotKey> hotKeyOf(const QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (modifiers != (Qt::ControlModifier | Qt::MetaModifier))
    return std::nullopt;
  const auto* found = std::find_if(std::begin(kHotKeys), std::end(kHotKeys), [&](HotKey key) {
    return event.key() == int(letterOf(key)); // Qt numbers the keys of letters by their capitals
  });
  return found == std::end(kHotKeys) ? std::nullopt : std::optional(*found);
}

} // namespace

HotKeyTextField::HotKeyTextField(QWidget* parent) : QLineEdit(parent) {
  setReadOnly(true);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(QStringLiteral("State of the hot keys"));
  showState();
}

void HotKeyTextField::follow(HotKeys& hotKeys) {
  if (m_hotKeys)
    m_hotKeys->disconnect(this);
  m_hotKeys = &hotKeys;
  connect(&hotKeys, &HotKeys::stateChanged, this, &HotKeyTextField::showState);
  connect(&hotKeys, &QObject::destroyed, this, &HotKeyTextField::showState);
  showState();
}

void HotKeyTextField::showState() {
  const HotKeyText text =
      m_hotKeys ? hotKeyText(*m_hotKeys) : hotKeyText(allHotKeys(HotKeys::State::Off), QString());
  if (this->text() != text.line)
    setText(text.line);
  setCursorPosition(0);
  setToolTip(text.toolTip);
  setWhatsThis(text.toolTip);
  setAccessibleDescription(text.toolTip);
}

void HotKeyTextField::keyPressEvent(QKeyEvent* event) {
  const auto key = hotKeyOf(*event);
  if (!key) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  if (!event->isAutoRepeat()) {
    setText(hotKeyPressText(*key, m_hotKeys ? m_hotKeys->state(*key) : HotKeys::State::Off));
    setCursorPosition(0);
  }
  event->accept();
}

void HotKeyTextField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  showState();
}

} // namespace tockwise
