// A service on the session bus that gives programs hot keys.
#pragma once

#include "ports/hot_keys.h"

#include <QObject>
#include <QString>

namespace tockwise {

/// What a service is told of one key.
struct ShortcutName {
  const char16_t* identifier;
  const char16_t* description;
  const char16_t* trigger; // in the words of the shortcuts specification
  int key;                 // Qt's, with modifiers
};
/// Four, in the order of kHotKeys. Any thread.
const ShortcutName* shortcutNames();
/// The number of the key with that identifier, or 0. Any thread.
int shortcutNumber(const QString& identifier);

/// Main thread. Nothing waits: answers come as signals.
class BusShortcuts : public QObject {
  Q_OBJECT
 public:
  using QObject::QObject;

  /// The service as the user may know it.
  virtual QString name() const = 0;
  /// The name on the bus.
  virtual QString service() const = 0;
  /// Asks for the keys; ends in bound() or failed(), unless release() comes first.
  virtual void bind() = 0;
  /// Stops using the keys, or asking for them. The service may keep them for the next time.
  virtual void release() = 0;
  /// As release(), and others may have the keys from now on.
  virtual void giveBack() { release(); }

 Q_SIGNALS:
  /// The keys are bound, or became others: which work, and which are taken.
  void bound(const HotKeyStates& states);
  /// reason: a clause for the user.
  void failed(const QString& reason);
  void pressed(int number);
};

} // namespace tockwise
