// What reading and replacing whole files is made of. Any thread.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

#include <limits>
#include <utility>

namespace tockwise {

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int descriptor = -1) : m_descriptor(descriptor) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
  }
  int get() const { return m_descriptor; }
  bool isOpen() const { return m_descriptor >= 0; }

 private:
  int m_descriptor;
};

/// "path: what errno says"; NotFound for ENOENT, else Storage.
Error fileError(const QString& path, int number);

/// Never waits for a writer, as opening a pipe would. NotFound when there is no such file, Refused
/// when it has more bytes than that, Storage when it cannot be read or is no regular file.
Result<QByteArray> readRegularFile(const QString& path,
                                   qint64 mostBytes = std::numeric_limits<qint64>::max());

/// What a link points at, be it there or not; any other path as it is.
QString targetOf(const QString& path);

/// Writes bytes to file, which was made at the path temporary, and moves it to target, in the same
/// folder. On a failure the temporary file is removed.
Result<void> writeAndMove(Descriptor file, const QByteArray& temporary, const QString& target,
                          const QByteArray& bytes);

} // namespace tockwise
