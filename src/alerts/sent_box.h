// A check box that tells and does not ask: ticked when something was sent.
#pragma once

#include <QCheckBox>

namespace tockwise {

/// Painted as a small badge. It can have the keyboard, so that a screen reader reaches it, and
/// never changes by the user's hand. Main thread.
class SentBox final : public QCheckBox {
  Q_OBJECT
  Q_PROPERTY(QString unsentText READ unsentText WRITE setUnsentText)
 public:
  explicit SentBox(QWidget* parent = nullptr);

  /// What is shown in place of text() while the box is not ticked.
  QString unsentText() const { return m_unsentText; }
  void setUnsentText(const QString& text) { m_unsentText = text; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool hitButton(const QPoint& position) const override;
  void nextCheckState() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString shownText() const { return isChecked() ? text() : m_unsentText; }
  QFont badgeFont() const;

  QString m_unsentText;
};

} // namespace tockwise
