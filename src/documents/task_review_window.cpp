#include "documents/task_review_window.h"

#include "ui_TaskReviewWindow.h"

namespace tockwise {

TaskReviewWindow::TaskReviewWindow(const QString&, std::vector<DocumentTask> tasks, QWidget* parent)
    : QDialog(parent), m_tasks(std::move(tasks)), m_ui(std::make_unique<Ui::TaskReviewWindow>()) {
  m_ui->setupUi(this);
}

TaskReviewWindow::~TaskReviewWindow() = default;

std::vector<qsizetype> TaskReviewWindow::blankedRows() const {
  return {};
}

} // namespace tockwise
