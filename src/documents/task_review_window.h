// What the reminders of a document would run: the user keeps or blanks each before it is opened.
#pragma once

#include "store/documents/document_tasks.h"

#include <QDialog>

#include <memory>
#include <vector>

namespace Ui {
class TaskReviewWindow;
}

namespace tockwise {

/// Main thread.
class TaskReviewWindow final : public QDialog {
  Q_OBJECT
 public:
  /// fileName: the document's, for the heading.
  TaskReviewWindow(const QString& fileName, std::vector<DocumentTask> tasks,
                   QWidget* parent = nullptr);
  ~TaskReviewWindow() override;

  /// The rows whose task is to be blanked, once it was accepted.
  std::vector<qsizetype> blankedRows() const;

 private:
  std::vector<DocumentTask> m_tasks;
  std::unique_ptr<Ui::TaskReviewWindow> m_ui;
};

} // namespace tockwise
