// The question before the program ends.
#pragma once

#include "alerts/current_alerts.h"
#include "ports/prompter.h"

#include <functional>

namespace tockwise {

enum class TerminateReply { TerminateNow, Cancel };

/// Main thread.
class QuitQuestion {
 public:
  /// outgoingMailCount gives the number of messages queued or being sent. The references must
  /// outlive the object.
  QuitQuestion(Prompter& prompter, CurrentAlerts& alerts,
               std::function<qint64()> outgoingMailCount);

  /// Asks at most one question: about open alert windows, else about mail that is still being
  /// sent, else none. Its default answer keeps the program running. Runs the event loop while
  /// the question is open; a further request in that time is cancelled without a question.
  TerminateReply applicationShouldTerminate();

 private:
  TerminateReply ask(const QString& message);

  Prompter& m_prompter;
  CurrentAlerts& m_alerts;
  std::function<qint64()> m_outgoingMailCount;
  bool m_asking = false;
};

} // namespace tockwise
