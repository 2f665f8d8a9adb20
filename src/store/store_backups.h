// The copies kept of the preferences store: one before each day's first write, one before the
// first write of a new version, one whenever something odd was found. The last ten are kept.
#pragma once

#include "base/date.h"
#include "base/result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <set>

namespace tockwise {

/// Main thread.
class StoreBackups {
 public:
  static constexpr int kMost = 10;

  explicit StoreBackups(QString folder);

  /// Keeps bytes, a store's file, under the date and time; returns the path of the copy. Storage
  /// when it cannot be written.
  Result<QString> keep(const QByteArray& bytes, Date now);
  /// Takes the values of these keys out of every copy that has them; see kept_elsewhere.h.
  void removeValues(const std::set<QString>& keys);
  /// Whether a copy of that day (UTC) was kept.
  bool hasCopyOfDay(Date now) const;
  /// The copies, newest first.
  QStringList newestFirst() const;

 private:
  QString m_folder;
};

/// "20261121-065500": UTC, the same in every locale, so that names sort by time.
QString fileStamp(Date date);

} // namespace tockwise
