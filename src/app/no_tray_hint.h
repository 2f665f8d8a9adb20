// On a desktop without a tray the program would start and nothing would be seen: the first time,
// its menu opens in a window and the user is told how to get at it again.
#pragma once

#include "menu/ui/tray_controller.h"
#include "ports/prompter.h"
#include "store/settings.h"

#include <QObject>

#include <chrono>

namespace tockwise {

/// Main thread. The references must outlive it.
class NoTrayHint final : public QObject {
  Q_OBJECT
 public:
  /// Panels often come up later than the programs of a session.
  static constexpr std::chrono::seconds kGrace{5};

  NoTrayHint(TrayController& tray, Settings& settings, Prompter& prompter,
             QObject* parent = nullptr);

  /// Looks once, after the grace period; gives the hint once in the life of a store.
  void start();

 private:
  void look();

  TrayController& m_tray;
  Settings& m_settings;
  Prompter& m_prompter;
};

} // namespace tockwise
