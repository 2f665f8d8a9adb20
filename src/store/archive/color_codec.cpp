#include "store/archive/color_codec.h"

#include "store/archive/archive_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tockwise {
namespace {

using Uid = KeyedArchive::Uid;

enum Space : qint64 {
  CalibratedRgb = 1,
  DeviceRgb = 2,
  CalibratedWhite = 3,
  DeviceWhite = 4,
  DeviceCmyk = 5,
  Catalogue = 6
};

constexpr qint64 kStandardRgb = 7; // NSID of a colour space
constexpr int kMostFallbacks = 8;
constexpr int kDigits = 10;
constexpr quint32 kWhite = 0xffffffff;

// The numbers of a component string, each within 0 to 1. Missing ones are 0, a missing alpha 1.
template <size_t Count> std::array<double, Count + 1> componentsOf(const QByteArray& text) {
  std::array<double, Count + 1> components{};
  components.back() = 1;
  const char* at = text.constData();
  const char* const end = at + text.size();
  for (double& component : components) {
    while (at != end && *at == ' ')
      ++at;
    double number = 0;
    const auto [stopped, error] = std::from_chars(at, end, number);
    if (error != std::errc())
      break;
    at = stopped;
    component = number > 0 ? std::min(number, 1.0) : 0; // what is not a number too
  }
  return components;
}

quint32 byteOf(double component) {
  return quint32(std::lround(component * 255));
}

TextColor rgb(const std::array<double, 4>& parts) {
  return {byteOf(parts[3]) << 24 | byteOf(parts[0]) << 16 | byteOf(parts[1]) << 8 |
              byteOf(parts[2]),
          false,
          {}};
}

std::optional<TextColor> decodeRgb(const KeyedArchive& archive, Uid uid) {
  const Uid space = archive.reference(uid, u"NSCustomColorSpace");
  if (integerField(archive, space, u"NSID") == kStandardRgb) {
    if (const auto exact = dataField(archive, uid, u"NSComponents"))
      return rgb(componentsOf<3>(*exact));
  }
  const auto text = dataField(archive, uid, u"NSRGB");
  return text ? std::optional(rgb(componentsOf<3>(*text))) : std::nullopt;
}

std::optional<TextColor> decodeWhite(const KeyedArchive& archive, Uid uid) {
  const auto text = dataField(archive, uid, u"NSWhite");
  if (!text)
    return std::nullopt;
  const auto [white, alpha] = componentsOf<1>(*text);
  return rgb({white, white, white, alpha});
}

std::optional<TextColor> decodeCmyk(const KeyedArchive& archive, Uid uid) {
  auto text = dataField(archive, uid, u"NSCMYK");
  if (!text)
    text = dataField(archive, uid, u"NSCYMK");
  if (!text)
    return std::nullopt;
  const auto [cyan, magenta, yellow, black, alpha] = componentsOf<4>(*text);
  const double light = 1 - black;
  return rgb({(1 - cyan) * light, (1 - magenta) * light, (1 - yellow) * light, alpha});
}

std::optional<TextColor> decodeShown(const KeyedArchive& archive, Uid uid, int fallbacksLeft);

std::optional<TextColor> decodeCatalogue(const KeyedArchive& archive, Uid uid, int fallbacksLeft) {
  const QString name = stringField(archive, uid, u"NSColorName").value_or(QString());
  const bool followsTheme = colorNameFollowsTheme(name);
  auto shown = decodeShown(archive, archive.reference(uid, u"NSColor"), fallbacksLeft - 1);
  if (!followsTheme)
    return shown;
  if (!shown) {
    shown.emplace();
    if (name == u"textBackgroundColor")
      shown->argb = kWhite;
  }
  shown->followsTheme = true;
  return shown;
}

std::optional<TextColor> decodeShown(const KeyedArchive& archive, Uid uid, int fallbacksLeft) {
  if (fallbacksLeft < 0 ||
      (!archive.isKindOf(uid, u"NSColor") && !archive.isKindOf(uid, u"UIColor")))
    return std::nullopt;
  switch (integerField(archive, uid, u"NSColorSpace").value_or(0)) {
  case CalibratedRgb:
  case DeviceRgb:
    return decodeRgb(archive, uid);
  case CalibratedWhite:
  case DeviceWhite:
    return decodeWhite(archive, uid);
  case DeviceCmyk:
    return decodeCmyk(archive, uid);
  case Catalogue:
    return decodeCatalogue(archive, uid, fallbacksLeft);
  default:
    return std::nullopt;
  }
}

void appendComponent(QByteArray& to, quint32 byte) {
  std::array<char, 32> digits{};
  const auto written =
      std::to_chars(digits.data(), digits.data() + digits.size(), double(byte & 0xFF) / 255,
                    std::chars_format::general, kDigits);
  if (!to.isEmpty())
    to += ' ';
  to.append(digits.data(), written.ptr - digits.data());
}

} // namespace

bool colorNameFollowsTheme(const QString& name) {
  return name == u"textColor" || name == u"labelColor" || name == u"controlTextColor" ||
         name == u"textBackgroundColor";
}

std::optional<TextColor> decodeColor(const KeyedArchive& archive, Uid uid) {
  auto color = decodeShown(archive, uid, kMostFallbacks);
  if (color)
    color->original = archive.object(uid);
  return color;
}

KeyedWriter::Uid encodeColor(KeyedWriter& writer, const TextColor& color) {
  if (const auto copied = writer.copy(color.original); copied != KeyedWriter::kNil)
    return copied;
  static const QStringList chain{QStringLiteral("NSColor"), QStringLiteral("NSObject")};
  QByteArray components;
  for (const int shift : {16, 8, 0})
    appendComponent(components, color.argb >> shift);
  if (color.argb >> 24 != 0xFF)
    appendComponent(components, color.argb >> 24);
  components += '\0';
  return writer.valueRecord({{QStringLiteral("NSColorSpace"), writer.inlineInteger(CalibratedRgb)},
                             {QStringLiteral("NSRGB"), writer.inlineData(components)}},
                            chain);
}

} // namespace tockwise
