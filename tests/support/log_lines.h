// Lets the program's log lines through in a test that looks at them, whatever the rules in the
// environment say.
#pragma once

#include "base/log.h"

#include <cstring>

namespace tockwise {

inline void enableLogLines() {
  static QLoggingCategory::CategoryFilter before = nullptr;
  before = QLoggingCategory::installFilter([](QLoggingCategory* category) {
    if (before)
      before(category);
    if (std::strcmp(category->categoryName(), "tockwise") == 0)
      category->setEnabled(QtInfoMsg, true);
  });
}

} // namespace tockwise
