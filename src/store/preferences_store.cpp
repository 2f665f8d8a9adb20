#include "store/preferences_store.h"

#include "base/log.h"
#include "store/kept_elsewhere.h"
#include "store/root_dictionary.h"
#include "store/store_backups.h"
#include "store/store_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <set>

namespace tockwise {
namespace {

const QString kFolder = QStringLiteral("tockwise");
const QString kFileName = QStringLiteral("com.quillstone.Tockwise.plist");

QString xdgFolder(const char* variable, const QString& underHome) {
  const QString folder = qEnvironmentVariable(variable);
  return QDir::isAbsolutePath(folder) ? folder : QDir::home().filePath(underHome);
}

} // namespace

PreferencesStore::Paths PreferencesStore::Paths::ofUser() {
  const QDir config(xdgFolder("XDG_CONFIG_HOME", QStringLiteral(".config")));
  const QDir state(xdgFolder("XDG_STATE_HOME", QStringLiteral(".local/state")));
  return {config.filePath(kFolder + u'/' + kFileName),
          state.filePath(kFolder + QStringLiteral("/backups"))};
}

class PreferencesStore::Private {
 public:
  Private(Paths paths, const Clock& clock)
      : paths(std::move(paths)),
        encodedFile(QFile::encodeName(this->paths.file)),
        clock(clock),
        backups(this->paths.backups) {}

  Result<void> openFile();
  void putAside(const Error& error);
  void takeSettings(const plist::Reader& reader);
  Result<QString> keepCopy();
  enum class Adoption { Nothing, Adopted, Noticed };
  Adoption adoptOthers(const std::optional<FileIdentity>& seen);
  void readSection(const plist::Reader& reader);
  void moveAside();
  bool isSectionSaved() const { return !section || section->revision() == savedRevision; }
  void keepCopyBeforeWriting();
  QString dataVersion() const;
  QByteArray encode() const;

