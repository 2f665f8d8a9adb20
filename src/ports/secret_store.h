// The desktop's keeper of passwords.
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace tockwise {

/// Main thread. Every operation returns at once; its answer comes later from the event loop, once,
/// also when the service does not answer (then as a failure).
class SecretStore : public QObject {
  Q_OBJECT
 public:
  /// Unknown: nobody looked yet, or the service would first have to be started.
  enum class State { Unknown, Available, Locked, NotAvailable };
  using QObject::QObject;

  /// What is known by now.
  virtual State state() const = 0;
  /// Finds out how things are, without starting the service and without asking the user; calls
  /// done when that is known. From then on stateChanged() tells of every change.
  virtual void look(std::function<void()> done) = 0;
  /// Starts the service if the desktop has one that does not run, then looks.
  virtual void wake(std::function<void()> done) = 0;
  /// answer: the secret, or nothing when there is none; ok is false when the service failed.
  /// Reading from a locked store asks the user to unlock it, and waits for that.
  virtual void read(const QString& key,
                    std::function<void(bool ok, std::optional<QString> secret)> answer) = 0;
  virtual void write(const QString& key, const QString& secret,
                     std::function<void(bool ok)> answer) = 0;
  /// ok also when there was none.
  virtual void remove(const QString& key, std::function<void(bool ok)> answer) = 0;

 Q_SIGNALS:
  void stateChanged();
};

} // namespace tockwise
