// The pop-up of quick times: a caption, and durations to choose from.
#pragma once

#include <QComboBox>

namespace tockwise {

/// Main thread. Shows its caption again after each choice. Nothing is chosen by turning the wheel
/// or by pressing an arrow key beside the open list: keys open it first.
class QuickTimePop final : public QComboBox {
  Q_OBJECT
 public:
  explicit QuickTimePop(QWidget* parent = nullptr);

  /// The first item and what follows it, in that order.
  void setItems(const QString& caption, const QStringList& titles);

 Q_SIGNALS:
  /// One of the titles was chosen.
  void chosen(const QString& title);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

} // namespace tockwise
