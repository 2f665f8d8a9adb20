#include "platform/output_reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace tockwise {
namespace {

constexpr size_t kOneRead = 65536; // a flood must not hold up the rest of the program

} // namespace

OutputReader::OutputReader(qsizetype mostBytes, QObject* parent)
    : QObject(parent), m_half(mostBytes / 2) {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0)
    return;
  m_readingEnd = ends[0];
  m_writingEnd = ends[1];
  ::fcntl(m_readingEnd, F_SETFL, O_NONBLOCK); // the child's end waits, as programs expect
  m_notifier = std::make_unique<QSocketNotifier>(m_readingEnd, QSocketNotifier::Read);
  connect(m_notifier.get(), &QSocketNotifier::activated, this, &OutputReader::read);
}

OutputReader::~OutputReader() {
  m_notifier.reset();
  closeWritingEnd();
  if (m_readingEnd >= 0)
    ::close(m_readingEnd);
}

void OutputReader::closeWritingEnd() {
  if (m_writingEnd >= 0)
    ::close(m_writingEnd);
  m_writingEnd = -1;
}

void OutputReader::read() {
  QByteArray bytes(qsizetype(kOneRead), Qt::Uninitialized);
  const ssize_t length = ::read(m_readingEnd, bytes.data(), kOneRead);
  if (length < 0 && (errno == EAGAIN || errno == EINTR))
    return;
  if (length > 0) {
    bytes.truncate(length);
    keep(bytes);
    return;
  }
  m_notifier->setEnabled(false);
  if (m_draining)
    deleteLater();
}

void OutputReader::keep(const QByteArray& bytes) {
  if (m_draining)
    return;
  const qsizetype toBeginning = std::min(m_half - m_beginning.size(), bytes.size());
  m_beginning += bytes.first(toBeginning);
  m_end += bytes.sliced(toBeginning);
  if (const qsizetype surplus = m_end.size() - m_half; surplus > 0) {
    m_end.remove(0, surplus);
    m_leftOut += surplus;
  }
}

QString OutputReader::text() {
  // What is in the pipe now; a child that goes on writing is not waited for.
  for (int rounds = 0; m_notifier && m_notifier->isEnabled() && rounds < 4; ++rounds)
    read();
  if (m_leftOut == 0)
    return QString::fromUtf8(m_beginning + m_end);
  return QString::fromUtf8(m_beginning) + QStringLiteral("\n(%1 bytes left out)\n").arg(m_leftOut) +
         QString::fromUtf8(m_end);
}

void OutputReader::drain() {
  m_draining = true;
  if (!m_notifier || !m_notifier->isEnabled())
    deleteLater();
}

} // namespace tockwise
