// The small error panel that reports a failure, and the list of those that are open.
//
// A panel reports what happens behind the user's back: it opens in front and asks for attention,
// and leaves the keyboard to the program that has it.
#pragma once

#include <QDialog>
#include <QObject>

#include <memory>
#include <vector>

namespace Ui {
class AlertPanel;
}

namespace tockwise {

class KeyGuard;

/// Main thread. The text is shown as it is written, never interpreted as markup; it can be
/// selected, and a long one scrolls. Return and Escape close the panel.
class AlertPanelController final : public QDialog {
  Q_OBJECT
 public:
  explicit AlertPanelController(const QString& errorMessage);
  ~AlertPanelController() override;

  const QString& errorMessage() const { return m_errorMessage; }
  /// Lays the panel out for its text, at most as large as that work area.
  void fit(const QRect& workArea);
  /// Maps it, its frame's top left corner there.
  void present(QPoint corner);
  bool isGuardingKeys() const;

 Q_SIGNALS:
  /// By its button, a key, or the window manager; the panel is off the screen.
  void closed();

 protected:
  bool event(QEvent* event) override;

 private:
  void windowDidLoad();
  void applyLook();

  QString m_errorMessage;
  std::unique_ptr<Ui::AlertPanel> m_ui;
  KeyGuard* m_guard = nullptr;
};

/// The open error panels, in the order in which they were opened. Main thread.
class AlertPanels final : public QObject {
  Q_OBJECT
 public:
  explicit AlertPanels(QObject* parent = nullptr);
  ~AlertPanels() override;

  /// Opens a panel that shows the text, in front of all others.
  void initWithError(const QString& text);
  qsizetype count() const { return qsizetype(m_alertPanelWindows.size()); }
  /// Null when there is none at that position.
  AlertPanelController* panel(qsizetype position) const;

 private:
  void place(AlertPanelController& panel) const;
  void remove(const AlertPanelController* panel);

  /// A panel closes from within its own button's signal, so it is deleted later.
  struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
  };
  std::vector<std::unique_ptr<AlertPanelController, DeleteLater>> m_alertPanelWindows;
};

} // namespace tockwise
