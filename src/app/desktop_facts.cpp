#include "app/desktop_facts.h"

#include "app/old_text_conversion.h"
#include "app/store_messages.h"
#include "dates/calendar.h"
#include "dates/posix_zone.h"
#include "dates/user_environment.h"
#include "platform/autostart_login_items.h"
#include "platform/desktop_probe.h"
#include "store/store_backups.h"

#include <QFileInfo>
#include <QJsonObject>
#include <QStorageInfo>

namespace tockwise {
namespace {

FolderFacts folderFacts(const QString& path) {
  QFileInfo folder(path);
  while (!folder.exists() && !folder.isRoot())
    folder = QFileInfo(folder.path());
  FolderFacts facts;
  facts.path = folder.filePath();
  facts.isFolder = folder.isDir();
  facts.mayWrite = folder.isWritable();
  const QStorageInfo disk(folder.filePath());
  if (disk.isValid()) {
    facts.diskIsReadOnly = disk.isReadOnly();
    facts.bytesAvailable = disk.bytesAvailable();
  }
  return facts;
}

ServiceFacts notificationFacts() {
  const ServiceFound found = notificationService();
  return {found.running, found.startable, found.name};
}

HotKeyFacts hotKeyFacts() {
  HotKeyFacts facts;
  facts.detail = hotKeyProvider();
  facts.available = !facts.detail.isEmpty();
  facts.states = allHotKeys(HotKeys::State::Off);
  return facts;
}

DesktopFacts desktopFacts() {
  DesktopFacts facts;
  facts.display =
      !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  facts.sessionBus = sessionBusAnswers();
  facts.trayKind = trayKind();
  facts.notifications = notificationFacts();
  facts.soundProblem = soundProblem();
  facts.hotKeys = hotKeyFacts();
  facts.secretStore = secretService();
  facts.loginItemPresent = AutostartLoginItems::ofUser().isPresent();
  UserEnvironment environment;
  environment.refresh();
  facts.timeZone = environment.zone();
  facts.timeZoneKnown = isZoneIdentifier(facts.timeZone) || zoneFromPosixRule(facts.timeZone);
  return facts;
}

void addSettings(DesktopFacts& facts, const Settings& settings) {
  facts.hotKeys.wanted = settings.boolean(QStringLiteral("useGlobalHotKeys"));
  facts.loginItemWanted = settings.boolean(QStringLiteral("loginItem"));
}

StoreFacts storeFacts(const PreferencesStore::Paths& paths, const QString& failure) {
  StoreFacts facts;
  facts.file = paths.file;
  facts.folder = folderFacts(QFileInfo(paths.file).path());
  facts.failure = failure;
  facts.backups = folderFacts(paths.backups);
  const QStringList copies = StoreBackups(paths.backups).newestFirst();
  if (!copies.isEmpty()) {
    const qint64 modified = QFileInfo(copies.first()).lastModified().toSecsSinceEpoch();
    facts.lastBackup = Calendar::current().dateStringWithFormat(
        Date::fromUnixSeconds(double(modified)), kDisplayPattern);
  }
  return facts;
}

} // namespace

std::vector<DesktopCheck> checksOfApplication(const PreferencesStore& preferences,
                                              const HotKeys& hotKeys,
                                              const SecretStore& secretStore) {
  DesktopFacts facts = desktopFacts();
  facts.applicationRuns = true;
  addSettings(facts, preferences);
  const auto& failure = preferences.writeFailure();
  facts.store = storeFacts(preferences.paths(), failure ? failure->message : QString());
  facts.hotKeys.available = hotKeys.isAvailable();
  facts.hotKeys.detail = hotKeys.detail();
  facts.hotKeys.states = statesOf(hotKeys);
  if (secretStore.state() != SecretStore::State::Unknown)
    facts.secretStore = secretStore.state();
  return diagnose(facts);
}

std::vector<DesktopCheck> checksWithoutApplication(const Clock& clock) {
  DesktopFacts facts = desktopFacts();
  const PreferencesStore::Paths paths = PreferencesStore::Paths::ofUser();
  const auto store = ReminderStore::open(paths, clock, oldTextConversion());
  facts.store = storeFacts(paths, store ? QString() : store.error().message);
  if (store) {
    addSettings(facts, (*store)->preferences());
    // Told here or never: what was put aside looks well to the next one who opens the store.
    facts.store.damage = damageText((*store)->loadReport()).replace(u'\n', u' ');
  } else { // what was wanted is not known: nothing is missed
    facts.loginItemWanted = facts.loginItemPresent;
    facts.store.held = store.error().kind == Error::Kind::Busy;
  }
  return diagnose(facts);
}

QJsonArray checksToJson(const std::vector<DesktopCheck>& checks) {
  QJsonArray array;
  for (const DesktopCheck& check : checks) {
    array.append(QJsonObject{{QStringLiteral("name"), check.name},
                             {QStringLiteral("ok"), check.ok},
                             {QStringLiteral("detail"), check.detail},
                             {QStringLiteral("remedy"), check.remedy}});
  }
  return array;
}

} // namespace tockwise
