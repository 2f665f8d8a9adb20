// The ruler above a text: tab stops and indents of the paragraphs that the cursor is in.
#pragma once

#include <QWidget>

#include <memory>

namespace tockwise {

class QSTextView;

/// Main thread. Markers are dragged with the mouse or moved with the keyboard; a click makes a tab
/// stop, one dragged off the ruler is removed. Marks stand in the user's unit of length.
class TextRuler final : public QWidget {
  Q_OBJECT
 public:
  explicit TextRuler(QWidget* parent = nullptr);
  ~TextRuler() override;
  /// The view must outlive the ruler.
  void setView(QSTextView* view);
  QSize sizeHint() const override;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
