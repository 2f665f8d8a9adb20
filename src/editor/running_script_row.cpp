#include "editor/running_script_row.h"

#include "base/harmless_text.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

constexpr int kNameWidth = 300; // pixels

/// "4:05"
QString minutesAndSeconds(double seconds) {
  const auto whole = qint64(std::floor(std::max(seconds, 0.0)));
  return QStringLiteral("%1:%2").arg(whole / 60).arg(whole % 60, 2, 10, QChar(u'0'));
}

} // namespace

RunningScriptRow::RunningScriptRow(const RunningScript& script, Date now, QWidget* parent)
    : QWidget(parent), m_script(script), m_times(this), m_stopButton(this) {
  const QString fileName = harmlessLine(QFileInfo(script.path).fileName());
  auto* name = new QLabel(this);
  QFont bold = name->font();
  bold.setBold(true);
  name->setFont(bold);
  name->setObjectName(QStringLiteral("scriptName"));
  name->setTextFormat(Qt::PlainText);
  name->setText(QFontMetrics(bold).elidedText(fileName, Qt::ElideMiddle, kNameWidth));
  name->setToolTip(harmlessLine(script.path).toHtmlEscaped());
  m_times.setObjectName(QStringLiteral("scriptTimes"));
  m_times.setTextFormat(Qt::PlainText);
  refresh(now);
  m_stopButton.setObjectName(QStringLiteral("stopButton"));
  m_stopButton.setText(QStringLiteral("Stop"));
  m_stopButton.setAccessibleName(QStringLiteral("Stop %1").arg(fileName));
  m_stopButton.setAutoDefault(false);
  connect(&m_stopButton, &QPushButton::clicked, this, &RunningScriptRow::stop);

  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addWidget(name);
  texts->addWidget(&m_times);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(16);
  row->addLayout(texts, 1);
  row->addWidget(&m_stopButton, 0, Qt::AlignVCenter);
}

void RunningScriptRow::refresh(Date now) {
  const QString running = QStringLiteral("Running for %1")
                              .arg(minutesAndSeconds(now.seconds - m_script.started.seconds));
  m_times.setText(m_stopping
                      ? running + QStringLiteral(", being stopped")
                      : running + QStringLiteral(", ended in %1 at the latest")
                                      .arg(minutesAndSeconds(m_script.ends.seconds - now.seconds)));
}

void RunningScriptRow::stop() {
  m_stopping = true;
  m_stopButton.setEnabled(false);
  Q_EMIT stopChosen();
}

} // namespace tockwise
