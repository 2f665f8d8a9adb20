#include "store/reminder_store.h"

#include "base/log.h"
#include "store/queue_codec.h"

#include <QSet>

namespace tockwise {
namespace {

const QString kReminderRTFs = QStringLiteral("reminderRTFs");
const QString kRecentReminders = QStringLiteral("recentReminders");
const QString kICalCalendars = QStringLiteral("iCalCalendars");
const QString kSendEmail = QStringLiteral("sendEmail");
const QString kSendSMS = QStringLiteral("sendSMS");

// Columns that older releases did not write are filled for every reminder.
template <typename T, typename Make>
void fillIfEmpty(Column<T>& column, qsizetype count, Make&& make) {
  if (!column.isEmpty())
    return;
  auto& values = ReminderQueue::valuesOf(column);
  for (qsizetype i = 0; i < count; ++i)
    values.push_back(make());
}

// Whether anything was filled.
bool fillMissing(Columns& columns, Date now) {
  const qsizetype count = columns.reminderQueue.size();
  fillIfEmpty(columns.reminderDateTimeCreated, count, [now] { return now; });
  fillIfEmpty(columns.reminderDateTimeFired, count, [] { return kDistantPast; });
  fillIfEmpty(columns.reminderDateTimeModified, count, [now] { return now; });
  fillIfEmpty(columns.reminderRecent, count, [] { return qint64(0); });
  const bool filled = columns.reminderUUID.isEmpty() && count > 0;
  fillIfEmpty(columns.reminderUUID, count, [] { return UUIDString(); });
  return filled;
}

// A conversion gives as many texts as it was given.
void replaceTexts(Columns& columns, const Value& texts) {
  const auto* converted = texts.get<Value::Array>();
  auto& values = ReminderQueue::valuesOf(columns.reminderRTFs);
  if (!converted || converted->size() != values.size())
    return;
  for (size_t i = 0; i < values.size(); ++i) {
    if (const auto* text = (*converted)[i].get<QByteArray>())
      values[i] = *text;
  }
}

// An identifier names one reminder: a second one of the same name, or none, gets its own.
void renewDoubledIdentifiers(ReminderQueue& queue) {
  QSet<QString> seen;
  seen.insert(QString());
  for (qsizetype i = 0; i < queue->reminderUUID.size(); ++i) {
    const QString identifier = queue->reminderUUID.values()[size_t(i)];
    if (!seen.contains(identifier)) {
      seen.insert(identifier);
      continue;
    }
    logLine(QStringLiteral("reminderUUID: element %1 stands there twice").arg(i));
    (void)queue.set<&Columns::reminderUUID>(i, UUIDString());
  }
}

} // namespace

std::map<QString, Value> registeredDefaults() {
  const QStringList quickTimes{
      QStringLiteral("1 Minute"),   QStringLiteral("5 Minutes"),  QStringLiteral("10 Minutes"),
      QStringLiteral("15 Minutes"), QStringLiteral("30 Minutes"), QStringLiteral("1 Hour"),
      QStringLiteral("2 Hours"),    QStringLiteral("1 Day"),      QStringLiteral("2 Days")};
  std::map<QString, Value> defaults{{QStringLiteral("sortType"), 1},
                                    {QStringLiteral("authenticationAD"), 0},
                                    {QStringLiteral("defaultTask"), 0},
                                    {QStringLiteral("clockoption"), 1},
                                    {QStringLiteral("quickRemindMenuArray"), quickTimes}};
  for (const char* key :
       {"showRichText", "truncateReminders", "useSSL", "useCountdown", "useAbsolute", "datepicker"})
    defaults.emplace(QString::fromLatin1(key), true);
  for (const char* key : {"showItemIndex", "showRuler", "sendEmail", "importEventsFromCalendar",
                          "loginItem", "sendSMS", "noReminder", "useADPrefsNoAuth", "useADPrefs",
                          "useGlobalHotKeys", "useDefaultTask"})
    defaults.emplace(QString::fromLatin1(key), false);
  for (const char* key : {"email", "sms", "phoneBox", "emailAddressAD", "smtpServerNameAD",
                          "serverPortAD", "usernameAD", "passwordAD", "defaultTaskPath"})
    defaults.emplace(QString::fromLatin1(key), QString());
  for (const QString& key : columnKeys())
    defaults.emplace(key, Value::Array());
  defaults.emplace(kRecentReminders, Value::Array());
  defaults.emplace(kICalCalendars, Value::Array());
  return defaults;
}

class ReminderStore::Private final : public StoreSection {
 public:
  Private(std::unique_ptr<PreferencesStore> preferences, const Clock& clock,
          OldTextConversion convert)
      : clock(clock), preferences(std::move(preferences)), convert(std::move(convert)) {}

  // The queue, and what is saved beside it.
  QStringList keys() const override { return columnKeys() << kRecentReminders; }
  quint64 revision() const override { return queue.revision() + recentReminders.revision(); }
  bool isEmpty() const override { return queue.isEmpty(); }
  Reading readFrom(const plist::Reader& reader) override;
  void writeTo(plist::Writer& writer, std::vector<plist::Writer::Object>& keys,
               std::vector<plist::Writer::Object>& values) const override;

  std::optional<Value> convertedTexts(const plist::Reader& reader) const;
  ReminderQueue::Pads pads() const {
    return {clock.now(), preferences->boolean(kSendEmail), preferences->boolean(kSendSMS)};
  }

