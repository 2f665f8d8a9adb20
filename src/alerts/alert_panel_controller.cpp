#include "alerts/alert_panel_controller.h"

#include "alerts/alert_placement.h"
#include "alerts/attention_request.h"
#include "alerts/key_guard.h"
#include "alerts/screen_places.h"
#include "ui_AlertPanel.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

constexpr int kSign = 40;      // pixels
constexpr int kTextWidth = 52; // of a line, in widths of a letter

} // namespace

AlertPanelController::AlertPanelController(const QString& errorMessage)
    : m_errorMessage(errorMessage), m_ui(std::make_unique<Ui::AlertPanel>()) {
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                 Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
  setAttribute(Qt::WA_ShowWithoutActivating);
  m_ui->setupUi(this);
  setWindowRole(QStringLiteral("error"));
  windowDidLoad();
  m_guard = new KeyGuard(this);
  connect(m_ui->closeButton, &QPushButton::clicked, this, &QDialog::accept);
  connect(this, &QDialog::finished, this, &AlertPanelController::closed);
}

AlertPanelController::~AlertPanelController() = default;

void AlertPanelController::windowDidLoad() {
  const QIcon sign = style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this);
  m_ui->signLabel->setPixmap(sign.pixmap(QSize(kSign, kSign), devicePixelRatioF()));
  m_ui->errorField->setPlainText(m_errorMessage);
  m_ui->errorField->document()->setDocumentMargin(0);
  m_ui->errorField->viewport()->setAutoFillBackground(false);
  applyLook();
  setAccessibleName(QStringLiteral("Error"));
  setAccessibleDescription(m_errorMessage);
  m_ui->closeButton->setFocus();
}

/// The text stands on the panel itself, not on the ground of a text field.
void AlertPanelController::applyLook() {
  QPalette look = QApplication::palette();
  look.setColor(QPalette::Text, look.color(QPalette::WindowText));
  m_ui->errorField->setPalette(look);
}

void AlertPanelController::fit(const QRect& workArea) {
  ensurePolished();
  QTextEdit& field = *m_ui->errorField;
  const int width =
      std::min(field.fontMetrics().averageCharWidth() * kTextWidth, workArea.width() / 2);
  QTextDocument text; // the field's own is laid out for the width that it has so far
  text.setDefaultFont(field.font());
  text.setDocumentMargin(0);
  text.setPlainText(m_errorMessage);
  text.setTextWidth(width);
  const int height = std::min(int(std::ceil(text.size().height())), workArea.height() / 2);
  field.setMinimumSize(width, std::max(height, kSign));
  layout()->activate();
  resize(minimumSizeHint().boundedTo(workArea.size()));
}

void AlertPanelController::present(QPoint corner) {
  move(corner);
  new AttentionRequest(*this);
  m_guard->start();
  show();
  raise();
}

bool AlertPanelController::isGuardingKeys() const {
  return m_guard->isGuarding();
}

bool AlertPanelController::event(QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange)
    applyLook();
  return QDialog::event(event);
}

AlertPanels::AlertPanels(QObject* parent) : QObject(parent) {}

AlertPanels::~AlertPanels() {
  // No event loop may come after this one to delete them later.
  for (auto& panel : m_alertPanelWindows) {
    panel->disconnect(this);
    delete panel.release();
  }
}

void AlertPanels::initWithError(const QString& text) {
  AlertPanelController* panel =
      m_alertPanelWindows.emplace_back(new AlertPanelController(text)).get();
  connect(panel, &AlertPanelController::closed, this, [this, panel] { remove(panel); });
  place(*panel);
}

void AlertPanels::place(AlertPanelController& panel) const {
  const QRect workArea = screenWithPointer()->availableGeometry();
  panel.fit(workArea);
  QList<QRect> others;
  for (const auto& other : m_alertPanelWindows) {
    if (other.get() != &panel)
      others += other->frameGeometry();
  }
  const auto isPanel = [](const QWidget& window) {
    return qobject_cast<const AlertPanelController*>(&window) != nullptr;
  };
  panel.present(placeAlert(panel.size() + QSize(0, kLikelyTitleBar), workArea, others,
                           visibleDialogs(isPanel)));
}

void AlertPanels::remove(const AlertPanelController* panel) {
  const auto found = std::find_if(m_alertPanelWindows.begin(), m_alertPanelWindows.end(),
                                  [&](const auto& each) { return each.get() == panel; });
  if (found != m_alertPanelWindows.end())
    m_alertPanelWindows.erase(found);
}

AlertPanelController* AlertPanels::panel(qsizetype position) const {
  return position >= 0 && position < count() ? m_alertPanelWindows[size_t(position)].get()
                                             : nullptr;
}

} // namespace tockwise
