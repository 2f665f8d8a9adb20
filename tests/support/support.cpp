#include "support/fakes.h"
#include "support/test_environment.h"

#include <QDir>

namespace tockwise {

TestEnvironment::TestEnvironment() {
  Q_ASSERT(m_folder.isValid());
  const auto point = [this](const char* variable, const QString& name) {
    QDir().mkpath(path(name));
    qputenv(variable, path(name).toUtf8());
  };
  point("HOME", QStringLiteral("home"));
  point("XDG_CONFIG_HOME", QStringLiteral("home/.config"));
  point("XDG_STATE_HOME", QStringLiteral("home/.local/state"));
  point("XDG_DATA_HOME", QStringLiteral("home/.local/share"));
  point("XDG_CACHE_HOME", QStringLiteral("home/.cache"));
}

} // namespace tockwise
