// A thin line between the parts of a window, quiet in light and dark themes alike: the style's own
// is drawn in colours that a dark palette may leave white.
#pragma once

#include <QFrame>

namespace tockwise {

/// Main thread. Across or upright as its frame shape (QFrame::HLine, QFrame::VLine) says.
class HairLine final : public QFrame {
  Q_OBJECT
 public:
  explicit HairLine(QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QColor color() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

} // namespace tockwise
