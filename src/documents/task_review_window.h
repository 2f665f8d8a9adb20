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

class TaskReviewModel;

/// Main thread. accepted() when the document is to be opened, rejected() when it is not. Blocks its
/// parent alone.
class TaskReviewWindow final : public QDialog {
  Q_OBJECT
 public:
  /// fileName: the document's, for the heading.
  TaskReviewWindow(const QString& fileName, std::vector<DocumentTask> tasks,
                   QWidget* parent = nullptr);
  ~TaskReviewWindow() override;

  void bringToFront();
  /// The rows whose task is to be blanked, once it was accepted.
  std::vector<qsizetype> blankedRows() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void prepareTable();
  void fitColumns();
  void showPath();
  void showCount();
  void flipSelected();
  void blankAll();

  TaskReviewModel* m_model;
  std::unique_ptr<Ui::TaskReviewWindow> m_ui;
};

} // namespace tockwise
