// The beat that paces outgoing mail: at most one message leaves per beat.
#pragma once

#include "store/settings.h"

#include <QObject>
#include <QTimer>

#include <chrono>

namespace tockwise {

/// Main thread.
class MailBeat final : public QObject {
  Q_OBJECT
 public:
  /// settings must outlive it.
  explicit MailBeat(const Settings& settings, QObject* parent = nullptr);

  /// Starts beating with the period of rateIndex, when it does not beat yet.
  void start();
  /// Beats with the period of rateIndex from now on when it differs from the running one; logs the
  /// period.
  void beatChanged();
  /// (rateIndex + 1) x 10 seconds; 10 seconds where rateIndex is absent or negative.
  std::chrono::seconds period() const;

  /// Whether a message may leave. Set by the beat.
  bool mailBeatFlag() const { return m_mailBeatFlag; }
  void clearMailBeatFlag() { m_mailBeatFlag = false; }

 Q_SIGNALS:
  void beat();

 private:
  void beatAction();

  const Settings& m_settings;
  QTimer m_timer;
  bool m_mailBeatFlag = false;
};

} // namespace tockwise
