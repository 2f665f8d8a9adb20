#include "richtext/formats/format_fonts.h"

#include "richtext/text_fonts.h"

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

struct WeightName {
  int weight;
  const char16_t* name;
};
// Those that bold or not does not say.
constexpr WeightName kWeightNames[] = {
    {QFont::Thin, u"Thin"},
    {QFont::ExtraLight, u"ExtraLight"},
    {QFont::Light, u"Light"},
    {QFont::Medium, u"Medium"},
};

} // namespace

QString visibleFamily(const QString& postScriptName) {
  const FontTraits traits = fontTraits(postScriptName);
  for (const WeightName& each : kWeightNames) {
    if (traits.weight == each.weight)
      return QStringLiteral("%1 %2").arg(traits.family, QStringView(each.name));
  }
  return traits.family.isEmpty() ? postScriptName : traits.family;
}

bool isBoldFont(const QString& postScriptName) {
  return weightOfFont(postScriptName) >= QFont::DemiBold;
}

bool isItalicFont(const QString& postScriptName) {
  return fontTraits(postScriptName).italic;
}

int weightOfFont(const QString& postScriptName) {
  return fontTraits(postScriptName).weight;
}

QString fontNameFor(const QString& stated, int weight, bool italic) {
  FontTraits traits = fontTraits(stated);
  const bool isFamily = stated == traits.family || stated.contains(u' ');
  if (!isFamily && traits.weight == weight && traits.italic == italic)
    return stated;
  traits.weight = weight;
  traits.italic = italic;
  return postScriptName(traits);
}

double soundFontSize(double size) {
  if (!std::isfinite(size) || size <= 0)
    return kPlainFontSize;
  return std::clamp(size, kSmallestFontSize, kLargestFontSize);
}

} // namespace tockwise
