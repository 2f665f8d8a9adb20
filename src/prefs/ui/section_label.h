// The heading of a part of a pane.
#pragma once

#include <QLabel>

namespace tockwise {

/// Main thread. Bold, in the desktop's font at whatever size it has.
class SectionLabel final : public QLabel {
  Q_OBJECT
 public:
  explicit SectionLabel(QWidget* parent = nullptr);
};

/// Lines of label begin on the side on which the window's do, whatever the script of its text. Main
/// thread.
void alignWithWindow(QLabel& label);

} // namespace tockwise
