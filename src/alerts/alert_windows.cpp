#include "alerts/alert_windows.h"

#include "alerts/alert_placement.h"
#include "alerts/alert_rich_text.h"
#include "alerts/screen_places.h"

#include <QScreen>

#include <algorithm>
#include <utility>

namespace tockwise {
namespace {

constexpr int kSettleDelay = 150;   // milliseconds
constexpr int kCloseAllDelay = 100; // milliseconds: the windows come back before they close
constexpr int kShareOfTurn = 40;    // milliseconds in which windows are made before others get on

enum CloseAllAnswer { No = 0, Yes = 1 };

Question closeAllQuestion() {
  Question question;
  question.title = QStringLiteral("Are you sure you want to close all alert windows?");
  question.message = QStringLiteral("This can not be undone.");
  question.buttons = {QStringLiteral("No"), QStringLiteral("Yes")};
  question.defaultButton = No;
  question.escapeButton = No;
  return question;
}

bool isAlert(const QWidget& window) {
  return qobject_cast<const AlertWindowController*>(&window) != nullptr;
}

Error noSuchAlert(qsizetype position) {
  return Error{Error::Kind::OutOfRange,
               QStringLiteral("there is no alert at position %1").arg(position)};
}

} // namespace

AlertWindows::AlertWindows(const ReminderQueue& queue, AlertSounds& sounds, Prompter& prompter,
                           UnarchiveText unarchive, QObject* parent)
    : QObject(parent),
      m_queue(queue),
      m_sounds(sounds),
      m_prompter(prompter),
      m_unarchive(std::move(unarchive)) {
  m_nextTurn.setSingleShot(true);
  m_nextTurn.setInterval(0);
  connect(&m_nextTurn, &QTimer::timeout, this, &AlertWindows::nextTurn);
}

AlertWindows::~AlertWindows() {
  // No event loop may come after this one to delete them later.
  for (ListedAlert& alert : m_alerts)
    alert.deleteWindow();
}

qsizetype AlertWindows::open(const AlertRequest& request, AlertLevel level) {
  dropRestored(request);
  append({request, level, false});
  makeWaiting();
  // Choosing the sound has the settings written and read, which may take long: the window is on its
  // way to the screen by then.
  QTimer::singleShot(0, this, [this] { m_sounds.playAlertSound(); });
  const qsizetype position = count() - 1;
  Q_EMIT opened(request.reminderUUID);
  Q_EMIT countChanged();
  Q_EMIT statesChanged();
  return position;
}

void AlertWindows::restore(const std::vector<AlertState>& states) {
  if (states.empty())
    return;
  for (const AlertState& state : states)
    append(state);
  m_lastRestored = m_lastNumber;
  m_nextTurn.start();
  for (const AlertState& state : states)
    Q_EMIT opened(state.request.reminderUUID);
  Q_EMIT countChanged();
  Q_EMIT statesChanged();
}

void AlertWindows::append(AlertState state) {
  m_alerts.emplace_back(++m_lastNumber, std::move(state));
}

/// Makes the windows that wait, oldest first, until this turn's share of the time is used up.
void AlertWindows::makeWaiting() {
  for (ListedAlert& alert : m_alerts) {
    if (!alert.isWaiting())
      continue;
    m_nextTurn.start();
    if (!m_turn.isValid())
      m_turn.start();
    else if (m_turn.hasExpired(kShareOfTurn))
      return;
    makeWindow(alert);
  }
}

void AlertWindows::nextTurn() {
  m_turn.invalidate();
  makeWaiting();
  const bool isWaiting = std::any_of(m_alerts.begin(), m_alerts.end(),
                                     [](const ListedAlert& alert) { return alert.isWaiting(); });
  if (!isWaiting && std::exchange(m_bringsNewestUp, false))
    bringNewestUp();
}

void AlertWindows::makeWindow(ListedAlert& alert) {
  alert.setWindow(new AlertWindowController(alert.request(), alert.level(), m_unarchive));
  connectWindow(alert.window(), alert.number());
  place(*alert.window());
  keepLevels();
}

void AlertWindows::connectWindow(AlertWindowController* window, quint64 number) {
  connect(window, &AlertWindowController::okChosen, this, [this, number] { remove(number); });
  connect(window, &AlertWindowController::remindAgainChosen, this,
          [this, number] { remindAgainFrom(number); });
  connect(window, &AlertWindowController::deleteChosen, this,
          [this, number] { deleteReminderOf(number); });
  connect(window, &AlertWindowController::linkChosen, this, &AlertWindows::followLink);
}

void AlertWindows::place(AlertWindowController& window) const {
  const QRect workArea = screenWithPointer()->availableGeometry();
  window.fit(workArea);
  QList<QRect> others;
  for (const ListedAlert& alert : m_alerts) {
    const AlertWindowController* other = alert.window();
    if (other && other != &window && other->isVisible())
      others += other->frameGeometry();
  }
  window.present(placeAlert(window.size() + QSize(0, kLikelyTitleBar), workArea, others,
                            visibleDialogs(isAlert)));
}

void AlertWindows::keepLevels() {
  for (const ListedAlert& alert : m_alerts) {
    if (alert.level() == AlertLevel::MainMenu && alert.window() && alert.window()->isVisible())
      alert.window()->raise();
  }
}

std::vector<AlertEntry> AlertWindows::entries() const {
  std::vector<AlertEntry> result;
  for (const ListedAlert& alert : m_alerts) {
    const AlertRequest& request = alert.request();
    result.push_back({qsizetype(result.size()), request.reminderUUID, request.reminder,
                      request.RTFData, request.date, alert.isShown(), request.rescheduled});
  }
  return result;
}

std::vector<AlertState> AlertWindows::states() const {
  std::vector<AlertState> result;
  for (const ListedAlert& alert : m_alerts) {
    if (!alert.isDismissed())
      result.push_back(alert.state());
  }
  return result;
}

AlertWindowController* AlertWindows::window(qsizetype position) {
  ListedAlert* alert = alertAt(position);
  if (alert && alert->isWaiting())
    makeWindow(*alert);
  return alert ? alert->window() : nullptr;
}

ListedAlert* AlertWindows::alertAt(qsizetype position) {
  return position >= 0 && position < count() ? &m_alerts[size_t(position)] : nullptr;
}

ListedAlert* AlertWindows::find(quint64 number) {
  const auto found = std::find_if(m_alerts.begin(), m_alerts.end(), [&](const ListedAlert& alert) {
    return alert.number() == number;
  });
  return found == m_alerts.end() ? nullptr : &*found;
}

Result<void> AlertWindows::exposeCurrentAlert(qsizetype position) {
  ListedAlert* chosen = alertAt(position);
  if (!chosen)
    return noSuchAlert(position);
  chosen->expose();
  if (chosen->isWaiting())
    makeWindow(*chosen);
  keepLevels();
  Q_EMIT statesChanged();
  return {};
}

Result<void> AlertWindows::OK(qsizetype position) {
  const ListedAlert* chosen = alertAt(position);
  if (!chosen)
    return noSuchAlert(position);
  remove(chosen->number());
  return {};
}

Result<void> AlertWindows::remindAgain(qsizetype position) {
  const ListedAlert* chosen = alertAt(position);
  if (!chosen)
    return noSuchAlert(position);
  remindAgainFrom(chosen->number());
  return {};
}

Result<void> AlertWindows::deleteReminder(qsizetype position) {
  const ListedAlert* chosen = alertAt(position);
  if (!chosen)
    return noSuchAlert(position);
  deleteReminderOf(chosen->number());
  return {};
}

/// Takes the alert off the list, if it still is on it.
void AlertWindows::remove(quint64 number) {
  ListedAlert* alert = find(number);
  if (!alert)
    return;
  const QString uuid = alert->request().reminderUUID;
  alert->dismiss();
  m_alerts.erase(m_alerts.begin() + (alert - m_alerts.data()));
  Q_EMIT closed(uuid);
  Q_EMIT countChanged();
  Q_EMIT statesChanged();
}

void AlertWindows::remindAgainFrom(quint64 number) {
  ListedAlert* alert = find(number);
  if (!alert || alert->isDismissed())
    return;
  const AlertRequest& of = alert->request();
  const RemindAgainRequest request{of.reminderType, of.reminder,  of.RTFData,
                                   of.sentSMS,      of.sentEmail, of.reminderUUID};
  alert->dismiss();
  Q_EMIT remindAgainRequested(request);
  remove(number);
}

qsizetype AlertWindows::rescheduledReminderIndex(const QByteArray& RTFData) const {
  const auto& stored = m_queue->reminderRTFs.values();
  const auto found = std::find(stored.begin(), stored.end(), RTFData);
  return found == stored.end() ? 0 : found - stored.begin();
}

void AlertWindows::deleteReminderOf(quint64 number) {
  if (const ListedAlert* alert = find(number); alert && m_remover)
    m_remover->removeReminder(rescheduledReminderIndex(alert->request().RTFData));
  remove(number);
}

void AlertWindows::dropRestored(const AlertRequest& request) {
  if (request.reminderUUID.isEmpty())
    return;
  const auto twin = std::find_if(m_alerts.begin(), m_alerts.end(), [&](const ListedAlert& alert) {
    return alert.number() <= m_lastRestored &&
           alert.request().reminderUUID == request.reminderUUID &&
           alert.request().date == request.date;
  });
  if (twin != m_alerts.end())
    remove(twin->number());
}

Result<void> AlertWindows::hide(qsizetype position) {
  ListedAlert* chosen = alertAt(position);
  if (!chosen)
    return noSuchAlert(position);
  chosen->hide();
  Q_EMIT statesChanged();
  return {};
}

void AlertWindows::hideAllCurrentAlerts() {
  m_bringsNewestUp = false;
  for (ListedAlert& alert : m_alerts)
    alert.hide();
  Q_EMIT statesChanged();
}

void AlertWindows::showAllCurrentAlerts() {
  for (ListedAlert& alert : m_alerts)
    alert.show();
  makeWaiting();
  keepLevels();
  bringNewestUp();
  Q_EMIT statesChanged();
}

void AlertWindows::bringNewestUp() {
  const auto newest = std::find_if(m_alerts.rbegin(), m_alerts.rend(),
                                   [](const ListedAlert& alert) { return !alert.isDismissed(); });
  if (newest == m_alerts.rend() || !newest->isShown())
    return;
  if (!newest->window()) {
    m_bringsNewestUp = true;
    return;
  }
  newest->window()->activateWindow();
  // A busy window manager may have put them up in another order than they were asked for.
  AlertWindowController* onTop = newest->window();
  QTimer::singleShot(kSettleDelay, onTop, [onTop] {
    if (onTop->isVisible() && onTop->isActiveWindow())
      onTop->raise();
  });
}

void AlertWindows::hideForQuestion(int question) {
  m_bringsNewestUp = false;
  for (ListedAlert& alert : m_alerts)
    alert.hideForQuestion(question);
}

void AlertWindows::showAfterQuestion(int question) {
  if (question <= 1) {
    showAllCurrentAlerts();
    return;
  }
  for (ListedAlert& alert : m_alerts)
    alert.showAfterQuestion(question);
  makeWaiting();
  keepLevels();
}

void AlertWindows::closeAllCurrentAlerts() {
  if (m_prompter.ask(closeAllQuestion()) != No)
    QTimer::singleShot(kCloseAllDelay, this, &AlertWindows::okAll);
}

void AlertWindows::okAll() {
  while (!m_alerts.empty())
    remove(m_alerts.front().number());
}

void AlertWindows::followLink(const QUrl& address) {
  if (isOpenable(address))
    Q_EMIT linkChosen(address);
}

} // namespace tockwise
