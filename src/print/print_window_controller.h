// The print preview: the document as it will be printed, with "Print" and "Cancel".
#pragma once

#include <QDialog>
#include <QTextDocument>

#include <memory>

namespace Ui {
class PrintWindow;
}

namespace tockwise {

/// Main thread.
class PrintWindowController final : public QDialog {
  Q_OBJECT
 public:
  /// Shows the document, modal for the whole program, and returns when it is closed.
  explicit PrintWindowController(std::unique_ptr<QTextDocument> document);
  ~PrintWindowController() override;

  bool didCancel() const { return m_didCancel; }

 private:
  std::unique_ptr<QTextDocument> m_document;
  std::unique_ptr<Ui::PrintWindow> m_ui;
  bool m_didCancel = false;
};

} // namespace tockwise
