// Photographs every pane of the preferences window, to be looked at:
// preference_gallery FOLDER [dark] [rtl] [small].
#include "preferences_fixture.h"

#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QStackedWidget>
#include <QStyleFactory>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

QPalette darkPalette() {
  QPalette palette(QColor(0x2b, 0x2d, 0x31));
  palette.setColor(QPalette::Base, QColor(0x23, 0x25, 0x29));
  palette.setColor(QPalette::Highlight, QColor(0x2b, 0x77, 0xd9));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(0x8d, 0x93, 0x9c));
  return palette;
}

void fillIn(Preferences& preferences) {
  const auto set = [&](const char* key, Value value) {
    preferences.settings.setValue(text(key), std::move(value));
  };
  set("emailAddressAD", text("amina@example.org"));
  set("smtpServerNameAD", text("smtp.example.org"));
  set("serverPortAD", 587);
  set("authenticationAD", 2);
  set("usernameAD", text("amina"));
  set("passwordAD", text("a long password"));
  set("useADPrefs", true);
  set("email", text("amina@example.org"));
  set("sms", text("5550100"));
  set("phoneBox", text("vtext.com (Verizon)"));
  set("useDefaultTask", true);
  set("defaultTaskPath", text("www.example.org/today"));
  preferences.passwordHint = text("The password is kept in the desktop's keyring.");
  preferences.hotKeys.registerHotKeys();
  preferences.checks = {
      {text("Tray"), true, text("The panel shows the icon (StatusNotifierItem)."), {}},
      {text("Notifications"), true, text("dunst 1.9.0 answers."), {}},
      {text("Sound"), false, text("No sound server was found."),
       text("Install PipeWire or PulseAudio, or go by the windows of the alerts.")},
      {text("Hot keys"), false,
       text("This desktop gives programs no hot keys (Wayland without the portal)."),
       text("Bind “tockwise new” to a key in the desktop's keyboard settings.")},
      {text("Store"),
       true,
       text("~/.config/tockwise/com.quillstone.Tockwise.plist can be written."),
       {}}};
}

} // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() < 2)
    return 2;
  QApplication::setStyle(QStyleFactory::create(text("Fusion")));
  if (arguments.contains(text("dark")))
    QApplication::setPalette(darkPalette());
  if (arguments.contains(text("rtl")))
    QApplication::setLayoutDirection(Qt::RightToLeft);
  Preferences preferences;
  fillIn(preferences);
  PreferenceWindowController& window = preferences.window();
  window.prefs();
  if (arguments.contains(text("small")))
    window.resize(600, 340);
  const int count = window.findChild<QStackedWidget*>(text("tabView"))->count();
  for (int pane = 0; pane < count; ++pane) {
    window.showPane(PreferenceWindowController::Pane(pane));
    for (int i = 0; i < 5; ++i)
      QApplication::processEvents();
    window.grab().save(QDir(arguments[1]).filePath(text("pane%1.png").arg(pane)));
  }
  return 0;
}
