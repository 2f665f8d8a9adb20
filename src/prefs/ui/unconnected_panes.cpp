#include "prefs/ui/unconnected_panes.h"

#include "ui_CalendarPane.h"
#include "ui_CloudPane.h"

#include <QHeaderView>

namespace tockwise {
namespace {

void disable(std::initializer_list<QWidget*> parts, const QString& reason) {
  for (QWidget* part : parts) {
    part->setEnabled(false);
    part->setToolTip(reason);
    part->setAccessibleDescription(reason);
  }
}

} // namespace

CalendarPane::CalendarPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent), m_ui(std::make_unique<Ui::CalendarPane>()) {
  m_ui->setupUi(this);
  m_ui->eventsTable->setColumnCount(2);
  m_ui->eventsTable->setHorizontalHeaderLabels({QStringLiteral("Event"), QStringLiteral("Date")});
  m_ui->eventsTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  m_ui->eventsTable->verticalHeader()->hide();
  controls().bindAtOnce(QStringLiteral("importEventsFromCalendar"),
                        m_ui->importEventsFromCalendarBox);
  disable({m_ui->eventsTable, m_ui->importCalendarButton}, m_ui->calendarReason->text());
}

CalendarPane::~CalendarPane() = default;

CloudPane::CloudPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent), m_ui(std::make_unique<Ui::CloudPane>()) {
  m_ui->setupUi(this);
  disable({m_ui->useiCloudBox, m_ui->cloudServerLabel, m_ui->cloudServerField, m_ui->cloudUserLabel,
           m_ui->cloudUserField, m_ui->cloudPasswordLabel, m_ui->cloudPasswordField},
          m_ui->cloudReason->text());
}

CloudPane::~CloudPane() = default;

} // namespace tockwise
