#include "prefs/ui/section_label.h"

namespace tockwise {

SectionLabel::SectionLabel(QWidget* parent) : QLabel(parent) {
  QFont bold;
  bold.setBold(true); // the rest is left to the desktop's font, also when that changes
  setFont(bold);
  setTextFormat(Qt::PlainText);
}

void alignWithWindow(QLabel& label) {
  const bool fromRight = label.layoutDirection() == Qt::RightToLeft;
  label.setAlignment((fromRight ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute |
                     Qt::AlignTop);
}

} // namespace tockwise
