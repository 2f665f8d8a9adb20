// Reminders documents made element by element, as a test needs them: sound or not.
#pragma once

#include "store/documents/data_dictionary.h"
#include "support/archive_builder.h"

#include <map>

namespace tockwise {

/// For one document.
class DocumentBuilder {
 public:
  using Uid = ArchiveBuilder::Uid;

  static constexpr Date kNow{790000000};

  /// A reminder that every field of says which one it is.
  static Reminder reminder(int number) {
    Reminder reminder;
    reminder.reminderQueue = kNow.plusSeconds(3600.0 * number + 0.25);
    reminder.reminderDateTimeCreated = kNow.plusSeconds(-number);
    reminder.reminderDateTimeFired = number % 2 == 0 ? kDistantPast : kNow.plusSeconds(-0.5);
    reminder.reminderDateTimeModified = kNow.plusSeconds(-0.25 * number);
    reminder.reminderRecent = number;
    reminder.reminderUUID =
        QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 10, QChar(u'0'));
    reminder.reminderDescriptions = QStringLiteral("Text № %1").arg(number);
    reminder.reminderRTFs = number % 2 == 0 ? QByteArray() : QByteArray("archive ") + char(number);
    reminder.reminderTypes = number == 3 ? QStringLiteral("old") : QStringLiteral("regular");
    reminder.reminderIntervals = {0, number, 0, 30};
    reminder.reminderOffsets = {0, 0, number};
    if (number % 2 == 1)
      reminder.reminderTasks = {false, Task::Script, QStringLiteral("/bin/%1").arg(number)};
    reminder.reminderExtras.days[size_t(number % 7)] = false;
    reminder.reminderExtras.times = {8, number, 18, 0};
    reminder.reminderSendEmail = number % 2 == 1;
    reminder.reminderSendSMS = number % 3 == 1;
    reminder.importedUIDs = number == 2 ? QStringLiteral("event") : QString();
    return reminder;
  }

  static ReminderQueue queue(int reminders, int first = 1) {
    ReminderQueue queue;
    for (int i = 0; i < reminders; ++i)
      queue.append(reminder(first + i));
    return queue;
  }

  ArchiveBuilder archive;

  Uid text(const QString& text) { return archive.add(text); }
  Uid date(Date date) {
    return archive.record({{QStringLiteral("NS.time"), date.seconds}}, {QStringLiteral("NSDate")});
  }
  Uid numbers(const std::vector<qint64>& numbers) {
    Value::Array elements;
    for (const qint64 number : numbers)
      elements.emplace_back(archive.add(number));
    return archive.array(elements);
  }
  Uid nil() { return archive.dictionary({{archive.text("nil"), archive.text("nil")}}); }

  /// Adds one reminder with plain values under every key.
  void addReminder(const QString& identifier) {
    const Uid days = archive.array(Value::Array(7, Value(archive.add(true))));
    add("importedUIDs", text(QString()));
    for (const char* key : {"reminderDateTimeCreated", "reminderDateTimeModified", "reminderQueue"})
      add(key, date(kNow));
    add("reminderDateTimeFired", date(kDistantPast));
    for (const char* key : {"reminderRecent", "reminderSendEmail", "reminderSendSMS"})
      add(key, archive.add(false));
    add("reminderUUID", text(identifier));
    add("reminderTypes", archive.text("regular"));
    add("reminderDescriptions", text(QStringLiteral("text of ") + identifier));
    add("reminderRTFs", archive.add(QByteArray()));
    add("reminderIntervals", numbers({0, 0, 0, 0}));
    add("reminderOffsets", numbers({0, 0, 0}));
    add("reminderTasks", nil());
    add("reminderExtras", archive.dictionary({{archive.text("days"), days},
                                              {archive.text("times"), numbers({0, 0, 0, 0})}}));
  }
  void add(const char* key, Uid element) { m_arrays[QString::fromLatin1(key)].push_back(element); }
  Value::Array& array(const char* key) { return m_arrays[QString::fromLatin1(key)]; }
  /// Changes one element.
  void set(const char* key, size_t row, Uid element) { array(key).at(row) = element; }
  /// Puts any object in the place of an array, or leaves it out.
  void setArray(const char* key, Uid object) { m_instead[QString::fromLatin1(key)] = object; }
  void leaveOut(const char* key) { m_leftOut.append(QString::fromLatin1(key)); }

  QByteArray finish() {
    std::vector<std::pair<Uid, Uid>> pairs;
    for (const QString& key : dataDictionaryKeys()) {
      if (m_leftOut.contains(key))
        continue;
      const auto instead = m_instead.find(key);
      pairs.emplace_back(text(key), instead == m_instead.end() ? archive.array(m_arrays[key])
                                                               : instead->second);
    }
    return archive.finish(archive.dictionary(pairs));
  }

 private:
  std::map<QString, Value::Array> m_arrays;
  std::map<QString, Uid> m_instead;
  QStringList m_leftOut;
};

} // namespace tockwise
