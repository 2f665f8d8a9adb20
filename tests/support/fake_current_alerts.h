// Alert windows that only remember what was done with them.
#pragma once

#include "alerts/current_alerts.h"

#include <QStringList>

namespace tockwise {

class FakeCurrentAlerts final : public CurrentAlerts {
 public:
  qsizetype open = 0;
  QStringList calls; // "hide", "show"

  qsizetype count() const override { return open; }
  void hideAllCurrentAlerts() override { calls += QStringLiteral("hide"); }
  void showAllCurrentAlerts() override { calls += QStringLiteral("show"); }
};

} // namespace tockwise
