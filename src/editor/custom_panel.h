// The panel of the reminder window: keys that no control of it wants move the reminder's date.
#pragma once

#include <QDialog>

#include <initializer_list>

class QAbstractButton;

namespace tockwise {

class DatePicker;

/// Main thread. An ordinary window, neither modal nor on top: alerts open in front of it.
class CustomPanel final : public QDialog {
  Q_OBJECT
 public:
  explicit CustomPanel(QWidget* parent = nullptr);

  /// What the arrow keys step. The picker must outlive the panel or be a child of it.
  void setReminderDate(DatePicker* picker) { m_reminderDate = picker; }
  /// Buttons have no use for arrow keys; they pass them on to the panel.
  void takeArrowKeysFrom(std::initializer_list<QAbstractButton*> buttons);

  /// Escape, or the window was asked to close. It stays open: whoever listens decides.
  void reject() override;

 Q_SIGNALS:
  void closeRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  DatePicker* m_reminderDate = nullptr;
};

} // namespace tockwise
