// Tests of permissions that hold for the administrator as well, who may read and write everything.
#pragma once

#include <QFile>
#include <QStringList>

#include <sys/stat.h>
#include <unistd.h>

namespace tockwise {

/// While it lives, this process has no more rights than anybody: the administrator's takes the
/// identity of somebody else, for whom those folders are opened; another user's stays as it is. The
/// folders are absolute; what they lie in must be open already.
class OrdinaryUser {
 public:
  explicit OrdinaryUser(const QStringList& folders) {
    if (::geteuid() != 0)
      return;
    constexpr uid_t kNobody = 65534;
    for (const QString& folder : folders) {
      if (::chmod(QFile::encodeName(folder).constData(), 0777) != 0)
        qFatal("%s cannot be opened to others", qPrintable(folder));
    }
    if (::seteuid(kNobody) != 0)
      qFatal("the administrator cannot be somebody else");
    m_changed = true;
  }
  ~OrdinaryUser() {
    if (m_changed && ::seteuid(0) != 0)
      qFatal("the administrator is gone");
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  bool m_changed = false;
};

} // namespace tockwise
