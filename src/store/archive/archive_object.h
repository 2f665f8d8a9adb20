// An object of a keyed archive, carried without being understood.
#pragma once

#include <QtGlobal>

#include <memory>

namespace tockwise {

class KeyedArchive;

/// Names one object of an archive and keeps the archive alive: shared and cyclic references in it
/// survive, and a writer copies from it all that the object refers to. Null when it names none.
/// Two are equal when they name the same object of the same archive.
class ArchiveObject {
 public:
  ArchiveObject() = default;
  ArchiveObject(std::shared_ptr<const KeyedArchive> archive, quint64 uid)
      : m_archive(std::move(archive)), m_uid(uid) {}

  bool isNull() const { return !m_archive; }
  const std::shared_ptr<const KeyedArchive>& archive() const { return m_archive; }
  /// The index into the archive's objects.
  quint64 uid() const { return m_uid; }

  friend bool operator==(const ArchiveObject& one, const ArchiveObject& other) {
    return one.m_archive == other.m_archive && one.m_uid == other.m_uid;
  }

 private:
  std::shared_ptr<const KeyedArchive> m_archive;
  quint64 m_uid = 0;
};

} // namespace tockwise
