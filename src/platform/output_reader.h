// Keeps what a child process writes, as far as there is room.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tockwise {

/// A pipe of which the child has the writing end. Main thread; never waits.
class OutputReader final : public QObject {
  Q_OBJECT
 public:
  /// mostBytes: what is kept, half from the beginning and half from the end.
  explicit OutputReader(qsizetype mostBytes, QObject* parent = nullptr);
  ~OutputReader() override;
  Q_DISABLE_COPY_MOVE(OutputReader)

  /// For the child, to be duplicated there; -1 when there is no pipe (the reason is in errno).
  int writingEnd() const { return m_writingEnd; }
  /// To be called when the child has it.
  void closeWritingEnd();

  /// What has been written so far, as UTF-8; says how much was left out.
  QString text();

  /// From now on nothing is kept, and the object deletes itself when nobody can write any more: a
  /// program that a script leaves behind must not end for want of a reader.
  void drain();

 private:
  void read();
  void keep(const QByteArray& bytes);

  qsizetype m_half;
  int m_readingEnd = -1;
  int m_writingEnd = -1;
  std::unique_ptr<QSocketNotifier> m_notifier;
  QByteArray m_beginning;
  QByteArray m_end;
  qint64 m_leftOut = 0;
  bool m_draining = false;
};

} // namespace tockwise