  const Clock& clock;
  std::unique_ptr<PreferencesStore> preferences;
  OldTextConversion convert; // of the file as it was opened; none for what others write later
  ReminderQueue queue;
  RecentReminders recentReminders;
};

// The old rich text of the reader's file in today's form; nothing when it stays as it is.
std::optional<Value> ReminderStore::Private::convertedTexts(const plist::Reader& reader) const {
  if (!convert || reader.find(reader.root(), kDataVersion))
    return std::nullopt;
  const auto stored = reader.find(reader.root(), kReminderRTFs);
  return stored ? convert(reader.value(*stored)) : std::nullopt;
}

StoreSection::Reading ReminderStore::Private::readFrom(const plist::Reader& reader) {
  const auto texts = convertedTexts(reader);
  DecodedColumns decoded = decodeColumns(reader, reader.root(), pads());
  if (texts)
    replaceTexts(decoded.columns, *texts);
  Reading reading{decoded.foreignElements, fillMissing(decoded.columns, clock.now())};
  reading.repaired = reading.repaired || texts.has_value();
  queue.setColumns(std::move(decoded.columns));
  const quint64 asRead = queue.revision();
  queue.syncArrays(pads());
  renewDoubledIdentifiers(queue);
  reading.repaired = reading.repaired || queue.revision() != asRead;
  const auto recent = reader.find(reader.root(), kRecentReminders);
  reading.foreignElements += recentReminders.setStored(recent ? reader.value(*recent) : Value());
  return reading;
}

void ReminderStore::Private::writeTo(plist::Writer& writer,
                                     std::vector<plist::Writer::Object>& keys,
                                     std::vector<plist::Writer::Object>& values) const {
  encodeColumns(queue.columns(), writer, keys, values);
  keys.push_back(writer.string(kRecentReminders));
  values.push_back(writer.value(recentReminders.stored()));
}

ReminderStore::ReminderStore(std::unique_ptr<Private> d) : d(std::move(d)) {}
ReminderStore::~ReminderStore() = default;

Result<std::unique_ptr<ReminderStore>> ReminderStore::open(const PreferencesStore::Paths& paths,
                                                           const Clock& clock,
                                                           OldTextConversion convert) {
  auto preferences = PreferencesStore::open(paths, clock);
  if (!preferences)
    return preferences.error();
  auto d = std::make_unique<Private>(std::move(*preferences), clock, std::move(convert));
  PreferencesStore& store = *d->preferences;
  store.registerDefaults(registeredDefaults());
  store.attach(*d);
  d->convert = nullptr;
  store.setValue(kDataVersion, QStringLiteral(TOCKWISE_VERSION));
  store.synchronize();
  return std::unique_ptr<ReminderStore>(new ReminderStore(std::move(d)));
}

ReminderQueue& ReminderStore::queue() {
  return d->queue;
}
const ReminderQueue& ReminderStore::queue() const {
  return d->queue;
}
RecentReminders& ReminderStore::recentReminders() {
  return d->recentReminders;
}
const RecentReminders& ReminderStore::recentReminders() const {
  return d->recentReminders;
}
PreferencesStore& ReminderStore::preferences() {
  return *d->preferences;
}
const PreferencesStore& ReminderStore::preferences() const {
  return *d->preferences;
}
const StoreNotice& ReminderStore::loadReport() const {
  return d->preferences->notice();
}
const Clock& ReminderStore::clock() const {
  return d->clock;
}

ReminderQueue::Pads ReminderStore::pads() const {
  return d->pads();
}

void ReminderStore::saveDefaults() {
  d->preferences->synchronize();
}

QString ReminderStore::appendReminder(Reminder reminder, RecentEntry recent) {
  const Date now = d->clock.now();
  reminder.reminderDateTimeCreated = now;
  reminder.reminderDateTimeFired = kDistantPast;
  reminder.reminderDateTimeModified = now;
  reminder.reminderRecent = 0;
  reminder.reminderUUID = UUIDString();
  reminder.reminderTypes = QString::fromUtf16(kRegularType);
  d->queue.append(reminder);
  if (recent == RecentEntry::Add)
    d->recentReminders.append(reminder.reminderDescriptions);
  saveDefaults();
  return reminder.reminderUUID;
}

Result<void> ReminderStore::editReminder(const QString& reminderUUID, Reminder edited) {
  const auto index = d->queue.indexOf(reminderUUID);
  if (!index)
    return Error{Error::Kind::NotFound,
                 QStringLiteral("there is no reminder %1").arg(reminderUUID)};
  edited.reminderDateTimeModified = d->clock.now();
  if (auto replaced = d->queue.replace(*index, edited); !replaced)
    return replaced;
  if (auto reset = d->queue.set<&Columns::reminderRecent>(*index, qint64(0)); !reset)
    return reset;
  d->recentReminders.append(edited.reminderDescriptions);
  saveDefaults();
  return {};
}

Result<void> ReminderStore::removeReminder(const QString& reminderUUID) {
  const auto index = d->queue.indexOf(reminderUUID);
  if (!index)
    return Error{Error::Kind::NotFound,
                 QStringLiteral("there is no reminder %1").arg(reminderUUID)};
  auto removed = d->queue.remove(*index);
  saveDefaults();
  return removed;
}

void ReminderStore::clearQueue() {
  d->queue.clear();
  saveDefaults();
}

} // namespace tockwise
