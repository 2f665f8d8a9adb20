// The units that RTF counts in.
#pragma once

namespace tockwise {

inline constexpr double kTwipsPerPoint = 20;
inline constexpr int kTwipsPerPixel = 15;
inline constexpr int kMostTwips = 31680;     // what readers take: 22 inches
inline constexpr double kSingleSpaced = 240; // \sl of one line, with \slmult1

} // namespace tockwise
