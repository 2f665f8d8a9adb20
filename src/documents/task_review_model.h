// The tasks of a document as rows that can be ticked.
#pragma once

#include "store/documents/document_tasks.h"

#include <QAbstractTableModel>

#include <vector>

namespace tockwise {

/// Main thread. Addresses and media files are ticked at first; what would start something on this
/// machine is not.
class TaskReviewModel final : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column { Reminder, Kind, Path, Fires, ColumnCount };

  explicit TaskReviewModel(std::vector<DocumentTask> tasks, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  bool isTicked(int row) const;
  int tickedCount() const { return m_tickedCount; }
  /// The task's path, harmless and to its end.
  QString wholePath(int row) const;
  /// The rows of the document that are not ticked.
  std::vector<qsizetype> untickedRows() const;
  void setTicked(int row, bool ticked);

 Q_SIGNALS:
  void ticksChanged();

 private:
  QString text(int row, int column) const;

  std::vector<DocumentTask> m_tasks;
  std::vector<bool> m_ticked;
  int m_tickedCount = 0;
};

} // namespace tockwise
