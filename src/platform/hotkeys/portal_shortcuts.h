// Hot keys from the desktop's GlobalShortcuts portal. The desktop asks its user which keys they
// are to be, and remembers the answer.
#pragma once

#include "platform/hotkeys/bus_shortcuts.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <memory>

namespace tockwise {

/// Main thread.
class PortalShortcuts final : public BusShortcuts {
  Q_OBJECT
 public:
  explicit PortalShortcuts(const QDBusConnection& bus, QObject* parent = nullptr);
  ~PortalShortcuts() override;

  QString name() const override;
  QString service() const override;
  void bind() override;
  void release() override;

 private Q_SLOTS:
  void activated(const QDBusMessage& message);
  void shortcutsChanged(const QDBusMessage& message);
  void sessionClosed();

 private:
  void introduceOurselves();
  void askForVersion();
  void createSession();
  void bindShortcuts();
  void takeFirst(const QVariant& shortcuts);
  void takeShortcuts(const QVariant& shortcuts);
  void fail(const QString& reason);

  QDBusConnection m_bus;
  std::unique_ptr<QObject> m_talk; // parent of all that waits for an answer
  QString m_session;               // path
};

} // namespace tockwise
