#include "cli/rich_option.h"

#include "richtext/picture_scaling.h"
#include "richtext/text_formats.h"
#include "store/archive/text_archive.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace tockwise {
namespace {

// Libraries that decode pictures complain on stderr themselves, where a command writes one line of
// its own. For the one thread of a command.
class QuietErrors {
 public:
  QuietErrors() {
    std::fflush(stderr);
    m_kept = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (m_kept >= 0 && nowhere >= 0)
      ::dup2(nowhere, STDERR_FILENO);
    if (nowhere >= 0)
      ::close(nowhere);
  }
  ~QuietErrors() {
    if (m_kept < 0)
      return;
    std::fflush(stderr);
    ::dup2(m_kept, STDERR_FILENO);
    ::close(m_kept);
  }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;

 private:
  int m_kept = -1;
};

} // namespace

Result<void> readRichOption(QVariantMap& options) {
  const auto option = options.find(QStringLiteral("rich"));
  if (option == options.end())
    return {};
  const QString path = option->toString();
  const QuietErrors quiet;
  auto text = readRichFile(path);
  if (!text)
    return text.error();
  if (text->isEmpty())
    return Error{Error::Kind::Refused, QStringLiteral("%1: there is no text in it").arg(path)};
  scaleAttachments(*text); // a message on the bus need not carry what is then thrown away
  *option = archiveText(*text);
  return {};
}

} // namespace tockwise
