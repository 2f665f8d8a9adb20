#include "prefs/ui/editor_pane.h"

#include "editor/date_picker.h"
#include "store/reminder.h"
#include "ui_EditorPane.h"

#include <QDir>
#include <QFileInfo>

#include <cmath>

namespace tockwise {
namespace {

constexpr double kHour = 3600; // seconds

} // namespace

EditorPane::EditorPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent),
      m_clock(surroundings.clock),
      m_ui(std::make_unique<Ui::EditorPane>()) {
  m_ui->setupUi(this);
  m_ui->samplePicker->setClock(m_clock);
  controls().bind(QStringLiteral("datepicker"), m_ui->datePicker, &PreferenceForm::datepicker);
  controls().bindAtOnce(QStringLiteral("showRuler"), m_ui->showRulerBox);
  controls().bindAtOnce(QStringLiteral("showUndoChangesAlert"), m_ui->undoChangesBox,
                        SettingControls::Absent::CountsAsYes);
  controls().bind(QStringLiteral("useDefaultTask"), m_ui->useDefaultTaskBox,
                  &PreferenceForm::useDefaultTask);
  controls().bind(QStringLiteral("defaultTask"), m_ui->taskMenuPopup, &PreferenceForm::defaultTask);
  controls().bind(QStringLiteral("defaultTaskPath"), m_ui->taskPathField,
                  &PreferenceForm::defaultTaskPath);
  connect(m_ui->browseButton, &QPushButton::clicked, this, &EditorPane::browseRequested);
}

EditorPane::~EditorPane() = default;

QString EditorPane::folderToBrowse() const {
  const QFileInfo present(m_ui->taskPathField->text());
  if (present.isAbsolute() && present.absoluteDir().exists())
    return present.absolutePath();
  const bool isApplication = m_ui->taskMenuPopup->currentIndex() == Task::Application;
  return isApplication ? QStringLiteral("/usr/share/applications") : QDir::homePath();
}

void EditorPane::setTaskPath(const QString& path) {
  m_ui->taskPathField->setText(path);
  m_ui->taskPathField->setFocus();
}

void EditorPane::showState() {
  changePicker();
  showTask();
}

void EditorPane::changePicker() {
  DatePicker& sample = *m_ui->samplePicker;
  sample.setStyle(m_ui->datePicker->isChecked() ? DatePicker::Style::Graphical
                                                : DatePicker::Style::Compact);
  const double hours = std::floor(m_clock.now().seconds / kHour);
  if (!isEdited())
    sample.setDate({(hours + 1) * kHour});
}

void EditorPane::showTask() {
  const bool used = m_ui->useDefaultTaskBox->isChecked();
  const bool isAddress = m_ui->taskMenuPopup->currentIndex() == Task::WebAddress;
  for (QWidget* part :
       {static_cast<QWidget*>(m_ui->taskLabel), static_cast<QWidget*>(m_ui->taskMenuPopup),
        static_cast<QWidget*>(m_ui->taskPathLabel), static_cast<QWidget*>(m_ui->taskPathField)})
    part->setEnabled(used);
  m_ui->browseButton->setEnabled(used && !isAddress);
  m_ui->taskPathLabel->setText(isAddress ? QStringLiteral("A&ddress") : QStringLiteral("&Path"));
  m_ui->taskPathField->setPlaceholderText(isAddress ? QStringLiteral("www.example.org")
                                                    : QString());
}

} // namespace tockwise
