#include "menu/ui/tray_controller.h"

#include "menu/ui/clock_icon.h"
#include "menu/ui/exported_menu.h"
#include "menu/ui/menu_window.h"
#include "menu/ui/native_menu.h"
#include "menu/ui/notifier_item.h"

#include <QCursor>
#include <QGuiApplication>
#include <QSystemTrayIcon>
#include <QTimer>

#include <chrono>
#include <utility>

namespace tockwise {
namespace {

const QString kProgram = QStringLiteral("Tockwise");
constexpr int kLongestLook = 100;                   // seconds
constexpr std::chrono::milliseconds kPatience{500}; // with a panel that does not answer

// There, a pop-up lands anywhere, and no tray takes windows in.
bool isOnWayland() {
  return QGuiApplication::platformName().startsWith(u"wayland");
}

} // namespace

TrayController::TrayController(MenuSource source, const QDBusConnection& connection,
                               QObject* parent)
    : QObject(parent),
      m_source(std::move(source)),
      m_exportedLive(m_source),
      m_popupLive(m_source),
      m_exported(new ExportedMenu(m_exportedLive, connection, this)),
      m_notifier(new NotifierItem(connection, ExportedMenu::objectPath(), this)) {
  connect(m_exported, &ExportedMenu::openChanged, this, &TrayController::updateOpen);
  connect(m_exported, &ExportedMenu::activated, this, &TrayController::choose);
  connect(m_notifier, &NotifierItem::hostChanged, this, &TrayController::followHost);
  connect(m_notifier, &NotifierItem::hostKnown, this, [this] {
    followHost();
    settle();
  });
  connect(m_notifier, &NotifierItem::menuRequested, this, &TrayController::popUp);
}

TrayController::~TrayController() = default;

void TrayController::start() {
  updateItem();
  m_notifier->start();
  QTimer::singleShot(kPatience, this, &TrayController::settle);
  lookLater(1);
}

// From the event loop: what has to be told to the display for the item is on its way by then.
void TrayController::settle() {
  if (!std::exchange(m_settled, true))
    QMetaObject::invokeMethod(this, &TrayController::settled, Qt::QueuedConnection);
}

// An XEmbed tray that comes later than we do is entered without a word to us; these looks, ever
// rarer, are for those who want to know. They end: an idle program wakes for nothing.
void TrayController::lookLater(int seconds) {
  QTimer::singleShot(seconds * 1000, this, [this, seconds] {
    checkTray();
    if (!hasTray() && seconds < kLongestLook)
      lookLater(seconds * 3);
  });
}

bool TrayController::hasTray() const {
  return m_notifier->hasHost() || (m_embedded && QSystemTrayIcon::isSystemTrayAvailable());
}

void TrayController::followHost() {
  if (m_notifier->hasHost())
    hideEmbedded();
  else
    showEmbedded();
  checkTray();
}

void TrayController::checkTray() {
  const bool available = hasTray();
  if (std::exchange(m_hadTray, available) != available)
    Q_EMIT trayAvailableChanged(available);
}

NativeMenu& TrayController::popup() {
  if (!m_popup) {
    m_popup = std::make_unique<NativeMenu>(m_popupLive);
    connect(m_popup.get(), &NativeMenu::activated, this, &TrayController::choose);
    connect(m_popup.get(), &QMenu::aboutToShow, this, &TrayController::updateOpen,
            Qt::QueuedConnection);
    connect(m_popup.get(), &QMenu::aboutToHide, this, &TrayController::updateOpen,
            Qt::QueuedConnection);
  }
  return *m_popup;
}

void TrayController::showEmbedded() {
  if (m_embedded || isOnWayland())
    return;
  m_embedded = std::make_unique<QSystemTrayIcon>();
  // Any button opens the menu. It is no context menu of the item's, which would open at its end.
  connect(m_embedded.get(), &QSystemTrayIcon::activated, this,
          [this](QSystemTrayIcon::ActivationReason) { popUp(QCursor::pos()); });
  updateItem();
  m_embedded->show();
}

void TrayController::hideEmbedded() {
  if (m_popup)
    m_popup->close();
  m_embedded.reset();
}

void TrayController::popUp(QPoint place) {
  if (isOnWayland()) {
    showMenuWindow();
    return;
  }
  if (popup().isVisible())
    return;
  popup().popUpAt(place);
}

void TrayController::showMenu() {
  if (m_embedded && QSystemTrayIcon::isSystemTrayAvailable())
    popUp(QCursor::pos());
  else
    showMenuWindow();
}

void TrayController::showMenuWindow() {
  if (!m_window) {
    m_window = std::make_unique<MenuWindow>(m_source);
    connect(m_window.get(), &MenuWindow::visibilityChanged, this, &TrayController::updateOpen);
    connect(m_window.get(), &MenuWindow::activated, this, &TrayController::choose);
    connect(m_window.get(), &MenuWindow::documentDropped, this, &TrayController::documentDropped);
  }
  m_window->show();
  m_window->raise();
  m_window->activateWindow();
}

void TrayController::choose(const MenuActivation& activation) {
  if (activation.action == QStringView(kShowMenuWindow))
    showMenuWindow();
  else
    Q_EMIT activated(activation);
}

void TrayController::updateOpen() {
  const bool open = m_exported->isOpen() || (m_popup && m_popup->isVisible()) ||
                    (m_window && m_window->isVisible());
  if (std::exchange(m_open, open) != open)
    Q_EMIT visibilityChanged(open);
}

void TrayController::refresh() {
  if (m_exported->isOpen())
    m_exported->refresh();
  if (m_popup && m_popup->isVisible())
    m_popup->refresh();
  if (m_window && m_window->isVisible())
    m_window->refresh();
}

void TrayController::setClockOption(qint64 option) {
  if (option < kFirstClock || option > kLastClock || option == m_clockOption)
    return;
  m_clockOption = int(option);
  updateItem();
}

void TrayController::setStatusTitle(const QString& title) {
  if (m_statusTitle == title)
    return;
  m_statusTitle = title;
  updateItem();
}

void TrayController::setToolTip(const QString& text) {
  if (m_toolTip == text)
    return;
  m_toolTip = text;
  m_notifier->setToolTip(kProgram, text);
  if (m_embedded)
    m_embedded->setToolTip(text.isEmpty() ? kProgram : kProgram + u'\n' + text);
}

void TrayController::updateItem() {
  const QIcon icon = clockIcon(m_clockOption, m_statusTitle);
  m_notifier->setIcon(icon);
  if (m_embedded) {
    m_embedded->setIcon(icon);
    m_embedded->setToolTip(m_toolTip.isEmpty() ? kProgram : kProgram + u'\n' + m_toolTip);
  }
}

} // namespace tockwise
