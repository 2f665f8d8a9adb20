// Hot keys from KGlobalAccel, the keeper of the hot keys of Plasma.
#pragma once

#include "platform/hotkeys/bus_shortcuts.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <functional>
#include <memory>

namespace tockwise {

/// Main thread.
class KdeShortcuts final : public BusShortcuts {
  Q_OBJECT
 public:
  explicit KdeShortcuts(const QDBusConnection& bus, QObject* parent = nullptr);
  ~KdeShortcuts() override;

  QString name() const override;
  QString service() const override;
  void bind() override;
  void release() override;
  void giveBack() override;

 private Q_SLOTS:
  void shortcutPressed(const QDBusMessage& message);
  void shortcutsChanged(const QDBusMessage& message);

 private:
  using Answered = std::function<void(const QDBusMessage&)>;

  void ask(const QDBusMessage& call, Answered answered);
  void findCompositor();
  void registerActions();
  void findComponent();
  void setKeys(int number);
  void setKeysOfOld(int number);
  void take(int number, bool isOurs);
  bool stopTalking();
  void fail();

  QDBusConnection m_bus;
  std::unique_ptr<QObject> m_talk; // parent of all that waits for an answer
  HotKeyStates m_states;
  QString m_component; // path of the object that tells of our keys
};

} // namespace tockwise
