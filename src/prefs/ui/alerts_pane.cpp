#include "prefs/ui/alerts_pane.h"

#include "alerts/alert_sounds.h"
#include "prefs/sound_choice.h"
#include "ui_AlertsPane.h"

#include <QFileInfo>

namespace tockwise {
namespace {

QString randomlyKey() {
  return QStringLiteral("pickSoundRandomly");
}

} // namespace

AlertsPane::AlertsPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent),
      m_player(surroundings.soundPlayer),
      m_sounds(surroundings.sounds),
      m_pathOfSound(surroundings.pathOfSound),
      m_ui(std::make_unique<Ui::AlertsPane>()) {
  m_ui->setupUi(this);
  controls().bind(QStringLiteral("noReminder"), m_ui->noReminderCheckBox,
                  &PreferenceForm::noReminder);
  controls().bindAtOnce(randomlyKey(), m_ui->pickSoundRandomlyBox);
  for (const QString& sound : m_sounds)
    m_ui->reminderSoundPopUp->addItem(sound);
  // One control shows both settings of the sound.
  m_ui->reminderSoundPopUp->setProperty(
      "setting", QStringList{QStringLiteral("selectedSoundFilename"),
                             QStringLiteral("reminderSoundPopUpButtonSelectedIndex")});
  connect(m_ui->reminderSoundPopUp, &QComboBox::activated, this,
          &AlertsPane::reminderSoundPopUpAction);
  connect(m_ui->playSoundButton, &QPushButton::clicked, this,
          [this] { play(m_ui->reminderSoundPopUp->currentText()); });
}

AlertsPane::~AlertsPane() = default;

void AlertsPane::reminderSoundPopUpAction(int index) {
  const QString title = m_ui->reminderSoundPopUp->itemText(index);
  play(title);
  chooseSound(settings(), title, index);
  showState();
  Q_EMIT settingsWritten();
}

// A sound whose file has gone is not heard as another.
void AlertsPane::play(const QString& sound) {
  const QString path = m_pathOfSound(sound);
  if (QFileInfo(path).fileName() == sound && !sound.isEmpty())
    m_player.play(path);
}

void AlertsPane::showState() {
  const QString fallback = QString::fromUtf16(kFallbackSound);
  m_ui->reminderSoundPopUp->setCurrentIndex(int(chosenSound(settings(), m_sounds, fallback)));
  const bool randomly = settings().boolean(randomlyKey());
  m_ui->reminderSoundPopUp->setEnabled(!randomly && !m_sounds.isEmpty());
  m_ui->playSoundButton->setEnabled(!randomly && m_ui->reminderSoundPopUp->currentIndex() >= 0);
  QString note;
  if (m_sounds.isEmpty())
    note = QStringLiteral("The sounds of Tockwise were not found. Install it again.");
  else if (m_ui->reminderSoundPopUp->currentIndex() < 0)
    note = QStringLiteral("“%1” is not among the sounds; alerts play “%2”.")
               .arg(settings().string(QStringLiteral("selectedSoundFilename")), fallback);
  m_ui->soundNote->say(note, TonedLabel::Tone::Warning);
  m_ui->soundNote->setVisible(!note.isEmpty());
}

} // namespace tockwise
