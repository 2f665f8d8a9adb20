#include "prefs/ui/alerts_pane.h"

#include "alerts/alert_sounds.h"
#include "ui_AlertsPane.h"

#include <QFileInfo>

namespace tockwise {
namespace {

QString fileNameKey() {
  return QStringLiteral("selectedSoundFilename");
}

QString indexKey() {
  return QStringLiteral("reminderSoundPopUpButtonSelectedIndex");
}

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
  m_ui->reminderSoundPopUp->setProperty("setting", QStringList{fileNameKey(), indexKey()});
  connect(m_ui->reminderSoundPopUp, &QComboBox::activated, this,
          &AlertsPane::reminderSoundPopUpAction);
  connect(m_ui->playSoundButton, &QPushButton::clicked, this,
          [this] { play(m_ui->reminderSoundPopUp->currentText()); });
}

AlertsPane::~AlertsPane() = default;

void AlertsPane::reminderSoundPopUpAction(int index) {
  const QString title = m_ui->reminderSoundPopUp->itemText(index);
  play(title);
  settings().setValue(fileNameKey(), title);
  settings().setValue(indexKey(), qint64(index));
  settings().synchronize();
  showState();
  Q_EMIT settingsWritten();
}

// A sound whose file has gone is not heard as another.
void AlertsPane::play(const QString& sound) {
  const QString path = m_pathOfSound(sound);
  if (QFileInfo(path).fileName() == sound && !sound.isEmpty())
    m_player.play(path);
}

// The stored index counts as long as it leads to the stored name, which is what alerts go by.
qsizetype AlertsPane::selectedSound() const {
  const bool named = settings().isSet(fileNameKey());
  if (settings().isSet(indexKey())) {
    const qint64 index = settings().integer(indexKey());
    const bool inList = index >= 0 && index < m_sounds.size();
    if (inList && (!named || m_sounds[index] == settings().string(fileNameKey())))
      return index;
  }
  return m_sounds.indexOf(named ? settings().string(fileNameKey())
                                : QString::fromUtf16(kFallbackSound));
}

void AlertsPane::showState() {
  m_ui->reminderSoundPopUp->setCurrentIndex(int(selectedSound()));
  const bool randomly = settings().boolean(randomlyKey());
  m_ui->reminderSoundPopUp->setEnabled(!randomly && !m_sounds.isEmpty());
  m_ui->playSoundButton->setEnabled(!randomly && m_ui->reminderSoundPopUp->currentIndex() >= 0);
  QString note;
  if (m_sounds.isEmpty())
    note = QStringLiteral("The sounds of Tockwise were not found. Install it again.");
  else if (m_ui->reminderSoundPopUp->currentIndex() < 0)
    note = QStringLiteral("“%1” is not among the sounds; alerts play “%2”.")
               .arg(settings().string(fileNameKey()), QString::fromUtf16(kFallbackSound));
  m_ui->soundNote->say(note, TonedLabel::Tone::Warning);
  m_ui->soundNote->setVisible(!note.isEmpty());
}

} // namespace tockwise
