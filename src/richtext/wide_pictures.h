// Scales the pictures of what was edited, after the edit and as part of it.
#pragma once

#include <QObject>

class QTextEdit;

namespace tockwise {

/// Main thread. Looks at the edited range only, so that a key costs the same in a long text.
class WidePictures final : public QObject {
 public:
  /// view outlives the object.
  explicit WidePictures(QTextEdit& view);

  /// While it is off, edits go by unseen: the whole text is being replaced.
  void setWatching(bool watching) { m_isWatching = watching; }

 private:
  void note(int position, int removed, int added);
  void scaleEdited();

  QTextEdit& m_view;
  bool m_isWatching = true;
  int m_from = 0; // the range that was edited since; none while m_to is not beyond it
  int m_to = 0;
  bool m_isAsked = false;
};

} // namespace tockwise
