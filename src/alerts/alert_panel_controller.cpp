#include "alerts/alert_panel_controller.h"

#include "ui_AlertPanel.h"

namespace tockwise {

AlertPanelController::AlertPanelController(const QString& errorMessage)
    : m_errorMessage(errorMessage), m_ui(std::make_unique<Ui::AlertPanel>()) {
  m_ui->setupUi(this);
}

AlertPanelController::~AlertPanelController() = default;

AlertPanels::AlertPanels(QObject* parent) : QObject(parent) {}

AlertPanels::~AlertPanels() = default;

void AlertPanels::initWithError(const QString&) {}

AlertPanelController* AlertPanels::panel(qsizetype) const {
  return nullptr;
}

} // namespace tockwise
