// The small error panel that reports a failure, and the list of those that are open.
#pragma once

#include <QDialog>
#include <QObject>

#include <memory>
#include <vector>

namespace Ui {
class AlertPanel;
}

namespace tockwise {

/// Main thread.
class AlertPanelController final : public QDialog {
  Q_OBJECT
 public:
  explicit AlertPanelController(const QString& errorMessage);
  ~AlertPanelController() override;

  const QString& errorMessage() const { return m_errorMessage; }

 Q_SIGNALS:
  void closed();

 private:
  QString m_errorMessage;
  std::unique_ptr<Ui::AlertPanel> m_ui;
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
  AlertPanelController* panel(qsizetype position) const;

 private:
  std::vector<std::unique_ptr<AlertPanelController>> m_alertPanelWindows;
};

} // namespace tockwise
