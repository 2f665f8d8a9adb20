#include "app/app_controller.h"

#include "app/alert_commands.h"
#include "app/desktop_facts.h"
#include "app/menu_operations.h"
#include "app/menu_source.h"
#include "app/store_messages.h"
#include "base/log.h"
#include "dates/calendar.h"
#include "menu/status_menu.h"
#include "menu/ui/clock_icon.h"
#include "richtext/copy_text.h"
#include "richtext/rich_runs.h"
#include "richtext/text_document.h"

#include <QApplication>

#include <chrono>

namespace tockwise {
namespace {

// What fired is written when its window has reached the screen: writing ten thousand reminders
// takes longer than opening it.
constexpr std::chrono::milliseconds kAlertsFirst{20};

std::vector<OpenAlert> openAlerts(const AlertWindows& alerts) {
  std::vector<OpenAlert> open;
  for (const AlertEntry& entry : alerts.entries())
    open.push_back({entry.text, entry.reminderUUID});
  return open;
}

/// The desktop outlives what opens addresses with it.
std::function<void(const QUrl&)> openingAddresses(Workspace& workspace) {
  return [&workspace](const QUrl& address) {
    workspace.openURL(address.toString(QUrl::FullyEncoded));
  };
}

} // namespace

AppController::AppController(std::unique_ptr<ReminderStore> store, Ports ports, QObject* parent)
    : QObject(parent),
      m_store(std::move(store)),
      m_ports(std::move(ports)),
      m_questions(AlertHidingPrompter::putAround(m_ports.prompter)),
      m_richTitles(unarchiveRuns),
      m_sounds(m_store->preferences(), *m_ports.soundPlayer, AlertSounds::standardFolders(),
               AlertSounds::systemRandom()),
      m_alerts(m_store->queue(), m_sounds, *m_ports.prompter, loadArchivedText),
      m_removeReminder(m_store->queue(), *m_ports.prompter,
                       [this](const QString& uuid) { return m_store->removeReminder(uuid); }),
      m_quitQuestion(*m_ports.prompter, m_alerts, [] { return qint64(0); }),
      m_menuActions(*m_store, *m_ports.prompter),
      m_editing(*m_store, DraftStore(DraftStore::folderOfUser()),
                {m_store->preferences(), *m_ports.prompter, m_store->clock(),
                 openingAddresses(*m_ports.workspace)}),
      m_sort(m_store->queue(), m_store->preferences(), *m_ports.prompter,
             [this] { m_store->saveDefaults(); }),
      m_tasks(*m_ports.workspace, *m_ports.scriptHost),
      m_runningScripts(*m_ports.scriptHost, m_store->clock()),
      m_firing(m_store->queue(), m_store->preferences(), m_store->clock(), *this),
      m_tick(m_store->queue(), m_firing, m_store->clock(), tickActions()),
      m_tickTimer(m_tick, *m_ports.wakeTimer, *m_ports.powerEvents, m_store->clock()),
      m_commands(
          *m_store, [this] { changedByCommand(); }, [this] { Q_EMIT dataModified(); }),
      m_tray([this] { return currentMenuInput(&m_richTitles); }),
      m_noTrayHint(m_tray, m_store->preferences(), *m_ports.prompter),
      m_keptAlerts(m_alerts, KeptAlerts::pathOfUser()),
      m_postAlert(*m_ports.notificationCentre, m_store->clock()),
      m_documents({*m_store, *m_ports.prompter, [this] { m_questions.dialogOpens(); },
                   [this] { m_questions.dialogCloses(); }}),
      m_printing(*m_store, m_alerts, *m_ports.prompter,
                 [this](bool hold) { m_tickTimer.hold(hold); }),
      m_hotKeyActions(*m_ports.hotKeys, m_store->preferences()),
      m_passwordKeeping(m_store->preferences(), *m_ports.secretStore),
      m_mailBeat(m_store->preferences()),
      m_storeWatch(m_store->preferences().paths().file) {
  m_questions.setAlerts(&m_alerts);
  m_alerts.setReminderRemover(&m_removeReminder);
  m_sounds.buildSoundList();
  connectAll();
  connectDesktop();
}

// A password that is written while the parts go may find what others changed: too late to tell.
AppController::~AppController() {
  m_keptAlerts.flush();
  PreferencesStore& preferences = m_store->preferences();
  preferences.beforeWriting = nullptr;
  preferences.onChangedByOthers = nullptr;
  preferences.onNotice = nullptr;
  preferences.onWriteFailure = nullptr;
  m_passwordKeeping.disconnect(this);
}

TickActions AppController::tickActions() {
  return {[this] { m_sort.sort(); }, [this] { m_store->preferences().synchronize(); },
          [this] { m_saveSoon.start(); }, [this] { Q_EMIT dataModified(); }, systemSteadyTime};
}

void AppController::connectAll() {
  m_saveSoon.setSingleShot(true);
  m_saveSoon.setInterval(kAlertsFirst);
  connect(&m_saveSoon, &QTimer::timeout, this, &AppController::saveNow);
  connect(m_ports.powerEvents.get(), &PowerEvents::willSleep, this, &AppController::saveNow);
  connect(&m_alerts, &AlertWindows::opened, this, &AppController::alertOpened);
  connect(&m_alerts, &AlertWindows::closed, this, &AppController::alertClosed);
  connect(&m_alerts, &AlertWindows::countChanged, this, &AppController::showState);
  connect(&m_alerts, &AlertWindows::remindAgainRequested, this, &AppController::remindAgain);
  connect(&m_alerts, &AlertWindows::linkChosen, this, openingAddresses(*m_ports.workspace));
  connect(&m_editing, &ReminderEditing::changed, this, &AppController::dataChanged);
  connect(&m_tickTimer, &TickTimer::ticked, this, &AppController::showState);
  connect(&m_storeWatch, &StoreWatch::changed, &m_tickTimer, &TickTimer::poke);
  // Queued: a panel waits for the answer to its click, and a question may stay open for long.
  connect(&m_tray, &TrayController::activated, this, &AppController::perform, Qt::QueuedConnection);
  connect(&m_tray, &TrayController::settled, this, &AppController::startTheRest);
  connect(&m_tray, &TrayController::visibilityChanged, &m_tickTimer, &TickTimer::setEverySecond);
  PreferencesStore& preferences = m_store->preferences();
  // A reminder that is saved as fired does not fire again: its alert has to be kept before.
  preferences.beforeWriting = [this] { m_keptAlerts.flush(); };
  preferences.onWriteFailure = [this](const Error& error) { tellWriteFailure(error); };
  preferences.onNotice = [this](const StoreNotice& notice) { tellNotice(notice); };
  preferences.onChangedByOthers = [this] {
    m_passwordKeeping.othersChanged();
    changedByCommand();
  };
}

void AppController::connectDesktop() {
  connect(&m_documents, &RemindersDocuments::changed, this, &AppController::dataChanged);
  // Queued: whoever drags waits for the drop to be taken, and a question follows it.
  connect(&m_tray, &TrayController::documentDropped, &m_documents, &RemindersDocuments::openFile,
          Qt::QueuedConnection);
  connect(&m_hotKeyActions, &HotKeyActions::operationChosen, this,
          [this](const QString& operation) {
            MenuActivation activation;
            activation.action = operation;
            perform(activation);
          });
  connect(&m_passwordKeeping, &PasswordKeeping::changed, this, [this] {
    if (m_preferenceWindow)
      m_preferenceWindow->settingsChanged();
  });
}

void AppController::start() {
  m_tray.start();
  m_keptAlerts.restore(); // they are older than what fires now
  m_tickTimer.start();
  m_noTrayHint.start();
  m_mailBeat.start();
  tellNotice(m_store->loadReport());
  if (const auto& failure = m_store->preferences().writeFailure())
    tellWriteFailure(*failure);
  // Asks: the program goes on meanwhile.
  QTimer::singleShot(0, &m_editing, &ReminderEditing::offerDrafts);
}

// Once the tray has the item.
void AppController::startTheRest() {
  QApplication::setWindowIcon(applicationIcon()); // windows that are open get it, too
  m_hotKeyActions.start();
  m_passwordKeeping.start();
}

void AppController::tellNotice(const StoreNotice& notice) {
  if (!notice.isEmpty())
    m_ports.prompter->tell(QString::fromUtf16(kDamageTitle), damageText(notice));
}

void AppController::tellWriteFailure(const Error& error) {
  m_ports.prompter->tell(QString::fromUtf16(kWriteFailureTitle), writeFailureText(error));
}

// The window tells the beat by itself.
void AppController::changedByCommand() {
  m_mailBeat.follow();
  changed();
}

void AppController::dataChanged() {
  Q_EMIT dataModified();
  changed();
}

void AppController::changed() {
  m_announcing = true;
  m_tickTimer.poke();
  if (m_preferenceWindow)
    m_preferenceWindow->settingsChanged();
}

// What can be seen of the program's state, brought up to date; whoever shows it compares first.
void AppController::showState() {
  m_tray.setClockOption(m_store->preferences().integer(QStringLiteral("clockoption")));
  m_tray.setStatusTitle(statusTitle(0, m_alerts.count()));
  m_tray.refresh();
  m_hotKeyActions.follow();
  announce();
}

void AppController::announce() {
  const quint64 revision = m_store->queue().revision();
  if (!m_announcing && revision == m_announcedRevision)
    return;
  m_announcing = false;
  m_announcedRevision = revision;
  Q_EMIT queueChanged();
}

MenuInput AppController::currentMenuInput(RichTitles* richTitles) const {
  return menuInput(*m_store, openAlerts(m_alerts), richTitles);
}

std::vector<MenuItem> AppController::menuItems() {
  return buildStatusMenu(currentMenuInput(&m_richTitles), Calendar::current());
}

QJsonArray AppController::alertsJson() const {
  return alertsToJson(m_alerts, m_store->queue());
}

void AppController::perform(const MenuActivation& activation) {
  // While a preview is open no other window reacts; the program can still be ended.
  if (m_printing.isPreviewOpen() && activation.action != u"quit")
    return m_printing.bringToFront();
  performMenuOperation(*this, activation);
}

void AppController::quit() {
  if (mayQuit(QuitMode::Ask))
    quitNow();
}

void AppController::sortBy(SortType order) {
  m_sort.sortBy(order);
  changed();
}

void AppController::toggle(const QString& setting) {
  m_menuActions.toggle(setting);
  changed();
}

void AppController::recentReminder(qsizetype position, const QString& title) {
  if (const auto text = m_menuActions.recentText(position, title))
    m_editing.newReminderS(*text);
}

void AppController::clearRecent() {
  m_menuActions.clearRecent();
  changed();
}

void AppController::clearQueue() {
  if (m_menuActions.clearQueue())
    dataChanged();
}

// removeReminder asks the question, once; the identity is found again where it stands.
void AppController::deleteMenuItem(const QString& reminderUUID) {
  if (const auto index = m_store->queue().indexOf(reminderUUID)) {
    m_removeReminder.removeReminder(*index);
    dataChanged();
  }
}

void AppController::copyMenuItem(const QString& reminderUUID) {
  const ReminderQueue& queue = m_store->queue();
  if (const auto index = queue.indexOf(reminderUUID))
    tockwise::copyMenuItem(queue->reminderRTFs.at(*index), *m_ports.pasteboard);
}

void AppController::showMenu() {
  m_tray.showMenu();
}

bool AppController::mayQuit(QuitMode mode) {
  if (mode == QuitMode::Omit)
    return true;
  if (m_quitQuestion.applicationShouldTerminate() == TerminateReply::Cancel)
    return false;
  if (m_preferenceWindow && !m_preferenceWindow->applicationShouldTerminate()) {
    m_questions.goOn();
    return false;
  }
  saveNow();
  if (m_store->preferences().isSaved())
    return true;
  return m_ports.prompter->ask(unsavedQuestion()) == kQuitUnsaved;
}

void AppController::saveNow() {
  m_saveSoon.stop();
  m_store->saveDefaults();
}

void AppController::quitNow() {
  m_keptAlerts.forget();
  endWithSession();
}

void AppController::endWithSession() {
  m_tickTimer.stop(); // whoever holds it lets go of it on the way out
  saveNow();
  m_questions.leaveHidden();
  // quit() would close every window first: an open editor would ask whether to undo its changes,
  // though its draft is kept, and could hold the program back, and alerts would be dismissed.
  QCoreApplication::exit();
}

void AppController::remindAgain(const RemindAgainRequest& request) {
  m_editing.remindAgain(request.reminderMessage, request.reminderRTFData);
}

PreferenceSurroundings AppController::preferenceSurroundings() {
  return {m_store->preferences(),
          *m_ports.prompter,
          *m_ports.soundPlayer,
          *m_ports.hotKeys,
          *m_ports.loginItems,
          m_mailBeat,
          m_sounds.sounds(),
          [this](const QString& name) { return m_sounds.pathOfSound(name); },
          [this] { return m_passwordKeeping.hint(); },
          [this] { return desktopChecks(); },
          m_store->clock()};
}

PreferenceWindowController& AppController::preferenceWindow() {
  if (!m_preferenceWindow) {
    m_preferenceWindow = std::make_unique<PreferenceWindowController>(preferenceSurroundings());
    connect(m_preferenceWindow.get(), &PreferenceWindowController::settingsWritten, this,
            &AppController::changed);
    connect(m_preferenceWindow.get(), &PreferenceWindowController::changeClockIcon, &m_tray,
            &TrayController::setClockOption);
  }
  return *m_preferenceWindow;
}

void AppController::prefs() {
  m_passwordKeeping.fetch();
  preferenceWindow().prefs();
}

std::vector<DesktopCheck> AppController::desktopChecks() {
  return checksOfApplication(m_store->preferences(), *m_ports.hotKeys, *m_ports.secretStore);
}

// What became of it is in the log.
void AppController::doTask(const Task& task) {
  m_tasks.doTask(task);
}

// Mail and text messages have no subsystem yet: firing goes on to the alert, which shows what the
// reminder itself is set to send.
void AppController::sendEmailWithSubject(const QString&, const QString&) {
  logLine(QStringLiteral("This version sends no e-mail"));
}

bool AppController::sendEmailWithSubjectAndHTMLMessage(const QString&, const QByteArray&) {
  return false;
}

void AppController::sendSMSWithSubject(const QString&, const QString&) {
  logLine(QStringLiteral("This version sends no text messages"));
}

void AppController::openAlert(const AlertRequest& request) {
  m_alerts.open(request);
}

void AppController::fired(const QString& reminderUUID) {
  Q_EMIT reminderFired(reminderUUID);
}

} // namespace tockwise
