#include "documents/task_review_window.h"

#include "documents/task_review_model.h"
#include "documents/tick_delegate.h"
#include "ui_TaskReviewWindow.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>

namespace tockwise {
namespace {

constexpr int kMostOfName = 48; // times the width of an "x": of the document's name in the heading

} // namespace

TaskReviewWindow::TaskReviewWindow(const QString& fileName, std::vector<DocumentTask> tasks,
                                   QWidget* parent)
    : QDialog(parent),
      m_model(new TaskReviewModel(std::move(tasks), this)),
      m_ui(std::make_unique<Ui::TaskReviewWindow>()) {
  m_ui->setupUi(this);
  setWindowModality(parent ? Qt::WindowModal : Qt::NonModal);
  QFont bold = m_ui->headingLabel->font();
  bold.setBold(true);
  m_ui->headingLabel->setFont(bold);
  const QFontMetrics metrics(bold);
  const QString name =
      metrics.elidedText(fileName, Qt::ElideMiddle, kMostOfName * metrics.horizontalAdvance(u'x'));
  m_ui->headingLabel->setText(
      QStringLiteral("The reminders in \"%1\" would open or run something when they fire.")
          .arg(name));
  m_ui->pathView->setFixedHeight(4 * m_ui->pathView->fontMetrics().lineSpacing() +
                                 2 * int(m_ui->pathView->document()->documentMargin()));
  prepareTable();
  connect(m_ui->keepButton, &QPushButton::clicked, this, &QDialog::accept);
  connect(m_ui->blankButton, &QPushButton::clicked, this, &TaskReviewWindow::blankAll);
  connect(m_ui->cancelButton, &QPushButton::clicked, this, &QDialog::reject);
  connect(m_model, &TaskReviewModel::ticksChanged, this, &TaskReviewWindow::showCount);
  showCount();
  m_ui->taskTable->setFocus();
}

TaskReviewWindow::~TaskReviewWindow() = default;

void TaskReviewWindow::prepareTable() {
  QTableView& table = *m_ui->taskTable;
  table.setModel(m_model);
  table.setItemDelegate(new TickDelegate(&table));
  table.installEventFilter(this);
  table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().lineSpacing() * 3 / 2);
  connect(table.selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          &TaskReviewWindow::showPath);
  table.setCurrentIndex(m_model->index(0, 0));
  fitColumns();
}

void TaskReviewWindow::fitColumns() {
  QHeaderView& header = *m_ui->taskTable->horizontalHeader();
  const int character = fontMetrics().averageCharWidth();
  header.setResizeContentsPrecision(60); // rows that are measured; there may be a thousand
  header.setMinimumSectionSize(8 * character);
  header.setSectionResizeMode(TaskReviewModel::Path, QHeaderView::Stretch);
  for (const int column : {int(TaskReviewModel::Kind), int(TaskReviewModel::Fires)})
    m_ui->taskTable->resizeColumnToContents(column);
  header.resizeSection(TaskReviewModel::Reminder, 32 * character);
  const QSize wanted(140 * character, 34 * fontMetrics().lineSpacing());
  resize(screen() ? wanted.boundedTo(screen()->availableSize() * 9 / 10) : wanted);
}

void TaskReviewWindow::bringToFront() {
  show();
  raise();
  activateWindow();
}

std::vector<qsizetype> TaskReviewWindow::blankedRows() const {
  return m_model->untickedRows();
}

void TaskReviewWindow::blankAll() {
  for (int row = 0; row < m_model->rowCount(); ++row)
    m_model->setTicked(row, false);
  accept();
}

bool TaskReviewWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_ui->taskTable && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
    if (!static_cast<QKeyEvent*>(event)->isAutoRepeat())
      flipSelected();
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

void TaskReviewWindow::flipSelected() {
  const bool ticked = !m_model->isTicked(m_ui->taskTable->currentIndex().row());
  const QModelIndexList selected = m_ui->taskTable->selectionModel()->selectedRows();
  for (const QModelIndex& index : selected)
    m_model->setTicked(index.row(), ticked);
}

void TaskReviewWindow::showPath() {
  m_ui->pathView->setPlainText(m_model->wholePath(m_ui->taskTable->currentIndex().row()));
}

void TaskReviewWindow::showCount() {
  m_ui->countLabel->setText(
      QStringLiteral("%1 of %2 ticked").arg(m_model->tickedCount()).arg(m_model->rowCount()));
}

} // namespace tockwise
