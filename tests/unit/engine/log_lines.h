// Collects what is written to the system log while it lives.
#pragma once

#include <QLoggingCategory>
#include <QStringList>
#include <QtGlobal>

namespace tockwise {

class LogLines {
 public:
  LogLines() {
    s_lines = &lines;
    m_before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& line) { *s_lines += line; });
    // Rules of the environment may have switched the lines off.
    m_filter = QLoggingCategory::installFilter(
        [](QLoggingCategory* category) { category->setEnabled(QtInfoMsg, true); });
  }
  ~LogLines() {
    qInstallMessageHandler(m_before);
    QLoggingCategory::installFilter(m_filter);
  }
  Q_DISABLE_COPY_MOVE(LogLines)

  QStringList lines;

 private:
  static inline QStringList* s_lines = nullptr;
  QtMessageHandler m_before = nullptr;
  QLoggingCategory::CategoryFilter m_filter = nullptr;
};

} // namespace tockwise
