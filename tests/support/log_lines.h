// Lets the program's log lines through in a test that looks at them, whatever the rules in the
// environment say.
#pragma once

#include "base/log.h"

#include <QStringList>

#include <cstring>
#include <utility>

namespace tockwise {

/// May be called again.
inline void enableLogLines() {
  static QLoggingCategory::CategoryFilter before = nullptr;
  const auto letThrough = [](QLoggingCategory* category) {
    before(category);
    if (std::strcmp(category->categoryName(), "tockwise") == 0)
      category->setEnabled(QtInfoMsg, true);
  };
  if (before) // a filter that is put around itself would call itself without end
    return;
  before =
      QLoggingCategory::installFilter(nullptr); // whatever was there, and known before ours runs
  QLoggingCategory::installFilter(letThrough);
}

/// The program's log lines for as long as it lives. One at a time.
class LogLines {
 public:
  LogLines() {
    enableLogLines();
    s_lines.clear();
    s_before = qInstallMessageHandler(collect);
  }
  ~LogLines() { qInstallMessageHandler(s_before); }
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;

  /// What was logged and has not been taken.
  const QStringList& lines() const { return s_lines; }
  /// What was logged since the last call.
  QStringList take() { return std::exchange(s_lines, QStringList()); }

 private:
  static void collect(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (std::strcmp(context.category, "tockwise") == 0)
      s_lines.append(text);
    else if (s_before)
      s_before(type, context, text);
  }

  static inline QStringList s_lines;
  static inline QtMessageHandler s_before = nullptr;
};

} // namespace tockwise
