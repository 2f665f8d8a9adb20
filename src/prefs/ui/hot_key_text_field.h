// Shows whether the hot keys work, in one line that can be selected and copied.
#pragma once

#include "ports/hot_keys.h"

#include <QLineEdit>
#include <QPointer>

namespace tockwise {

/// Main thread. Keys never change its text, with one exception: a hot key that arrives here, since
/// nobody else took it, is told what would become of it.
class HotKeyTextField final : public QLineEdit {
  Q_OBJECT
 public:
  explicit HotKeyTextField(QWidget* parent = nullptr);

  /// From now on the field follows the state of the keys. Until then, and after the end of
  /// hotKeys, it shows "Ready".
  void follow(HotKeys& hotKeys);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void showState();

  QPointer<HotKeys> m_hotKeys;
};

} // namespace tockwise
