#include "prefs/save_preferences.h"

namespace tockwise {

PreferenceForm preferenceForm(const Settings&) {
  return {};
}

SavedPreferences savePreferences(const PreferenceForm&, Settings&) {
  return {};
}

} // namespace tockwise
