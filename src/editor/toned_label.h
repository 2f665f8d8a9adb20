// A line of plain text that says something beside the controls: quietly, plainly, or as a warning.
#pragma once

#include <QLabel>

namespace tockwise {

/// Main thread. Follows the theme. A line that does not fit is cut with "…" and can be read in its
/// tool tip; one that wraps grows instead.
class TonedLabel final : public QLabel {
  Q_OBJECT
 public:
  enum class Tone { Quiet, Plain, Warning };
  explicit TonedLabel(QWidget* parent = nullptr);

  void say(const QString& text, Tone tone);
  Tone tone() const { return m_tone; }

  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor color() const;
  Tone m_tone = Tone::Quiet;
};

} // namespace tockwise
