// The preferences store: one binary property list that holds every setting and the whole queue.
//
// Reading sees a file that another process changed; writing is atomic (temporary file in the same
// folder, fsync, rename, fsync of the folder; mode 0600 in a folder of mode 0700) and happens only
// when something changed. docs/store-format.md describes the file.
#pragma once

#include "base/clock.h"
#include "base/result.h"
#include "store/plist_reader.h"
#include "store/plist_writer.h"
#include "store/settings.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace tockwise {

/// Where the store says which release wrote it.
inline const QString kDataVersion = QStringLiteral("dataVersion");

/// Values that their owner keeps decoded and that the store only carries between it and the file
/// (the sixteen columns of the queue and what is saved beside them).
class StoreSection {
 public:
  virtual ~StoreSection() = default;
  /// The keys that belong to this section; the store holds no values of its own for them.
  virtual QStringList keys() const = 0;
  /// Counts changes. Called at each tick: cheap.
  virtual quint64 revision() const = 0;
  /// Whether there is nothing in it that a user would miss.
  virtual bool isEmpty() const = 0;
  /// What a reading had to mend, so that memory and file differ.
  struct Reading {
    int foreignElements = 0; // of a kind that does not belong there
    bool repaired = false;   // missing or doubled values were made
  };
  /// Takes the values of the section's keys from the root dictionary of a file.
  virtual Reading readFrom(const plist::Reader& reader) = 0;
  /// Adds every key with its value.
  virtual void writeTo(plist::Writer& writer, std::vector<plist::Writer::Object>& keys,
                       std::vector<plist::Writer::Object>& values) const = 0;
};

/// What happened while the file was read, for the user to be told.
struct StoreNotice {
  QString damagedKeptAs;   // where an unreadable file was put aside, or ""
  QString restoredFrom;    // the copy that was taken in its place, or ""
  int foreignElements = 0; // values of a foreign kind that read as empty ones
  QString originalKeptAs;  // the copy kept of the file as it was when there were any, or ""
  bool isEmpty() const { return damagedKeptAs.isEmpty() && foreignElements == 0; }
};

/// Main thread. Holds the store's lock for its whole life; the lock dies with its holder.
class PreferencesStore final : public Settings {
 public:
  struct Paths {
    QString file;    // …/tockwise/com.quillstone.Tockwise.plist
    QString backups; // folder of the copies kept of it
    /// From XDG_CONFIG_HOME and XDG_STATE_HOME.
    static Paths ofUser();
  };

  /// Takes the lock (Busy when another process holds it) and reads the file; a missing file is an
  /// empty store. A file that is no property list is put aside under a dated name and the newest
  /// good copy of the backups taken; see notice(). Storage when the folder cannot be made or the
  /// file cannot be read at all.
  static Result<std::unique_ptr<PreferencesStore>> open(const Paths& paths, const Clock& clock);
  ~PreferencesStore() override;

  /// Adds defaults: a missing key reads as this value.
  void registerDefaults(std::map<QString, Value> defaults);
  /// Takes the values of the file as it was opened: the section's keys go to the section, all
  /// others are the store's. Once, right after open(). The section must outlive the store's last
  /// synchronize().
  void attach(StoreSection& section);

  const StoreNotice& notice() const;
  const Paths& paths() const;
  /// The section's keys read as null here: their owner has them.
  Value value(const QString& key) const override;
  bool isSet(const QString& key) const override;
  bool isUnread(const QString& key) const override;
  void setValue(const QString& key, Value value) override;

  /// With the next write the file names the key in place of its value, which somebody else keeps
  /// from now on; in memory it reads as it was set or provided. A file in which another process
  /// gave the key a value ends this.
  void keepElsewhere(const QString& key);
  /// The value is written to the file again.
  void keepHere(const QString& key);
  bool isKeptElsewhere(const QString& key) const;
  /// The value of a key that is kept elsewhere, for those who read it: nothing is to be written.
  void provide(const QString& key, Value value);
  /// Takes the values of what is kept elsewhere out of the copies that were kept of the file.
  void cleanCopies();
  /// Called after setValue() changed a value, before it is written.
  std::function<void(const QString& key)> onValueSet;

  /// Adopts what another process changed in the file (keys changed here since the last write win;
  /// the section as a whole likewise, and then the other's file is kept in the backups), and
  /// writes what changed here. A failed write leaves the old file whole, is tried again at the
  /// next call, and is reported to onWriteFailure once until a write succeeds. When nothing
  /// changed this costs one look at the file's state.
  void synchronize() override;

  /// Whether everything is on the disk.
  bool isSaved() const;
  /// Why the last write failed; nothing when it did not.
  const std::optional<Error>& writeFailure() const;
  /// Called before the file is written, for what has to be on the disk before it.
  std::function<void()> beforeWriting;
  /// Called when writing starts to fail (disk full, read-only folder, lost home).
  std::function<void(const Error&)> onWriteFailure;
  /// Called after another process's changes were adopted.
  std::function<void()> onChangedByOthers;
  /// Called when another process left a file that is damaged or holds foreign values.
  std::function<void(const StoreNotice&)> onNotice;
  /// Bytes written to the file since the store was opened; for measurements.
  qint64 bytesWritten() const;

 private:
  class Private;
  explicit PreferencesStore(std::unique_ptr<Private> d);
  std::unique_ptr<Private> d;
};

} // namespace tockwise
