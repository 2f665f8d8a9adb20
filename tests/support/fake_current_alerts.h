// Alert windows that only remember what was done with them.
#pragma once

#include "alerts/current_alerts.h"

#include <QStringList>

namespace tockwise {

class FakeCurrentAlerts final : public CurrentAlerts {
 public:
  qsizetype open = 0;
  QStringList calls; // "hide 1", "show 1"

  qsizetype count() const override { return open; }
  void hideForQuestion(int question) override { calls += QStringLiteral("hide %1").arg(question); }
  void showAfterQuestion(int question) override {
    calls += QStringLiteral("show %1").arg(question);
  }
};

} // namespace tockwise
