// The keeping of the mail password, with a preferences file of its own and the desktop's store as
// the test wants it.
#pragma once

#include "prefs/password_keeping.h"
#include "store/kept_elsewhere.h"
#include "store/root_dictionary.h"
#include "support/fakes.h"
#include "support/no_section.h"
#include "support/test_environment.h"

#include <QFile>
#include <QTest>

#include <memory>

namespace tockwise {

inline QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

inline const QString kKey = text("passwordAD");
inline const QString kHere = text("Kept in Tockwise's own file, readable only by you, since %1.");
inline const QString kNoStore = kHere.arg(text("this desktop has no password store"));
inline const QString kRefused = kHere.arg(text("the desktop's password store did not take it"));
inline const QString kThere = text("Kept in the desktop's password store.");

class PasswordKeepingFixture : public QObject {
  Q_OBJECT
 protected:
  using State = SecretStore::State;

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};
  PreferencesStore::Paths m_paths;
  NoSection m_section;
  std::unique_ptr<FakeSecretStore> m_secrets;
  std::unique_ptr<PreferencesStore> m_preferences;
  std::unique_ptr<PasswordKeeping> m_keeping;

  /// The program starts; the desktop's store is as it was left.
  void open() {
    m_keeping.reset();
    m_preferences.reset();
    auto store = PreferencesStore::open(m_paths, m_clock);
    QVERIFY(store.ok());
    m_preferences = std::move(*store);
    m_preferences->attach(m_section);
    m_preferences->registerDefaults({{kKey, Value(QString())}});
    m_keeping = std::make_unique<PasswordKeeping>(*m_preferences, *m_secrets);
  }
  void start() {
    open();
    m_keeping->start();
  }
  /// As the window and the command line do.
  void set(const char* password) {
    m_preferences->setValue(kKey, text(password));
    m_preferences->synchronize();
  }
  /// The file holds a password, as an older version left it.
  void leaveInFile(const char* password) {
    open();
    m_keeping.reset(); // older versions have none
    set(password);
    m_preferences.reset();
    m_secrets->calls.clear();
  }
  /// The secret store holds one, and the file says so.
  void leaveElsewhere(const char* password) {
    start();
    set(password);
    m_keeping.reset();
    m_preferences.reset();
    m_secrets = std::make_unique<FakeSecretStore>();
    m_secrets->secrets[kKey] = text(password);
  }
  QString password() const { return m_preferences->string(kKey); }
  QString inService() const {
    const auto found = m_secrets->secrets.find(kKey);
    return found == m_secrets->secrets.end() ? QString() : found->second;
  }
  /// What a program that starts now would find in the file; nothing when it is named as elsewhere.
  std::optional<QString> inFile() const {
    const auto reader = plist::readRootDictionary(m_paths.file);
    if (!reader || keptElsewhere(*reader).contains(kKey))
      return std::nullopt;
    const auto found = reader->find(reader->root(), kKey);
    return found ? reader->string(*found) : QString();
  }
  /// What would be left if the program were killed now.
  QString leftIfKilled() const { return inFile().value_or(inService()); }
  bool fileHolds(const char* bytes) const {
    QFile file(m_paths.file);
    return file.open(QIODevice::ReadOnly) && file.readAll().contains(bytes);
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_paths = PreferencesStore::Paths::ofUser();
    m_secrets = std::make_unique<FakeSecretStore>();
  }
  void cleanup() {
    m_keeping.reset();
    m_preferences.reset();
  }
};

} // namespace tockwise
