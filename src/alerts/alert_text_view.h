// The text of an alert: read-only, with links, as tall as its contents up to a limit, beyond
// which it scrolls.
#pragma once

#include <QTextBrowser>

namespace tockwise {

/// Main thread.
class AlertTextView final : public QTextBrowser {
  Q_OBJECT
 public:
  explicit AlertTextView(QWidget* parent = nullptr);

  /// Shows text as it is written: no markup is interpreted. Web and mail addresses become links.
  /// A short text is set larger than a long one.
  void setReminderText(const QString& text);

  /// To be called when a rich text was put into document(): links stay only where they may be
  /// opened, addresses in the text become links, and pictures are made to fit.
  void takeRichText();
  /// Shows the text in the colours of that palette, wherever it has none of its own that can be
  /// read there.
  void followColours(const QPalette& look);

  /// Gives the view the size its contents ask for, at most maximumHeight pixels high. Called once
  /// when the contents are complete.
  void fitContents(int maximumHeight);

  QSize sizeHint() const override { return m_fitted; }
  QSize minimumSizeHint() const override;

  /// Scrolls by a page (±1) or to an end (±2).
  void scrollBy(int direction);

 protected:
  QVariant loadResource(int type, const QUrl& name) override;

 private:
  void wrapFor(const QString& text);
  void linkAddresses();

  QSize m_fitted{320, 80};
};

} // namespace tockwise
