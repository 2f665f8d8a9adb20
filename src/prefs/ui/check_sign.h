// The sign beside a line that is well, or not.
#pragma once

#include <QWidget>

namespace tockwise {

/// Main thread. As large as the letters beside it; told apart by its shape as well as its colour.
class CheckSign final : public QWidget {
  Q_OBJECT
 public:
  explicit CheckSign(bool ok, QWidget* parent = nullptr);
  bool isOk() const { return m_ok; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool m_ok;
};

} // namespace tockwise
