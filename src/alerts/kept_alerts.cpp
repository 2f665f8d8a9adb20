#include "alerts/kept_alerts.h"

#include "alerts/kept_alerts_file.h"
#include "base/log.h"
#include "store/file_io.h"
#include "store/preferences_store.h"
#include "store/store_file.h"

#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <utility>

namespace tockwise {
namespace {

// The window reaches the screen first, and alerts that open or close together are written once.
constexpr std::chrono::milliseconds kWindowsFirst{20};

} // namespace

KeptAlerts::KeptAlerts(AlertWindows& alerts, QString path, QObject* parent)
    : QObject(parent), m_alerts(alerts), m_path(std::move(path)) {
  m_writeSoon.setSingleShot(true);
  m_writeSoon.setInterval(kWindowsFirst);
  connect(&m_writeSoon, &QTimer::timeout, this, &KeptAlerts::flush);
  connect(&m_alerts, &AlertWindows::statesChanged, this, &KeptAlerts::note);
}

KeptAlerts::~KeptAlerts() {
  flush();
}

QString KeptAlerts::pathOfUser() {
  return QFileInfo(PreferencesStore::Paths::ofUser().backups).path() +
         QStringLiteral("/alerts.plist");
}

void KeptAlerts::note() {
  if (m_forgotten)
    return;
  m_isDue = true;
  if (!m_writeSoon.isActive())
    m_writeSoon.start();
}

void KeptAlerts::restore() {
  auto bytes = readRegularFile(m_path, kLargestKeptFile);
  if (!bytes) {
    if (bytes.error().kind != Error::Kind::NotFound)
      putAsideDamaged(bytes.error().message);
    return;
  }
  auto file = readKeptAlerts(std::move(bytes).value());
  if (!file) {
    putAsideDamaged(file.error().message);
    return;
  }
  if (file->damaged > 0)
    putAsideDamaged(QStringLiteral("%1 of its alerts cannot be read").arg(file->damaged));
  else
    m_written = file->states;
  m_alerts.restore(file->states);
  if (file->damaged > 0)
    flush(); // there is no file of the sound ones now
}

void KeptAlerts::putAsideDamaged(const QString& reason) {
  QString line = QStringLiteral("Cannot read the kept alerts in %1: %2").arg(m_path, reason);
  if (const auto name = putAside(m_path, QStringLiteral(".damaged")))
    line += QStringLiteral("; the file is kept as %1").arg(*name);
  logLine(line);
}

void KeptAlerts::flush() {
  if (m_forgotten || !m_isDue)
    return;
  m_writeSoon.stop();
  std::vector<AlertState> states = m_alerts.states();
  if (states != m_written) {
    if (const auto written = write(states); !written) {
      if (!std::exchange(m_failed, true))
        logLine(QStringLiteral("Cannot keep the open alerts: %1").arg(written.error().message));
      return;
    }
    m_failed = false;
    m_written = std::move(states);
  }
  m_isDue = false;
}

Result<void> KeptAlerts::write(const std::vector<AlertState>& states) const {
  if (states.empty()) {
    if (QFile::remove(m_path) || !QFileInfo::exists(m_path))
      return {};
    return Error{Error::Kind::Storage, QStringLiteral("%1 cannot be removed").arg(m_path)};
  }
  if (auto made = makePrivateFolder(QFileInfo(m_path).path()); !made)
    return made;
  return writeAtomically(m_path, writeKeptAlerts(states));
}

void KeptAlerts::forget() {
  m_forgotten = true;
  m_writeSoon.stop();
  if (const auto removed = write({}); !removed)
    logLine(removed.error().message);
}

} // namespace tockwise
