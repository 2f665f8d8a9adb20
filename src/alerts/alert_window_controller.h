// The alert window of a fired reminder: its text, the date it was due, what was sent, and what to
// do about it.
//
// The window does not take the keyboard from the program that has it: it is mapped without
// activation and asks for attention, and where a desktop gives it the keyboard all the same, keys
// do nothing until the keyboard has rested (KeyGuard).
#pragma once

#include "alerts/key_guard.h"
#include "engine/firing.h"

#include <QDialog>
#include <QTextDocument>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace Ui {
class AlertWindow;
}

namespace tockwise {

/// How high an alert floats. Window managers know one level above the ordinary one: both are
/// windows of type dialog in the state "above" (on Wayland, where a window can't ask for it,
/// ordinary dialogs), and AlertWindows keeps those of MainMenu in front of those of ModalPanel.
enum class AlertLevel {
  ModalPanel = 8, // the alert of a fired reminder
  MainMenu = 24   // an alert of a text and a date only
};

/// Puts the archived rich text into the document; false when it can't be read.
using UnarchiveText = std::function<bool(const QByteArray& RTFData, QTextDocument& document)>;

/// Main thread. Tells what the user chose and does nothing about it.
class AlertWindowController final : public QDialog {
  Q_OBJECT
 public:
  /// unarchive may be empty: the plain text is shown then.
  AlertWindowController(AlertRequest request, AlertLevel level, const UnarchiveText& unarchive);
  ~AlertWindowController() override;

  const AlertRequest& request() const { return m_request; }
  AlertLevel level() const { return m_level; }
  /// The states of the two boxes.
  bool emailState() const;
  bool smsState() const;

  /// Lays the window out for its contents, at most as large as that work area.
  void fit(const QRect& workArea);
  /// Maps it for the first time, its frame's top left corner there, without the keyboard.
  void present(QPoint corner);
  /// Brings it to the front without the keyboard.
  void expose();
  /// Maps it again after it was hidden, where it stood, and brings it to the front.
  void bringBack();
  /// Takes it off the screen and remembers where it was.
  void putAway();
  /// Marks it as dismissed and takes it off the screen for good.
  void dismiss();
  bool isDismissed() const { return m_dismissed; }
  bool isGuardingKeys() const { return m_guard->isGuarding(); }

  /// Escape and the window manager's close button: as OK.
  void reject() override;

 Q_SIGNALS:
  void okChosen();
  void remindAgainChosen();
  void deleteChosen();
  void linkChosen(const QUrl& address);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void windowDidLoad(const UnarchiveText& unarchive);
  void showRichText(const UnarchiveText& unarchive);
  void applyLook();

  AlertRequest m_request;
  AlertLevel m_level;
  std::unique_ptr<Ui::AlertWindow> m_ui;
  KeyGuard* m_guard = nullptr;
  std::optional<QPoint> m_corner;
  bool m_dismissed = false;
};

} // namespace tockwise
