#include "editor/running_scripts_window.h"

#include "editor/running_script_row.h"

#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace tockwise {
namespace {

constexpr int kMostHeight = 360; // pixels; more scripts than fit are scrolled to
constexpr std::chrono::seconds kRefresh{1};

} // namespace

RunningScriptsWindow::RunningScriptsWindow(ScriptHost& scripts, const Clock& clock,
                                           std::chrono::milliseconds showAfter)
    : QWidget(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      m_scripts(scripts),
      m_clock(clock),
      m_showAfter(showAfter) {
  setObjectName(QStringLiteral("RunningScripts"));
  setWindowTitle(QStringLiteral("Running Scripts"));
  setAccessibleName(QStringLiteral("Running scripts"));
  setAttribute(Qt::WA_ShowWithoutActivating);
  m_everySecond.setInterval(kRefresh);
  connect(&m_everySecond, &QTimer::timeout, this, &RunningScriptsWindow::refresh);
  connect(&m_scripts, &ScriptHost::started, this, &RunningScriptsWindow::started);
  connect(&m_scripts, &ScriptHost::finished, this,
          [this](const ScriptEnd& end) { finished(end.id); });
}

RunningScriptsWindow::~RunningScriptsWindow() = default;

void RunningScriptsWindow::started(const RunningScript& script) {
  if (isVisible()) {
    addRow(script);
    refresh();
  }
  QTimer::singleShot(m_showAfter, this, [this, id = script.id] {
    const auto running = m_scripts.running();
    if (std::any_of(running.begin(), running.end(),
                    [id](const RunningScript& each) { return each.id == id; }))
      appear();
  });
}

void RunningScriptsWindow::finished(quint64 id) {
  if (const auto row = m_rows.find(id); row != m_rows.end()) {
    row->second->deleteLater();
    row->second->hide();
    m_layout->removeWidget(row->second);
    m_rows.erase(row);
    fitHeight();
  }
  if (m_rows.empty())
    hide();
}

void RunningScriptsWindow::build() {
  auto* intro = new QLabel(QStringLiteral("These scripts were started by your reminders:"), this);
  m_scroll = new QScrollArea(this);
  m_scroll->setFrameShape(QFrame::NoFrame);
  m_scroll->setWidgetResizable(true);
  m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_scroll->setFocusPolicy(Qt::NoFocus);
  auto* list = new QWidget(m_scroll);
  m_layout = new QVBoxLayout(list);
  m_layout->setContentsMargins(0, 0, 0, 0);
  m_layout->setSpacing(14);
  m_layout->setAlignment(Qt::AlignTop);
  m_scroll->setWidget(list);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(20, 16, 20, 18);
  layout->setSpacing(14);
  layout->addWidget(intro);
  layout->addWidget(m_scroll);
}

void RunningScriptsWindow::addRow(const RunningScript& script) {
  if (m_rows.contains(script.id))
    return;
  auto* row = new RunningScriptRow(script, m_clock.now(), m_scroll->widget());
  connect(row, &RunningScriptRow::stopChosen, this, [this, id = script.id] {
    m_scripts.stop(id);
    refresh();
  });
  m_layout->addWidget(row);
  row->show();
  m_rows.emplace(script.id, row);
  fitHeight();
}

void RunningScriptsWindow::fitHeight() {
  m_layout->activate();
  const QSize contents = m_layout->sizeHint();
  m_scroll->setMinimumWidth(contents.width() + m_scroll->contentsMargins().left() + 16);
  m_scroll->setFixedHeight(std::min(contents.height(), kMostHeight));
  adjustSize();
}

void RunningScriptsWindow::refresh() {
  for (const auto& [id, row] : m_rows)
    row->refresh(m_clock.now());
}

void RunningScriptsWindow::appear() {
  if (!m_layout)
    build();
  for (const RunningScript& script : m_scripts.running())
    addRow(script);
  refresh();
  show();
}

void RunningScriptsWindow::showEvent(QShowEvent* event) {
  m_everySecond.start();
  QWidget::showEvent(event);
}

void RunningScriptsWindow::hideEvent(QHideEvent* event) {
  m_everySecond.stop();
  QWidget::hideEvent(event);
}

void RunningScriptsWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape)
    close();
  else
    QWidget::keyPressEvent(event);
}

} // namespace tockwise
