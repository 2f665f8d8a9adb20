// The pane of the mail server and of the pace of sending.
#pragma once

#include "prefs/ui/preference_pane.h"
#include "prefs/ui/preference_surroundings.h"

#include <memory>

class QButtonGroup;

namespace Ui {
class MailServerPane;
}

namespace tockwise {

/// Main thread.
class MailServerPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit MailServerPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~MailServerPane() override;

  /// What the port field shows after saving.
  void setServerPort(const QString& port);

 private:
  void showState() override;
  void bindRate();
  void showServer();
  void showRate();

  MailBeat& m_mailBeat;
  std::function<QString()> m_passwordHint;
  std::unique_ptr<Ui::MailServerPane> m_ui;
  QButtonGroup* m_rates = nullptr; // a child
};

} // namespace tockwise
