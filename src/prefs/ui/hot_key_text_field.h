// Shows whether the hot keys work, in one line that can be selected and copied.
#pragma once

#include "ports/hot_keys.h"

#include <QLineEdit>

namespace tockwise {

/// Main thread.
class HotKeyTextField final : public QLineEdit {
  Q_OBJECT
 public:
  explicit HotKeyTextField(QWidget* parent = nullptr);

  /// From now on the field follows the state of the keys; hotKeys must outlive it. Until then it
  /// shows "Ready".
  void follow(HotKeys& hotKeys);
};

} // namespace tockwise
