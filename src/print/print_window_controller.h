// The print preview: the document as it will be printed, with "Print" and "Cancel".
#pragma once

#include "print/print_operation.h"
#include "print/print_pages.h"
#include "print/print_settings.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

namespace Ui {
class PrintWindow;
}

namespace tockwise {

class PrintWindowController;

/// What a preview needs of the program. The references must outlive it.
struct PrintSurroundings {
  PrintSettings& settings;
  Prompter& prompter;
  PrintPanels panels;
  /// The window is about to be shown; it goes away with the modal run.
  std::function<void(QDialog& window)> willShow;
  /// Takes the controller off the list of previews.
  std::function<void(const PrintWindowController* controller)> remove;
};

/// Main thread. The window and the document live as long as the preview is open; what is left of
/// it is small.
class PrintWindowController final : public QObject {
  Q_OBJECT
 public:
  /// Shows the document, modal for the whole program, and returns when the preview is closed. The
  /// pages are made while it is open, so that it opens at once.
  PrintWindowController(PrintContents contents, PrintSurroundings surroundings);
  ~PrintWindowController() override;

  bool didCancel() const { return m_didCancel; }

 private:
  void buildWindow();
  void place();
  void goOn();
  void showPage();
  void print();
  void cancel();

  PrintSurroundings m_surroundings;
  bool m_didCancel = false;
  // While the preview is open:
  std::unique_ptr<PrintPages> m_pages;
  std::unique_ptr<QDialog> m_window;
  std::unique_ptr<Ui::PrintWindow> m_ui;
  QTimer m_slice;
  QElapsedTimer m_opened;
};

} // namespace tockwise
