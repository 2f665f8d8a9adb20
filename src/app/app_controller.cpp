#include "app/app_controller.h"

#include "app/about.h"
#include "app/menu_source.h"
#include "app/store_messages.h"
#include "base/log.h"
#include "dates/calendar.h"
#include "dates/date_text.h"
#include "menu/status_menu.h"
#include "richtext/rich_runs.h"
#include "richtext/text_document.h"

#include <QCoreApplication>
#include <QJsonObject>

#include <chrono>
#include <map>

namespace tockwise {
namespace {

constexpr double kRemindAgainSeconds = 600;
// What fired is written when its window has reached the screen: writing ten thousand reminders
// takes longer than opening it.
constexpr std::chrono::milliseconds kAlertsFirst{20};

std::vector<OpenAlert> openAlerts(const AlertWindows& alerts) {
  std::vector<OpenAlert> open;
  for (const AlertEntry& entry : alerts.entries())
    open.push_back({entry.text, entry.reminderUUID});
  return open;
}

} // namespace

AppController::AppController(std::unique_ptr<ReminderStore> store, Ports ports, QObject* parent)
    : QObject(parent),
      m_store(std::move(store)),
      m_ports(std::move(ports)),
      m_richTitles(unarchiveRuns),
      m_sounds(m_store->preferences(), *m_ports.soundPlayer, AlertSounds::standardFolders(),
               AlertSounds::systemRandom()),
      m_alerts(m_store->queue(), m_sounds, *m_ports.prompter, loadArchivedText),
      m_removeReminder(m_store->queue(), *m_ports.prompter, m_alerts,
                       [this](const QString& uuid) { return m_store->removeReminder(uuid); }),
      m_quitQuestion(*m_ports.prompter, m_alerts, [] { return qint64(0); }),
      m_sort(m_store->queue(), m_store->preferences(), *m_ports.prompter,
             [this] { m_store->saveDefaults(); }),
      m_tasks(*m_ports.workspace, *m_ports.scriptHost),
      m_runningScripts(*m_ports.scriptHost, m_store->clock()),
      m_firing(m_store->queue(), m_store->preferences(), m_store->clock(), *this),
      m_tick(m_store->queue(), m_firing, m_store->clock(), tickActions()),
      m_tickTimer(m_tick, *m_ports.wakeTimer, *m_ports.powerEvents, m_store->clock()),
      m_commands(*m_store, [this] { changed(); }),
      m_tray([this] { return currentMenuInput(&m_richTitles); }),
      m_noTrayHint(m_tray, m_store->preferences(), *m_ports.prompter),
      m_storeWatch(m_store->preferences().paths().file) {
  m_alerts.setReminderRemover(&m_removeReminder);
  m_sounds.buildSoundList();
  connectAll();
}

AppController::~AppController() = default;

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
  connect(&m_alerts, &AlertWindows::linkChosen, this, [this](const QUrl& address) {
    m_ports.workspace->openURL(address.toString(QUrl::FullyEncoded));
  });
  connect(&m_tickTimer, &TickTimer::ticked, this, &AppController::showState);
  connect(&m_storeWatch, &StoreWatch::changed, &m_tickTimer, &TickTimer::poke);
  // Queued: a panel waits for the answer to its click, and a question may stay open for long.
  connect(&m_tray, &TrayController::activated, this, &AppController::perform, Qt::QueuedConnection);
  connect(&m_tray, &TrayController::visibilityChanged, &m_tickTimer, &TickTimer::setEverySecond);
  PreferencesStore& preferences = m_store->preferences();
  preferences.onWriteFailure = [this](const Error& error) { tellWriteFailure(error); };
  preferences.onNotice = [this](const StoreNotice& notice) { tellNotice(notice); };
  preferences.onChangedByOthers = [this] { changed(); };
}

void AppController::start() {
  m_tray.start();
  m_tickTimer.start();
  m_noTrayHint.start();
  tellNotice(m_store->loadReport());
  if (const auto& failure = m_store->preferences().writeFailure())
    tellWriteFailure(*failure);
}

void AppController::tellNotice(const StoreNotice& notice) {
  if (!notice.isEmpty())
    m_ports.prompter->tell(QString::fromUtf16(kDamageTitle), damageText(notice));
}

void AppController::tellWriteFailure(const Error& error) {
  m_ports.prompter->tell(QString::fromUtf16(kWriteFailureTitle), writeFailureText(error));
}

void AppController::changed() {
  m_announcing = true;
  m_tickTimer.poke();
}

// What can be seen of the program's state, brought up to date; whoever shows it compares first.
void AppController::showState() {
  m_tray.setClockOption(m_store->preferences().integer(QStringLiteral("clockoption")));
  m_tray.setStatusTitle(statusTitle(0, m_alerts.count()));
  m_tray.refresh();
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
  QJsonArray array;
  for (const AlertEntry& entry : m_alerts.entries()) {
    const bool gone = !m_store->queue().indexOf(entry.reminderUUID);
    array.append(QJsonObject{
        {QStringLiteral("position"), entry.position + 1},
        {QStringLiteral("uuid"), gone ? QJsonValue::Null : QJsonValue(entry.reminderUUID)},
        {QStringLiteral("text"), entry.text},
        {QStringLiteral("date"), iso8601UTC(entry.date)},
        {QStringLiteral("shown"), entry.shown},
        {QStringLiteral("rescheduled"), entry.rescheduled}});
  }
  return array;
}

