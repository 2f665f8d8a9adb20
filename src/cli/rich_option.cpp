#include "cli/rich_option.h"

#include "richtext/picture_scaling.h"
#include "richtext/text_formats.h"
#include "store/archive/text_archive.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace tockwise {
namespace {

/// Of a text with its pictures. A message bus takes no message without end, and neither does a
/// menu.
constexpr qsizetype kMostArchiveBytes = 16 * 1024 * 1024;

/// Keeps off stderr, until its end, what the libraries that read pictures print there themselves
/// about damaged ones: a command that fails says why in one line of its own.
class QuietStandardError {
 public:
  QuietStandardError() : m_saved(dup(STDERR_FILENO)) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (m_saved >= 0 && nowhere >= 0)
      dup2(nowhere, STDERR_FILENO);
    if (nowhere >= 0)
      close(nowhere);
  }
  ~QuietStandardError() {
    std::fflush(stderr);
    if (m_saved < 0)
      return;
    dup2(m_saved, STDERR_FILENO);
    close(m_saved);
  }
  Q_DISABLE_COPY_MOVE(QuietStandardError)

 private:
  int m_saved;
};

} // namespace

Result<void> readRichOption(QVariantMap& options) {
  const auto option = options.find(QStringLiteral("rich"));
  if (option == options.end())
    return {};
  const QString path = option->toString();
  if (path.isEmpty())
    return Error{Error::Kind::Usage, QStringLiteral("--rich takes the name of a file")};
  const QuietStandardError quiet;
  auto text = readRichFile(path);
  if (!text)
    return text.error();
  if (text->isEmpty())
    return Error{Error::Kind::Refused, QStringLiteral("%1: there is no text in it").arg(path)};
  scaleAttachments(*text); // a message on the bus need not carry what is then thrown away
  const QByteArray archive = archiveText(*text);
  if (archive.size() > kMostArchiveBytes) {
    return Error{Error::Kind::Refused, QStringLiteral("%1: its text is larger than %2 MB")
                                           .arg(path)
                                           .arg(kMostArchiveBytes / 1024 / 1024)};
  }
  *option = archive;
  return {};
}

} // namespace tockwise
