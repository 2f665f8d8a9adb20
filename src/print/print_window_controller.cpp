#include "print/print_window_controller.h"

#include "ui_PrintWindow.h"

namespace tockwise {

PrintWindowController::PrintWindowController(std::unique_ptr<QTextDocument> document)
    : m_document(std::move(document)), m_ui(std::make_unique<Ui::PrintWindow>()) {
  m_ui->setupUi(this);
}

PrintWindowController::~PrintWindowController() = default;

} // namespace tockwise
