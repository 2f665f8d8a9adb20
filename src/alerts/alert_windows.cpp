#include "alerts/alert_windows.h"

#include "alerts/alert_placement.h"
#include "alerts/alert_rich_text.h"

#include <QApplication>
#include <QCursor>
#include <QPointer>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace tockwise {
namespace {

constexpr int kSettleDelay = 150;   // milliseconds
constexpr int kCloseAllDelay = 100; // milliseconds: the windows come back before they close
constexpr int kTitleBar = 32;       // until a window has been mapped its frame is not known

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

QScreen* screenWithPointer() {
  QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
  return screen ? screen : QGuiApplication::primaryScreen();
}

/// The questions and editors of ours that are on the screen.
QList<QRect> openDialogs() {
  QList<QRect> result;
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (const QWidget* window : windows) {
    const bool isDialog = window->isVisible() && window->windowType() == Qt::Dialog &&
                          !qobject_cast<const AlertWindowController*>(window);
    if (isDialog)
      result += window->frameGeometry();
  }
  return result;
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
      m_unarchive(std::move(unarchive)) {}

AlertWindows::~AlertWindows() {
  // No event loop may come after this one to delete them later.
  for (WindowPointer& window : m_windows)
    delete window.release();
}

qsizetype AlertWindows::open(const AlertRequest& request, AlertLevel level) {
  m_sounds.playAlertSound();
  m_windows.emplace_back(new AlertWindowController(request, level, m_unarchive));
  AlertWindowController* window = m_windows.back().get();
  connectWindow(window);
  place(*window);
  keepLevels();
  const qsizetype position = count() - 1;
  Q_EMIT opened(request.reminderUUID);
  Q_EMIT countChanged();
  return position;
}

void AlertWindows::connectWindow(AlertWindowController* window) {
  connect(window, &AlertWindowController::okChosen, this, [this, window] { remove(window); });
  connect(window, &AlertWindowController::remindAgainChosen, this,
          [this, window] { remindAgainFrom(window); });
  connect(window, &AlertWindowController::deleteChosen, this,
          [this, window] { deleteReminderOf(window); });
  connect(window, &AlertWindowController::linkChosen, this, &AlertWindows::followLink);
}

void AlertWindows::place(AlertWindowController& window) const {
  QScreen* screen = screenWithPointer();
  const QRect workArea = screen->availableGeometry();
  window.fit(workArea);
  QList<QRect> others;
  for (const WindowPointer& other : m_windows) {
    if (other.get() != &window && other->isVisible())
      others += other->frameGeometry();
  }
  window.present(placeAlert(window.size() + QSize(0, kTitleBar), workArea, others, openDialogs()));
}

void AlertWindows::keepLevels() {
  for (const WindowPointer& window : m_windows) {
    if (window->level() == AlertLevel::MainMenu && window->isVisible())
      window->raise();
  }
}

std::vector<AlertEntry> AlertWindows::entries() const {
  std::vector<AlertEntry> result;
  for (const WindowPointer& window : m_windows) {
    const AlertRequest& request = window->request();
    result.push_back({qsizetype(result.size()), request.reminderUUID, request.reminder,
                      request.RTFData, request.date, window->isVisible(), request.rescheduled});
  }
  return result;
}

AlertWindowController* AlertWindows::window(qsizetype position) const {
  return position >= 0 && position < count() ? m_windows[size_t(position)].get() : nullptr;
}

qsizetype AlertWindows::positionOf(const AlertWindowController* window) const {
  const auto found = std::find_if(m_windows.begin(), m_windows.end(),
                                  [&](const WindowPointer& each) { return each.get() == window; });
  return found == m_windows.end() ? -1 : found - m_windows.begin();
}

Result<void> AlertWindows::exposeCurrentAlert(qsizetype position) {
  AlertWindowController* chosen = window(position);
  if (!chosen)
    return noSuchAlert(position);
  chosen->expose();
  keepLevels();
  return {};
}

Result<void> AlertWindows::OK(qsizetype position) {
  AlertWindowController* chosen = window(position);
  if (!chosen)
    return noSuchAlert(position);
  remove(chosen);
  return {};
}

Result<void> AlertWindows::remindAgain(qsizetype position) {
  AlertWindowController* chosen = window(position);
  if (!chosen)
    return noSuchAlert(position);
  remindAgainFrom(chosen);
  return {};
}

Result<void> AlertWindows::deleteReminder(qsizetype position) {
  AlertWindowController* chosen = window(position);
  if (!chosen)
    return noSuchAlert(position);
  deleteReminderOf(chosen);
  return {};
}

/// Takes the window off the list, if it still is on it.
void AlertWindows::remove(AlertWindowController* window) {
  const qsizetype position = positionOf(window);
  if (position < 0)
    return;
  const QString uuid = window->request().reminderUUID;
  window->dismiss();
  m_windows.erase(m_windows.begin() + position);
  Q_EMIT closed(uuid);
  Q_EMIT countChanged();
}

void AlertWindows::remindAgainFrom(AlertWindowController* window) {
  if (window->isDismissed())
    return;
  const AlertRequest& alert = window->request();
  const RemindAgainRequest request{alert.reminderType, alert.reminder,       alert.RTFData,
                                   window->smsState(), window->emailState(), alert.reminderUUID};
  window->dismiss();
  const QPointer<AlertWindowController> guarded(window);
  Q_EMIT remindAgainRequested(request);
  if (guarded)
    remove(guarded);
}

qsizetype AlertWindows::rescheduledReminderIndex(const QByteArray& RTFData) const {
  const auto& stored = m_queue->reminderRTFs.values();
  const auto found = std::find(stored.begin(), stored.end(), RTFData);
  return found == stored.end() ? 0 : found - stored.begin();
}

void AlertWindows::deleteReminderOf(AlertWindowController* window) {
  const QPointer<AlertWindowController> guarded(window);
  if (m_remover)
    m_remover->removeReminder(rescheduledReminderIndex(window->request().RTFData));
  if (guarded)
    remove(guarded);
}

Result<void> AlertWindows::hide(qsizetype position) {
  AlertWindowController* chosen = window(position);
  if (!chosen)
    return noSuchAlert(position);
  chosen->putAway();
  return {};
}

void AlertWindows::hideAllCurrentAlerts() {
  for (const WindowPointer& window : m_windows)
    window->putAway();
}

void AlertWindows::showAllCurrentAlerts() {
  for (const WindowPointer& window : m_windows)
    window->bringBack();
  keepLevels();
  const auto newest = std::find_if(m_windows.rbegin(), m_windows.rend(),
                                   [](const WindowPointer& each) { return !each->isDismissed(); });
  if (newest == m_windows.rend())
    return;
  (*newest)->activateWindow();
  // A busy window manager may have put them up in another order than they were asked for.
  AlertWindowController* onTop = newest->get();
  QTimer::singleShot(kSettleDelay, onTop, [onTop] {
    if (onTop->isVisible() && onTop->isActiveWindow())
      onTop->raise();
  });
}

void AlertWindows::closeAllCurrentAlerts() {
  hideAllCurrentAlerts();
  const int answer = m_prompter.ask(closeAllQuestion());
  showAllCurrentAlerts();
  if (answer != No)
    QTimer::singleShot(kCloseAllDelay, this, &AlertWindows::okAll);
}

void AlertWindows::okAll() {
  while (!m_windows.empty())
    remove(m_windows.front().get());
}

void AlertWindows::followLink(const QUrl& address) {
  if (isOpenable(address))
    Q_EMIT linkChosen(address);
}

} // namespace tockwise
