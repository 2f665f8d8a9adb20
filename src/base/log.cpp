#include "base/log.h"

namespace tockwise {

Q_LOGGING_CATEGORY(lcTockwise, "tockwise")

void logLine(const QString& line) {
  qCInfo(lcTockwise).noquote() << line;
}

} // namespace tockwise
