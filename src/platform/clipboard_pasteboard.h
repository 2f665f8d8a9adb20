// The clipboard of X11 and Wayland, through Qt.
#pragma once

#include "ports/pasteboard.h"

namespace tockwise {

/// Main thread, of a program with windows.
class ClipboardPasteboard final : public Pasteboard {
 public:
  void setContents(std::unique_ptr<QMimeData> contents) override;
  const QMimeData* contents() const override;
};

} // namespace tockwise
