// What lies over a window while a document is dragged over it: a frame, and words that say what
// dropping it would do.
#pragma once

#include <QStringList>
#include <QWidget>

class QMimeData;

namespace tockwise {

/// The reminders documents among what is dragged: local files with the documents' suffix or of
/// their MIME type, as absolute paths. Main thread.
QStringList draggedDocuments(const QMimeData& data);

/// Main thread. As large as its parent; it takes no mouse and no drop itself.
class DropFrame final : public QWidget {
  Q_OBJECT
 public:
  explicit DropFrame(QWidget* parent);

  /// Covers the parent as it is now.
  void cover();

 protected:
  void paintEvent(QPaintEvent* event) override;
};

} // namespace tockwise
