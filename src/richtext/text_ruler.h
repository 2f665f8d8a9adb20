// The ruler above a text: tab stops and indents of the paragraphs that the cursor is in.
#pragma once

#include <QWidget>

#include <memory>

namespace tockwise {

class QSTextView;

/// Main thread. Markers are dragged with the mouse or moved with the keyboard; a click makes a tab
/// stop, one dragged off the ruler is removed, a double click or the context menu changes its kind.
/// Marks stand in the user's unit of length.
///
/// Keys: up and down choose a marker, left and right move it (with Ctrl by a pixel), Insert adds a
/// tab stop, Delete removes one, Return changes its kind, Escape goes back to the text.
class TextRuler final : public QWidget {
  Q_OBJECT
 public:
  explicit TextRuler(QWidget* parent = nullptr);
  ~TextRuler() override;
  /// The view must outlive the ruler.
  void setView(QSTextView* view);
  QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
