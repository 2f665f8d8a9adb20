// The desktop's clipboard.
#pragma once

#include <QMimeData>

#include <memory>

namespace tockwise {

/// Main thread.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;
  /// Replaces what is on it. contents may make its forms when they are asked for; it lives until
  /// something else takes its place.
  virtual void setContents(std::unique_ptr<QMimeData> contents) = 0;
  /// What is on it now, valid until the event loop runs again; null when there is nothing.
  virtual const QMimeData* contents() const = 0;
};

} // namespace tockwise
