// The file of the open alerts; docs/kept-alerts.md describes it.
#pragma once

#include "alerts/listed_alert.h"
#include "base/result.h"

#include <QByteArray>

#include <vector>

namespace tockwise {

/// Rich texts in the file, in bytes altogether; alerts beyond that are kept with their plain text.
inline constexpr qsizetype kMostKeptRichText = qsizetype(64) * 1024 * 1024;
/// Larger files are not read: nothing of ours wrote them.
inline constexpr qint64 kLargestKeptFile = qint64(256) * 1024 * 1024;

struct KeptAlertsFile {
  std::vector<AlertState> states; // oldest first
  int damaged = 0;                // entries that could not be read
};

/// A binary property list. Any thread.
QByteArray writeKeptAlerts(const std::vector<AlertState>& states);

/// Damaged when it is no such file at all, Refused when a newer version wrote it; entries that
/// can't be read are counted and left out. Any thread.
Result<KeptAlertsFile> readKeptAlerts(QByteArray bytes);

} // namespace tockwise
