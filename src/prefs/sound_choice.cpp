#include "prefs/sound_choice.h"

namespace tockwise {
namespace {

const QString kName = QStringLiteral("selectedSoundFilename");
const QString kPosition = QStringLiteral("reminderSoundPopUpButtonSelectedIndex");

} // namespace

qsizetype chosenSound(const Settings& settings, const QStringList& sounds,
                      const QString& fallback) {
  const bool isNamed = settings.isSet(kName);
  const QString name = isNamed ? settings.string(kName) : fallback;
  if (settings.isSet(kPosition)) {
    const qint64 position = settings.integer(kPosition);
    const bool isInList = position >= 0 && position < sounds.size();
    if (isInList && (!isNamed || sounds[position] == name))
      return position;
  }
  return sounds.indexOf(name);
}

void chooseSound(Settings& settings, const QString& name, qsizetype position) {
  settings.setValue(kName, name);
  settings.setValue(kPosition, qint64(position));
  settings.synchronize();
}

} // namespace tockwise
