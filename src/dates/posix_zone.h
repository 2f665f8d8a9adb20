// Time zones by name, for everything that TZ may hold.
#pragma once

#include <QStringView>

#include <unicode/basictz.h>

#include <memory>

namespace tockwise {

/// A zone written as a rule, "CET-1CEST,M3.5.0,M10.5.0/3" (without dates, the ones of the United
/// States); null when rule is none.
std::unique_ptr<icu::BasicTimeZone> zoneFromPosixRule(QStringView rule);

/// The zone called name: an IANA identifier, else such a rule, else UTC (with a log line).
std::unique_ptr<icu::BasicTimeZone> zoneNamed(const QString& name);

/// Whether name is an IANA identifier that ICU knows.
bool isZoneIdentifier(QStringView name);

} // namespace tockwise
