#include "store/archive/font_codec.h"

#include "store/archive/archive_values.h"

#include <algorithm>

namespace tockwise {
namespace {

constexpr double kSmallest = 0.5;
constexpr double kLargest = 2000;
constexpr double kUnstated = 12;      // what a font without a size is shown in
constexpr qint64 kOrdinaryFlags = 16; // of a text font, as opposed to one of the system's roles

} // namespace

std::optional<TextFont> decodeFont(const KeyedArchive& archive, KeyedArchive::Uid uid) {
  if (!archive.isKindOf(uid, u"NSFont") && !archive.isKindOf(uid, u"UIFont"))
    return std::nullopt;
  auto name = stringField(archive, uid, u"NSName");
  if (!name || name->isEmpty())
    return std::nullopt;
  const double size = realField(archive, uid, u"NSSize").value_or(kUnstated);
  return TextFont{std::move(*name), std::clamp(size, kSmallest, kLargest), archive.object(uid)};
}

KeyedWriter::Uid encodeFont(KeyedWriter& writer, const TextFont& font) {
  if (const auto copied = writer.copy(font.original); copied != KeyedWriter::kNil)
    return copied;
  static const QStringList chain{QStringLiteral("NSFont"), QStringLiteral("NSObject")};
  const auto name = writer.string(font.name);
  return writer.valueRecord({{QStringLiteral("NSName"), writer.inlineReference(name)},
                             {QStringLiteral("NSSize"), writer.inlineReal(font.size)},
                             {QStringLiteral("NSfFlags"), writer.inlineInteger(kOrdinaryFlags)}},
                            chain);
}

} // namespace tockwise
