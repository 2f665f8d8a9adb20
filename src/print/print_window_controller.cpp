#include "print/print_window_controller.h"

#include "ui_PrintWindow.h"

#include <QScreen>

namespace tockwise {
namespace {

using namespace std::chrono_literals;

constexpr auto kPreviewSlice = 15ms; // of work on the pages between two looks at the keyboard
constexpr qint64 kPatience = 250;    // milliseconds before the progress is shown
constexpr double kPartOfScreen = 0.9;

} // namespace

PrintWindowController::PrintWindowController(PrintContents contents, PrintSurroundings surroundings)
    : m_surroundings(std::move(surroundings)),
      m_pages(std::make_unique<PrintPages>(std::move(contents), m_surroundings.settings.paper())),
      m_window(std::make_unique<QDialog>()),
      m_ui(std::make_unique<Ui::PrintWindow>()) {
  buildWindow();
  m_opened.start();
  m_slice.start();
  m_window->exec(); // modal for the whole program
  m_slice.stop();
  m_window->hide(); // the program is ending when it is still there
  m_window.reset();
  m_ui.reset();
  m_pages.reset();
  giveMemoryBack();
}

PrintWindowController::~PrintWindowController() = default;

void PrintWindowController::buildWindow() {
  m_ui->setupUi(m_window.get());
  m_ui->progressBar->hide();
  m_ui->printButton->setEnabled(false);
  m_ui->textView->setPages(m_pages.get());
  m_ui->textView->setFocus();
  m_slice.callOnTimeout(this, &PrintWindowController::goOn);
  connect(m_ui->textView, &PrintTextView::currentPageChanged, this,
          &PrintWindowController::showPage);
  connect(m_ui->printButton, &QPushButton::clicked, this, &PrintWindowController::print);
  connect(m_ui->cancelButton, &QPushButton::clicked, m_window.get(), &QDialog::reject);
  connect(m_window.get(), &QDialog::rejected, this, &PrintWindowController::cancel);
  place();
  m_surroundings.willShow(*m_window);
  // Whatever has the keyboard: the user has just asked for this window.
  QTimer::singleShot(0, m_window.get(), [window = m_window.get()] {
    window->raise();
    window->activateWindow();
  });
}

void PrintWindowController::place() {
  const QSize most = m_window->screen()->availableSize() * kPartOfScreen;
  m_window->resize(m_window->sizeHint().boundedTo(most));
}

/// Works on the pages for a moment.
void PrintWindowController::goOn() {
  const bool isComplete = m_pages->advance(kPreviewSlice);
  m_ui->progressBar->setValue(int(m_pages->progress() * m_ui->progressBar->maximum()));
  m_ui->progressBar->setVisible(!isComplete && m_opened.elapsed() > kPatience);
  if (!isComplete)
    return;
  m_slice.stop();
  m_ui->textView->setPages(m_pages.get());
  m_ui->printButton->setEnabled(true);
}

void PrintWindowController::showPage() {
  const int count = m_ui->textView->pageCount();
  if (count == 0)
    return m_ui->pageLabel->clear();
  QString text = QStringLiteral("Page %1 of %2").arg(m_ui->textView->currentPage() + 1).arg(count);
  if (m_pages->isCut())
    text += QStringLiteral(" (too long: the rest is left out)");
  m_ui->pageLabel->setText(text);
}

void PrintWindowController::print() {
  m_ui->textView->print(m_surroundings.settings, m_surroundings.prompter, m_surroundings.panels);
  m_window->accept(); // closes it and ends the modal run
  m_surroundings.remove(this);
}

/// "Cancel", Escape, or the window's own button: it is closed, and the modal run ends.
void PrintWindowController::cancel() {
  m_didCancel = true;
  m_surroundings.remove(this);
}

} // namespace tockwise
