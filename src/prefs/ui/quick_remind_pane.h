// The pane of the preferences window that edits the quick-time menu.
#pragma once

#include "ports/prompter.h"
#include "prefs/quick_remind_menu.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace Ui {
class QuickRemindPane;
}

namespace tockwise {

class QuickRemindModel;

/// Main thread.
class QuickRemindPane final : public QWidget {
  Q_OBJECT
 public:
  /// The references must outlive it.
  QuickRemindPane(Settings& settings, Prompter& prompter, QWidget* parent = nullptr);
  ~QuickRemindPane() override;

  /// Shows the list as it stands in the settings now, the selection on the same row.
  void reloadData();

 Q_SIGNALS:
  /// The list was written.
  void listChanged();

 private:
  void connectAll();
  void addToMenu();
  void deleteItem();
  void moveUp();
  void moveDown();
  void defaultOrder();
  void showNewEntry();
  /// Tells a refusal, or shows the list with that row selected.
  void finish(const std::optional<PreferenceAlert>& refusal, qsizetype row);
  void select(qsizetype row);
  qsizetype selectedRow() const;

  QuickRemindMenu m_menu;
  Prompter& m_prompter;
  std::unique_ptr<Ui::QuickRemindPane> m_ui;
  QuickRemindModel* m_model; // a child
};

} // namespace tockwise
