// The window of the scripts that run: how long, how long still, and a button to stop each.
#pragma once

#include "base/clock.h"
#include "ports/script_host.h"

#include <QTimer>
#include <QWidget>

#include <chrono>
#include <map>

class QScrollArea;
class QVBoxLayout;

namespace tockwise {

class RunningScriptRow;

/// Main thread. Opens by itself, without taking the keyboard, when a script has run for some time;
/// goes away when none runs any more. Closed by the user, it stays away until the next script has
/// run as long. Nothing is built before it is first shown.
class RunningScriptsWindow final : public QWidget {
  Q_OBJECT
 public:
  /// Most scripts have ended by then, and nobody wants to see them.
  static constexpr std::chrono::milliseconds kShowAfter{3000};

  /// Host and clock outlive the window.
  RunningScriptsWindow(ScriptHost& scripts, const Clock& clock,
                       std::chrono::milliseconds showAfter = kShowAfter);
  ~RunningScriptsWindow() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void started(const RunningScript& script);
  void finished(quint64 id);
  void appear();
  void build();
  void refresh();
  void addRow(const RunningScript& script);
  void fitHeight();

  ScriptHost& m_scripts;
  const Clock& m_clock;
  std::chrono::milliseconds m_showAfter;
  QTimer m_everySecond; // while it can be seen
  QScrollArea* m_scroll = nullptr;
  QVBoxLayout* m_layout = nullptr;
  std::map<quint64, RunningScriptRow*> m_rows;
};

} // namespace tockwise
