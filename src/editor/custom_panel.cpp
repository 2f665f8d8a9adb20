#include "editor/custom_panel.h"

#include "editor/date_picker.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>

#include <optional>

namespace tockwise {
namespace {

struct ArrowStep {
  int key;
  qint64 seconds;
  qint64 secondsWithShift;
};

constexpr ArrowStep kArrowSteps[] = {
    {Qt::Key_Left, -60, -3600},
    {Qt::Key_Right, 60, 3600},
    {Qt::Key_Down, -86400, -2592000},
    {Qt::Key_Up, 86400, 2592000},
};

std::optional<qint64> stepOf(const QKeyEvent& event) {
  for (const ArrowStep& step : kArrowSteps) {
    if (event.key() == step.key)
      return event.modifiers().testFlag(Qt::ShiftModifier) ? step.secondsWithShift : step.seconds;
  }
  return std::nullopt;
}

} // namespace

CustomPanel::CustomPanel(QWidget* parent) : QDialog(parent) {
  setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                 Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
}

void CustomPanel::takeArrowKeysFrom(std::initializer_list<QAbstractButton*> buttons) {
  for (QAbstractButton* button : buttons)
    button->installEventFilter(this);
}

bool CustomPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    if (stepOf(*key)) {
      keyPressEvent(key);
      return true;
    }
  }
  return QDialog::eventFilter(watched, event);
}

void CustomPanel::keyPressEvent(QKeyEvent* event) {
  event->accept();
  if (const auto step = stepOf(*event)) {
    if (m_reminderDate)
      m_reminderDate->stepBy(*step);
    return;
  }
  switch (event->key()) {
  case Qt::Key_Tab:
    focusNextChild();
    break;
  case Qt::Key_Backtab:
    focusPreviousChild();
    break;
  case Qt::Key_Return:
  case Qt::Key_Enter:
  case Qt::Key_Escape:
    QDialog::keyPressEvent(event);
    break;
  default:
    break; // dropped: a stray letter must do nothing
  }
}

void CustomPanel::reject() {
  Q_EMIT closeRequested();
}

void CustomPanel::closeEvent(QCloseEvent* event) {
  event->ignore();
  Q_EMIT closeRequested();
}

} // namespace tockwise
