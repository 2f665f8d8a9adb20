// Date: an instant. The unit is the stored one, so that reading and writing loses nothing.
#pragma once

#ifndef Q_MOC_RUN // moc of Qt 6.4 stumbles over this header
#include <compare>
#endif

namespace tockwise {

/// Seconds since 2001-01-01 00:00:00 UTC, the reference date of property lists.
struct Date {
  double seconds = 0;

  static constexpr double kUnixOffset = 978307200.0; // 1970-01-01 to 2001-01-01

  static constexpr Date fromUnixSeconds(double unixSeconds) { return {unixSeconds - kUnixOffset}; }
  constexpr double unixSeconds() const { return seconds + kUnixOffset; }
  constexpr Date plusSeconds(double delta) const { return {seconds + delta}; }

  friend constexpr auto operator<=>(Date, Date) = default;
};

/// 0001-01-01 00:00:00 UTC: "never" in reminderDateTimeFired.
inline constexpr Date kDistantPast{-63113904000.0};
/// 4001-01-01 00:00:00 UTC: a fire date that, in effect, never comes.
inline constexpr Date kDistantFuture{63113904000.0};

/// Other writers put the distant past two days earlier (the Julian calendar's year 1);
/// everything up to ours means "never".
constexpr bool isDistantPast(Date date) {
  return date <= kDistantPast;
}

} // namespace tockwise
