#include "prefs/ui/quick_remind_pane.h"

#include "ui_QuickRemindPane.h"

namespace tockwise {

QuickRemindPane::QuickRemindPane(Settings& settings, Prompter& prompter, QWidget* parent)
    : QWidget(parent),
      m_menu(settings),
      m_prompter(prompter),
      m_ui(std::make_unique<Ui::QuickRemindPane>()) {
  m_ui->setupUi(this);
}

QuickRemindPane::~QuickRemindPane() = default;

void QuickRemindPane::reloadData() {}

} // namespace tockwise
