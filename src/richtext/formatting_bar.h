// The row of buttons above a text: bold, italic, underline, size, colour, link, picture, list and
// the playful restyling.
#pragma once

#include <QWidget>

#include <memory>

namespace tockwise {

class QSTextView;

/// Main thread. Shows and changes the format at the view's cursor.
class FormattingBar final : public QWidget {
  Q_OBJECT
 public:
  explicit FormattingBar(QWidget* parent = nullptr);
  ~FormattingBar() override;
  /// The view must outlive the bar.
  void setView(QSTextView* view);

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
