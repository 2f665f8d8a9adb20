// The commands, carried out on a store: the same code answers the command line without a running
// application, and D-Bus inside it.
#pragma once

#include "app/document_commands.h"
#include "base/result.h"
#include "store/reminder_store.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVariantMap>

#include <functional>

namespace tockwise {

/// Errors of kind Usage mean that the words are wrong; all others that the request was understood
/// and could not be done. Main thread.
class CommandService {
 public:
  /// onChanged: called after the queue or a setting was changed and saved; onDataModified: before
  /// that, when it was the queue.
  CommandService(
      ReminderStore& store, std::function<void()> onChanged,
      std::function<void()> onDataModified = [] {});
  CommandService(const CommandService&) = delete;
  CommandService& operator=(const CommandService&) = delete;

  /// Appends a reminder as "New Reminder..." does, its recent entry included; returns its UUID.
  /// options: see reminder_options.h; exactly one of "at" and "in". With "rich" text does not
  /// count.
  Result<QString> add(const QString& text, const QVariantMap& options);
  /// The queue in its order.
  QJsonArray list() const;
  /// which: a UUID or a position counted from 1.
  Result<QJsonObject> show(const QString& which) const;
  /// Changes the reminder in place as the editor does; returns its UUID.
  Result<QString> edit(const QString& which, const QVariantMap& options);
  /// Returns the UUID of the reminder that was removed.
  Result<QString> remove(const QString& which);
  Result<void> clear();
  /// Saving, opening and merging documents.
  DocumentCommands& documents() { return m_documents; }

  /// The setting as text: YES or NO, arrays one entry a line. Usage for an unknown key, Unavailable
  /// for a password that cannot be read now.
  Result<QString> getPreference(const QString& key) const;
  /// Usage for an unknown key or words of the wrong type.
  Result<void> setPreference(const QString& key, const QStringList& words);
  /// Storage when the last change could not be written.
  Result<void> saved() const;
  /// Every setting with its text, in the table's order; the password only as set or not.
  QList<std::pair<QString, QString>> preferences() const;

 private:
  Result<qsizetype> find(const QString& which) const;
  /// The queue was changed: finish().
  Result<void> finishData();
  /// Announces the change. A change that could not be written is an error of the command: nothing
  /// is lost in memory, but the user must know.
  Result<void> finish();

  ReminderStore& m_store;
  std::function<void()> m_onChanged;
  std::function<void()> m_onDataModified;
  DocumentCommands m_documents;
};

} // namespace tockwise