  Paths paths;
  QByteArray encodedFile;
  const Clock& clock;
  StoreBackups backups;
  FileLock lock;
  StoreNotice notice;
  std::map<QString, Value> defaults;
  std::map<QString, Value> values;
  std::set<QString> changed;   // keys set since the last write
  std::set<QString> elsewhere; // keys whose values the file does not hold
  StoreSection* section = nullptr;
  quint64 savedRevision = 0;
  bool savedEmpty = false; // the section as it is on the disk
  bool mustWrite = false;
  std::optional<Error> failure;         // of the last write
  std::optional<FileIdentity> identity; // of the file as it was last read or written
  std::optional<plist::Reader> opened;  // until the section has read it
  // A file that could not be read lately: somebody may still be writing it.
  std::optional<FileIdentity> unreadable;
  Date unreadableSince;
  bool copyFailed = false;
  QString versionOnDisk;
  qint64 bytesWritten = 0;
};

PreferencesStore::PreferencesStore(std::unique_ptr<Private> d) : d(std::move(d)) {}
PreferencesStore::~PreferencesStore() = default;

Result<std::unique_ptr<PreferencesStore>> PreferencesStore::open(const Paths& paths,
                                                                 const Clock& clock) {
  auto d = std::make_unique<Private>(paths, clock);
  if (const auto made = makePrivateFolder(QFileInfo(paths.file).path()); !made)
    return made.error();
  auto lock = FileLock::take(paths.file + QStringLiteral(".lock"));
  if (!lock)
    return lock.error();
  d->lock = std::move(*lock);
  if (const auto opened = d->openFile(); !opened)
    return opened.error();
  return std::unique_ptr<PreferencesStore>(new PreferencesStore(std::move(d)));
}

Result<void> PreferencesStore::Private::openFile() {
  identity = identityOf(encodedFile);
  auto reader = plist::readRootDictionary(paths.file);
  if (!reader && reader.error().kind == Error::Kind::Storage)
    return reader.error();
  if (!reader && reader.error().kind == Error::Kind::Damaged) {
    putAside(reader.error());
    return {};
  }
  if (reader) // else there is none: an empty store
    opened = std::move(*reader);
  return {};
}

void PreferencesStore::Private::moveAside() {
  notice = {};
  // Where it cannot be moved, nothing can be written in its place either: it stays.
  const auto moved =
      tockwise::putAside(paths.file, QStringLiteral(".damaged-") + fileStamp(clock.now()));
  notice.damagedKeptAs = moved.value_or(paths.file);
  identity.reset();
  mustWrite = true;
}

// The unreadable file goes under another name; the newest good copy takes its place.
void PreferencesStore::Private::putAside(const Error& error) {
  logLine(QStringLiteral("%1: %2").arg(paths.file, error.message));
  moveAside();
  for (const QString& copy : backups.newestFirst()) {
    auto reader = plist::readRootDictionary(copy);
    if (!reader)
      continue;
    notice.restoredFrom = copy;
    opened = std::move(*reader);
    return;
  }
}

void PreferencesStore::Private::readSection(const plist::Reader& reader) {
  const StoreSection::Reading reading = section->readFrom(reader);
  savedRevision = section->revision();
  savedEmpty = section->isEmpty();
  // What was mended must be the same at the next start: fresh identifiers, above all.
  mustWrite = mustWrite || reading.repaired || reading.foreignElements > 0;
  notice.foreignElements = reading.foreignElements;
  if (reading.foreignElements > 0) {
    if (const auto kept = keepCopy())
      notice.originalKeptAs = *kept;
  }
}

// Settings from the file, but for the keys that were set here since the last write. What the file
// holds it keeps itself, whoever kept it before.
void PreferencesStore::Private::takeSettings(const plist::Reader& reader) {
  std::map<QString, Value> taken;
  std::set<QString> inFile;
  const QStringList sectionKeys = section ? section->keys() : QStringList();
  const plist::Ref root = reader.root();
  for (qsizetype i = 0; i < reader.count(root); ++i) {
    const plist::Ref key = reader.key(root, i);
    if (reader.kind(key) != plist::Kind::String)
      continue;
    const QString name = reader.string(key);
    if (changed.contains(name) || sectionKeys.contains(name) || name == kKeptElsewhere)
      continue;
    taken.emplace(name, reader.value(reader.valueAt(root, i)));
    inFile.insert(name);
  }
  for (const QString& key : tockwise::keptElsewhere(reader)) {
    if (!changed.contains(key) && !sectionKeys.contains(key))
      elsewhere.insert(key);
  }
  std::erase_if(elsewhere, [&](const QString& key) { return inFile.contains(key); });
  for (const auto& [key, value] : values) {
    if (changed.contains(key) || elsewhere.contains(key))
      taken.insert_or_assign(key, value);
  }
  values = std::move(taken);
  versionOnDisk = dataVersion();
}

void PreferencesStore::registerDefaults(std::map<QString, Value> defaults) {
  d->defaults.merge(std::move(defaults));
}

void PreferencesStore::attach(StoreSection& section) {
  d->section = &section;
  if (d->opened) {
    d->takeSettings(*d->opened);
    d->readSection(*d->opened);
    d->opened.reset();
  }
  d->savedRevision = section.revision();
  d->savedEmpty = section.isEmpty();
}

const StoreNotice& PreferencesStore::notice() const {
  return d->notice;
}

const PreferencesStore::Paths& PreferencesStore::paths() const {
  return d->paths;
}

Value PreferencesStore::value(const QString& key) const {
  if (const auto found = d->values.find(key); found != d->values.end())
    return found->second;
  if (const auto found = d->defaults.find(key); found != d->defaults.end())
    return found->second;
  return {};
}

bool PreferencesStore::isSet(const QString& key) const {
  return d->values.contains(key) || d->elsewhere.contains(key);
}

bool PreferencesStore::isUnread(const QString& key) const {
  return d->elsewhere.contains(key) && !d->values.contains(key);
}

void PreferencesStore::setValue(const QString& key, Value value) {
  const auto found = d->values.find(key);
  if (found == d->values.end() ? value.isNull() : found->second == value)
    return;
  if (value.isNull())
    d->values.erase(found);
  else
    d->values[key] = std::move(value);
  if (!d->elsewhere.contains(key))
    d->changed.insert(key);
  if (onValueSet)
    onValueSet(key);
}

void PreferencesStore::keepElsewhere(const QString& key) {
  if (d->elsewhere.insert(key).second)
    d->changed.insert(key);
}

void PreferencesStore::keepHere(const QString& key) {
  if (d->elsewhere.erase(key) > 0)
    d->changed.insert(key);
}

bool PreferencesStore::isKeptElsewhere(const QString& key) const {
  return d->elsewhere.contains(key);
}

void PreferencesStore::provide(const QString& key, Value value) {
  if (d->elsewhere.contains(key))
    d->values[key] = std::move(value);
}

void PreferencesStore::cleanCopies() {
  d->backups.removeValues(d->elsewhere);
}

bool PreferencesStore::isSaved() const {
  return d->changed.empty() && !d->mustWrite && d->isSectionSaved();
}

const std::optional<Error>& PreferencesStore::writeFailure() const {
  return d->failure;
}

PreferencesStore::Private::Adoption
PreferencesStore::Private::adoptOthers(const std::optional<FileIdentity>& seen) {
  constexpr double kStill = 2; // seconds after which a half-written file counts as damaged
  if (!seen) {                 // it was taken away: what is in memory is all there is
    identity = seen;
    mustWrite = true;
    return Adoption::Nothing;
  }
  const auto reader = plist::readRootDictionary(paths.file);
  if (!reader) {
    if (unreadable != seen) {
      unreadable = seen;
      unreadableSince = clock.now();
    }
    const double age = clock.now().seconds - unreadableSince.seconds;
    if (age >= 0 && age < kStill)
      return Adoption::Nothing;
    logLine(QStringLiteral("%1: %2").arg(paths.file, reader.error().message));
    unreadable.reset();
    moveAside();
    return Adoption::Noticed;
  }
  identity = seen;
  unreadable.reset();
  notice = {};
  takeSettings(*reader);
  if (section && isSectionSaved())
    readSection(*reader);
  else if (const auto kept = keepCopy(); !kept)
    logLine(kept.error().message);
  return notice.isEmpty() ? Adoption::Adopted : Adoption::Noticed;
}

QString PreferencesStore::Private::dataVersion() const {
  const auto version = values.find(kDataVersion);
  const QString* text = version != values.end() ? version->second.get<QString>() : nullptr;
  return text ? *text : QString();
}

// A copy of the file, but for what has found a safer place.
Result<QString> PreferencesStore::Private::keepCopy() {
  const auto bytes = readWholeFile(paths.file);
  if (!bytes)
    return bytes.error();
  return backups.keep(elsewhere.empty() ? *bytes : withoutValues(*bytes, elsewhere), clock.now());
}

// A copy of the state before the day's first write and before the first write of a new version.
void PreferencesStore::Private::keepCopyBeforeWriting() {
  if (!identity)
    return;
  // A copy of an empty queue would stand in the way of one that is worth something.
  const bool daily = !savedEmpty && !backups.hasCopyOfDay(clock.now());
  if (!daily && dataVersion() == versionOnDisk)
    return;
  const auto kept = keepCopy();
  if (!kept && !copyFailed)
    logLine(kept.error().message);
  copyFailed = !kept;
}

QByteArray PreferencesStore::Private::encode() const {
  plist::Writer writer;
  std::vector<plist::Writer::Object> keys;
  std::vector<plist::Writer::Object> objects;
  for (const auto& [key, value] : values) {
    if (elsewhere.contains(key))
      continue;
    keys.push_back(writer.string(key));
    objects.push_back(writer.value(value));
  }
  if (!elsewhere.empty()) {
    keys.push_back(writer.string(kKeptElsewhere));
    objects.push_back(writer.value(keptElsewhereValue(elsewhere)));
  }
  if (section)
    section->writeTo(writer, keys, objects);
  return writer.finish(writer.dictionary(keys, objects));
}

void PreferencesStore::synchronize() {
  const auto seen = identityOf(d->encodedFile);
  if (seen != d->identity) {
    const auto adoption = d->adoptOthers(seen);
    if (adoption == Private::Adoption::Noticed && onNotice)
      onNotice(d->notice);
    if (adoption != Private::Adoption::Nothing && onChangedByOthers)
      onChangedByOthers();
  }
  if (isSaved() || d->unreadable)
    return;
  if (beforeWriting)
    beforeWriting();
  d->keepCopyBeforeWriting();
  const quint64 revision = d->section ? d->section->revision() : 0;
  const QByteArray bytes = d->encode();
  Result<void> written = makePrivateFolder(QFileInfo(d->paths.file).path());
  if (written)
    written = writeAtomically(d->paths.file, bytes);
  if (!written) {
    const bool failedBefore = d->failure.has_value();
    d->failure = written.error();
    if (!failedBefore) {
      logLine(written.error().message);
      if (onWriteFailure)
        onWriteFailure(written.error());
    }
    return;
  }
  d->failure.reset();
  d->changed.clear();
  d->versionOnDisk = d->dataVersion();
  d->mustWrite = false;
  d->savedRevision = revision;
  d->savedEmpty = d->section && d->section->isEmpty();
  d->identity = identityOf(d->encodedFile);
  d->bytesWritten += bytes.size();
}

qint64 PreferencesStore::bytesWritten() const {
  return d->bytesWritten;
}

} // namespace tockwise
