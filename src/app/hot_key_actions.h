// The hot keys at work: registered as the setting says, each doing its operation.
#pragma once

#include "ports/hot_keys.h"
#include "store/settings.h"

#include <QObject>

namespace tockwise {

/// Main thread. The references must outlive it.
class HotKeyActions final : public QObject {
  Q_OBJECT
 public:
  HotKeyActions(HotKeys& hotKeys, const Settings& settings, QObject* parent = nullptr);

  /// From now on the keys follow the setting; the desktop is asked for nothing before.
  void start();
  /// Registers or gives back the keys as useGlobalHotKeys says now, and tries those again that
  /// another program had. Cheap when there is nothing to do.
  void follow();

 Q_SIGNALS:
  /// The name of the menu operation that a pressed key stands for.
  void operationChosen(const QString& operation);

 private:
  bool isAnyMissing() const;
  void perform(int number);

  HotKeys& m_hotKeys;
  const Settings& m_settings;
  bool m_hasStarted = false;
  bool m_isOn = false;
};

} // namespace tockwise
