// The small pop-up in which the address of a link is written.
#pragma once

#include <QFrame>

class QLabel;
class QLineEdit;
class QPushButton;

namespace tockwise {

/// The address that what was written stands for: with https:// or mailto: where that is missing.
/// Empty when it is no web or mail address.
QString linkAddress(const QString& written);

/// Main thread. Stays open until the address can be taken, or Escape.
class LinkPrompt final : public QFrame {
  Q_OBJECT
 public:
  explicit LinkPrompt(QWidget* parent);
  /// Opens below a place of anchor, with the address that the link has now; empty when there is
  /// none yet.
  void ask(const QWidget& anchor, QRect below, const QString& address);

 Q_SIGNALS:
  void accepted(const QString& address);
  void removed();

 private:
  void take();

  QLineEdit* m_address;
  QLabel* m_problem;
  QPushButton* m_remove;
};

} // namespace tockwise