Result<void> AppController::alertCommand(const QString& action, int position) {
  const qsizetype index = position > 0 ? position - 1 : 0;
  if (action == u"ok-all") {
    m_alerts.okAll();
    return {};
  }
  if (action == u"hide" && position == 0) {
    m_alerts.hideAllCurrentAlerts();
    return {};
  }
  if (action == u"show" && position == 0) {
    m_alerts.showAllCurrentAlerts();
    return {};
  }
  if (index >= m_alerts.count()) {
    return Error{Error::Kind::NotFound, m_alerts.count() == 0
                                            ? QStringLiteral("There Are No Current Alerts")
                                            : QStringLiteral("there is no alert %1; %2 are open")
                                                  .arg(position)
                                                  .arg(m_alerts.count())};
  }
  // The buttons that an alert does not show are not to be pressed from outside either.
  const bool rescheduled = m_alerts.entries()[size_t(index)].rescheduled;
  if ((action == u"again" && rescheduled) || (action == u"delete" && !rescheduled)) {
    return Error{Error::Kind::Refused,
                 rescheduled ? QStringLiteral("this alert's reminder repeats by itself")
                             : QStringLiteral("only the alert of a repeating reminder deletes it")};
  }
  if (action == u"ok")
    return m_alerts.OK(index);
  if (action == u"again")
    return m_alerts.remindAgain(index);
  if (action == u"delete")
    return m_alerts.deleteReminder(index);
  if (action == u"show")
    return m_alerts.exposeCurrentAlert(index);
  if (action == u"hide")
    return m_alerts.hide(index);
  return Error{Error::Kind::Usage, QStringLiteral("there is no alert action \"%1\"").arg(action)};
}

void AppController::perform(const MenuActivation& activation) {
  using Operation = void (*)(AppController&, const MenuActivation&);
  static const std::map<QString, Operation> operations{
      {QStringLiteral("quit"),
       [](AppController& self, const MenuActivation&) {
         if (self.mayQuit(QuitMode::Ask))
           self.quitNow();
       }},
      {QStringLiteral("about"),
       [](AppController& self, const MenuActivation&) { tockwise::about(*self.m_ports.prompter); }},
      {QStringLiteral("deleteMenuItem"),
       [](AppController& self, const MenuActivation& chosen) {
         self.deleteMenuItem(chosen.reminderUUID);
       }},
      {QStringLiteral("exposeCurrentAlert"),
       [](AppController& self, const MenuActivation& chosen) {
         if (const auto exposed = self.m_alerts.exposeCurrentAlert(chosen.tag); !exposed)
           logLine(exposed.error().message);
       }},
      {QStringLiteral("showAllCurrentAlerts"),
       [](AppController& self, const MenuActivation&) { self.m_alerts.showAllCurrentAlerts(); }},
      {QStringLiteral("hideAllCurrentAlerts"),
       [](AppController& self, const MenuActivation&) { self.m_alerts.hideAllCurrentAlerts(); }},
      {QStringLiteral("closeAllCurrentAlerts"),
       [](AppController& self, const MenuActivation&) { self.m_alerts.closeAllCurrentAlerts(); }}};
  if (const auto operation = operations.find(activation.action); operation != operations.end()) {
    operation->second(*this, activation);
  } else if (const auto order = sortTypeOfAction(activation.action)) {
    m_sort.sortBy(*order);
    changed();
  }
}

// removeReminder asks the question, once; the identity is found again where it stands.
void AppController::deleteMenuItem(const QString& reminderUUID) {
  if (const auto index = m_store->queue().indexOf(reminderUUID)) {
    m_removeReminder.removeReminder(*index);
    Q_EMIT dataModified();
    changed();
  }
}

void AppController::showMenu() {
  m_tray.showMenu();
}

bool AppController::mayQuit(QuitMode mode) {
  if (mode == QuitMode::Omit)
    return true;
  if (m_quitQuestion.applicationShouldTerminate() == TerminateReply::Cancel)
    return false;
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
  saveNow();
  QCoreApplication::quit();
}

// Until there is an editor to ask in, the request comes back ten minutes later.
void AppController::remindAgain(const RemindAgainRequest& request) {
  Reminder again;
  again.reminderQueue = m_store->clock().now().plusSeconds(kRemindAgainSeconds);
  again.reminderDescriptions = request.reminderMessage;
  again.reminderRTFs = request.reminderRTFData;
  again.reminderSendSMS = request.smsState;
  again.reminderSendEmail = request.emailState;
  m_store->appendReminder(std::move(again), ReminderStore::RecentEntry::Omit);
  changed();
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
