// How a session, a terminal or a service manager asks a program to end.
#pragma once

#include <QObject>

#include <memory>

namespace tockwise {

/// While it lives, SIGTERM, SIGINT and SIGHUP end nothing by themselves: received() is emitted from
/// the event loop instead, so that the program can end in order. So it is for the session
/// manager's request, for which Qt would close every window first, as if the user had answered
/// what is in them. One at a time; main thread. Where it cannot be set up the signals stay as they
/// were.
class TerminationSignals final : public QObject {
  Q_OBJECT
 public:
  TerminationSignals();
  /// Gives the signals back what they did before.
  ~TerminationSignals() override;

 Q_SIGNALS:
  void received();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
