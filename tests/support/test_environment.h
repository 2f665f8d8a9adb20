// A test's own home: HOME and the XDG folders point into a temporary folder that goes away with
// the object.
#pragma once

#include <QString>
#include <QTemporaryDir>

namespace tockwise {

class TestEnvironment {
 public:
  TestEnvironment();
  QString path(const QString& name) const { return m_folder.filePath(name); }

 private:
  QTemporaryDir m_folder;
};

} // namespace tockwise
