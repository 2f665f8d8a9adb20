#include "app/desktop_actions.h"

#include <algorithm>
#include <iterator>

namespace tockwise {
namespace {

struct DesktopAction {
  const char16_t* name;
  const char16_t* operation;
};

constexpr DesktopAction kActions[] = {
    {u"new-reminder", u"newReminder"},
    {u"show-alerts", u"showAllCurrentAlerts"},
    {u"hide-alerts", u"hideAllCurrentAlerts"},
    {u"print-alerts", u"printAllCurrentAlerts"},
    {u"preferences", u"prefs"},
    {u"quit", u"quit"},
};

} // namespace

std::optional<QString> operationOfDesktopAction(QStringView action) {
  const auto* found =
      std::find_if(std::begin(kActions), std::end(kActions), [&](const DesktopAction& candidate) {
        return action == QStringView(candidate.name);
      });
  if (found == std::end(kActions))
    return std::nullopt;
  return QString::fromUtf16(found->operation);
}

void takeActivationToken(const QVariantMap& platformData) {
  const QString token = platformData.value(QStringLiteral("activation-token")).toString();
  // Qt's way of being told, on Wayland; it forgets the token once a window has used it.
  if (!token.isEmpty())
    qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

} // namespace tockwise
