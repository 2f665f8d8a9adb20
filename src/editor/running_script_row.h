// One script in the window of those that run.
#pragma once

#include "ports/script_host.h"

#include <QLabel>
#include <QPushButton>
#include <QWidget>

namespace tockwise {

/// Main thread.
class RunningScriptRow final : public QWidget {
  Q_OBJECT
 public:
  RunningScriptRow(const RunningScript& script, Date now, QWidget* parent = nullptr);

  /// Tells the times as they are at that moment.
  void refresh(Date now);

 Q_SIGNALS:
  void stopChosen();

 private:
  void stop();

  RunningScript m_script;
  QLabel m_times;
  QPushButton m_stopButton;
  bool m_stopping = false;
};

} // namespace tockwise
