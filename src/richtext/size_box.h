// The box of the formatting bar in which the size of the text is chosen or written.
#pragma once

#include <QComboBox>

namespace tockwise {

/// Main thread. Sizes in points, from 1 to 400.
class SizeBox final : public QComboBox {
  Q_OBJECT
 public:
  explicit SizeBox(QWidget* parent);
  /// Shows a size without choosing it; 0 for none.
  void show(double points);

 Q_SIGNALS:
  void sizeChosen(double points);
  /// Escape was pressed: the keyboard goes back to the text.
  void left();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void choose();

  double m_shown = 0;
};

} // namespace tockwise
