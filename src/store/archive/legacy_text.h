// The 8-bit character sets that texts in old archives are in.
#pragma once

#include <QByteArray>
#include <QString>

namespace tockwise {

enum class LegacyCharset { MacRoman, NextStep };

/// bytes as text; what the character set does not know becomes U+FFFD. Any one thread.
QString decodeLegacy(const QByteArray& bytes, LegacyCharset charset);

/// text in the character set, with "_" for each UTF-16 unit that has no place in it. Any one
/// thread.
QByteArray encodeLegacy(const QString& text, LegacyCharset charset);

/// bytes as UTF-8 when they are sound UTF-8, else in the character set.
QString decodeUtf8OrLegacy(const QByteArray& bytes, LegacyCharset charset);

} // namespace tockwise
