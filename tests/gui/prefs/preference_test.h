// What the tests of the preferences window have in common: the window, and hands to use it.
#pragma once

#include "preferences_fixture.h"
#include "support/named_child.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>

namespace tockwise {

/// Each test has a window of its own, with its own settings.
class PreferenceTest : public QObject {
  Q_OBJECT
 protected:
  using Pane = PreferenceWindowController::Pane;

  std::unique_ptr<Preferences> m_preferences;

  static QString text(const char* utf8) { return QString::fromUtf8(utf8); }
  PreferenceWindowController& window() { return m_preferences->window(); }
  template <typename T> T* find(const char* name) { return namedChild<T>(window(), name); }

  void open() {
    window().prefs();
    QVERIFY(QTest::qWaitForWindowActive(&window()));
  }
  void open(Pane pane) {
    open();
    window().showPane(pane);
  }
  /// A box is clicked where it is ticked, which may be far from its middle.
  void click(const char* button) {
    QTest::mouseClick(find<QAbstractButton>(button), Qt::LeftButton, {}, {8, 8});
  }
  void write(const char* field, const char* value) { find<QLineEdit>(field)->setText(text(value)); }

  void set(const char* key, Value value) {
    m_preferences->settings.setValue(text(key), std::move(value));
  }
  bool isSet(const char* key) { return m_preferences->settings.isSet(text(key)); }
  bool isOn(const char* key) { return m_preferences->settings.boolean(text(key)); }
  QString stored(const char* key) { return m_preferences->settings.string(text(key)); }

 private Q_SLOTS:
  void init() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    m_preferences = std::make_unique<Preferences>();
  }
  void cleanup() { m_preferences.reset(); }
};

} // namespace tockwise
