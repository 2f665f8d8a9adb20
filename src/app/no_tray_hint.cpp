#include "app/no_tray_hint.h"

#include <QTimer>

namespace tockwise {
namespace {
const QString kTold = QStringLiteral("toldOfMissingTray");
}

NoTrayHint::NoTrayHint(TrayController& tray, Settings& settings, Prompter& prompter,
                       QObject* parent)
    : QObject(parent), m_tray(tray), m_settings(settings), m_prompter(prompter) {}

void NoTrayHint::start() {
  if (!m_settings.boolean(kTold))
    QTimer::singleShot(kGrace, this, &NoTrayHint::look);
}

void NoTrayHint::look() {
  if (m_tray.hasTray())
    return;
  m_settings.setValue(kTold, Value(true));
  m_settings.synchronize();
  m_tray.showMenuWindow();
  m_prompter.tell(QStringLiteral("There is no tray on this desktop"),
                  QStringLiteral("Tockwise's menu opens in a window of its own instead. To see it "
                                 "again, start Tockwise once more or choose it in your launcher. "
                                 "Reminders alert you as everywhere."));
}

} // namespace tockwise
