#include "alerts/alert_window_controller.h"

#include "alerts/alert_look.h"
#include "alerts/attention_request.h"
#include "base/harmless_text.h"
#include "base/log.h"
#include "dates/calendar.h"
#include "store/text_cut.h"
#include "ui_AlertWindow.h"

#include <QApplication>
#include <QKeyEvent>

namespace tockwise {
namespace {

/// "%A, %B %d, %Y %I:%M %p"
constexpr QStringView kDatePattern = u"EEEE, MMMM dd, yyyy hh:mm a";
constexpr qsizetype kLongestTitle = 40;

QString titleOf(const QString& reminder) {
  const QString line = cutText(withoutDirections(reminder.simplified()), kLongestTitle);
  return line.isEmpty() ? QGuiApplication::applicationDisplayName() : line;
}

} // namespace

AlertWindowController::AlertWindowController(AlertRequest request, AlertLevel level,
                                             const UnarchiveText& unarchive)
    : m_request(std::move(request)), m_level(level), m_ui(std::make_unique<Ui::AlertWindow>()) {
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                 Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
  setAttribute(Qt::WA_ShowWithoutActivating);
  m_ui->setupUi(this);
  setWindowRole(QStringLiteral("alert"));
  setWindowTitle(titleOf(m_request.reminder));
  applyLook();
  windowDidLoad(unarchive);
  m_guard = new KeyGuard(this);
  connect(m_ui->okButton, &QPushButton::clicked, this, &AlertWindowController::okChosen);
  connect(m_ui->remindAgainButton, &QPushButton::clicked, this,
          &AlertWindowController::remindAgainChosen);
  connect(m_ui->deleteButton, &QPushButton::clicked, this, &AlertWindowController::deleteChosen);
  connect(m_ui->reminderView, &QTextBrowser::anchorClicked, this,
          &AlertWindowController::linkChosen);
}

AlertWindowController::~AlertWindowController() = default;

void AlertWindowController::windowDidLoad(const UnarchiveText& unarchive) {
  m_ui->reminderView->setReminderText(m_request.reminder);
  if (m_request.RTFData.isEmpty()) {
    logLine(QStringLiteral("No data to unarchive"));
  } else if (unarchive) {
    showRichText(unarchive);
  }

  const Calendar& calendar = Calendar::current();
  m_ui->dateField->setText(calendar.dateStringWithFormat(m_request.date, kDatePattern));
  const DateComponents due = calendar.components(m_request.date);
  m_ui->clockBadge->setTime(due.hour, due.minute);

  m_ui->emailBox->setChecked(m_request.sentEmail);
  m_ui->smsBox->setChecked(m_request.sentSMS);
  m_ui->resecheduledField->setVisible(m_request.rescheduled);
  if (m_request.rescheduled) {
    m_ui->remindAgainButton->hide();
    m_ui->deleteButton->show();
  }
  m_ui->okButton->setFocus();
}

void AlertWindowController::showRichText(const UnarchiveText& unarchive) {
  if (unarchive(m_request.RTFData, *m_ui->reminderView->document())) {
    m_ui->reminderView->takeRichText();
    m_ui->reminderView->followColours(palette());
    return;
  }
  logLine(QStringLiteral("Error: the rich text of the reminder can't be read"));
  m_ui->reminderView->setReminderText(m_request.reminder);
}

void AlertWindowController::applyLook() {
  const QPalette look = alertPalette(QApplication::palette());
  setPalette(look);
  setStyleSheet(alertStyleSheet(look));
  m_ui->reminderView->followColours(look);
}

bool AlertWindowController::emailState() const {
  return m_ui->emailBox->isChecked();
}

bool AlertWindowController::smsState() const {
  return m_ui->smsBox->isChecked();
}

void AlertWindowController::fit(const QRect& workArea) {
  ensurePolished();
  m_ui->reminderView->fitContents(workArea.height() * 11 / 20);
  layout()->activate();
  resize(sizeHint().boundedTo(workArea.size()));
}

void AlertWindowController::present(QPoint corner) {
  move(corner);
  new AttentionRequest(*this);
  m_guard->start();
  show();
  raise();
}

void AlertWindowController::expose() {
  if (m_dismissed)
    return;
  if (!isVisible() || isMinimized())
    bringBack();
  raise();
}

void AlertWindowController::bringBack() {
  if (m_dismissed)
    return;
  if (!isVisible() && m_corner)
    move(*m_corner); // a window that is mapped again would be placed anew
  setWindowState(windowState() & ~Qt::WindowMinimized);
  m_guard->start();
  show();
  raise();
}

void AlertWindowController::putAway() {
  if (!isVisible())
    return;
  m_corner = pos();
  hide();
}

void AlertWindowController::dismiss() {
  m_dismissed = true;
  hide();
}

void AlertWindowController::reject() {
  Q_EMIT okChosen();
}

bool AlertWindowController::event(QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange)
    applyLook();
  return QDialog::event(event);
}

void AlertWindowController::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
  case Qt::Key_PageUp:
    m_ui->reminderView->scrollBy(-1);
    break;
  case Qt::Key_PageDown:
    m_ui->reminderView->scrollBy(1);
    break;
  case Qt::Key_Home:
    m_ui->reminderView->scrollBy(-2);
    break;
  case Qt::Key_End:
    m_ui->reminderView->scrollBy(2);
    break;
  default:
    QDialog::keyPressEvent(event);
    return;
  }
  event->accept();
}

} // namespace tockwise
