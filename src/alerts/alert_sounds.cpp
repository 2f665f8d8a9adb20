#include "alerts/alert_sounds.h"

#include "base/log.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <algorithm>

namespace tockwise {
namespace {

const QString kSelectedSound = QStringLiteral("selectedSoundFilename");
const QString kPickRandomly = QStringLiteral("pickSoundRandomly");

} // namespace

AlertSounds::AlertSounds(Settings& settings, SoundPlayer& player, QStringList folders,
                         RandomSource random)
    : m_settings(settings),
      m_player(player),
      m_folders(std::move(folders)),
      m_random(std::move(random)) {}

QStringList AlertSounds::standardFolders() {
  QStringList folders{QDir::cleanPath(QCoreApplication::applicationDirPath() +
                                      QStringLiteral("/../share/tockwise/sounds"))};
  folders +=
      QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                QStringLiteral("tockwise/sounds"), QStandardPaths::LocateDirectory);
  folders.removeDuplicates();
  return folders;
}

AlertSounds::RandomSource AlertSounds::systemRandom() {
  return [](qint64 count) {
    return count > 0 ? QRandomGenerator::global()->bounded(count) : qint64(0);
  };
}

void AlertSounds::buildSoundList() {
  m_listWanted = true;
}

const QStringList& AlertSounds::sounds() {
  if (m_listWanted && !m_listRead) {
    m_listRead = true;
    for (const QString& folder : m_folders)
      m_sounds += QDir(folder).entryList({QStringLiteral("*.wav")}, QDir::Files);
    std::sort(m_sounds.begin(), m_sounds.end());
    m_sounds.removeDuplicates();
  }
  return m_sounds;
}

QString AlertSounds::selectedAlertSound() const {
  return m_settings.isSet(kSelectedSound) ? m_settings.string(kSelectedSound)
                                          : QString::fromUtf16(kFallbackSound);
}

QString AlertSounds::pathIn(const QStringList& folders, const QString& name) {
  // A stored name is a file name; anything with a folder in it is nobody's sound of ours.
  if (name.isEmpty() || name.contains(u'/'))
    return {};
  for (const QString& folder : folders) {
    QString path = folder + u'/' + name;
    if (QFileInfo(path).isFile())
      return path;
  }
  return {};
}

QString AlertSounds::pathOfSound(const QString& name) const {
  QString path = pathIn(m_folders, name);
  return path.isEmpty() ? pathIn(m_folders, QString::fromUtf16(kFallbackSound)) : path;
}

void AlertSounds::playAlertSound() {
  m_settings.synchronize();
  qint64 index = 0;
  QString name;
  if (m_settings.boolean(kPickRandomly)) {
    const qint64 count = sounds().size();
    index = m_random(count);
    if (index < 0 || index >= count)
      index = 0;
    name = m_sounds.value(index);
  } else {
    name = selectedAlertSound();
  }
  logLine(QStringLiteral("%1 - Sound = %2").arg(QString::number(index), name));
  if (const QString path = pathOfSound(name); !path.isEmpty())
    m_player.play(path);
}

} // namespace tockwise
