#include "richtext/formats/css_values.h"

#include "richtext/formats/format_fonts.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>

namespace tockwise {
namespace {

constexpr double kPointsOfPixel = 0.75;
constexpr double kLongestLength = 10000; // points
constexpr qsizetype kMostFamilies = 16;

struct Unit {
  const char16_t* name;
  double points;
};
constexpr Unit kUnits[] = {
    {u"pt", 1},  {u"px", kPointsOfPixel},  {u"in", 72}, {u"cm", 72 / 2.54}, {u"mm", 72 / 25.4},
    {u"pc", 12}, {u"rem", kPlainFontSize},
};
constexpr Unit kRelativeUnits[] = {{u"em", 1}, {u"ex", 0.5}, {u"ch", 0.5}, {u"%", 0.01}};

struct SizeName {
  const char16_t* name;
  double points;
};
constexpr SizeName kSizeNames[] = {
    {u"xx-small", 7}, {u"x-small", 7.5}, {u"small", 10},    {u"medium", 12},
    {u"large", 13.5}, {u"x-large", 18},  {u"xx-large", 24}, {u"xxx-large", 36},
};

bool isWeight(QStringView word) {
  bool isNumber = false;
  (void)word.toInt(&isNumber);
  return isNumber && word.size() == 3;
}

// One of red, green, blue, or the alpha: a number up to whole, or a percentage.
std::optional<quint32> colorPart(QStringView text, double whole) {
  bool valid = false;
  const bool isPercentage = text.endsWith(u'%');
  const double value = (isPercentage ? text.chopped(1) : text).toDouble(&valid);
  if (!valid || !std::isfinite(value))
    return std::nullopt;
  return quint32(std::lround(std::clamp(value / (isPercentage ? 100 : whole), 0.0, 1.0) * 255));
}

// "rgb(1, 2, 3)", "rgba(1 2 3 / 50%)"
std::optional<quint32> functionColor(QStringView text) {
  const qsizetype open = text.indexOf(u'(');
  const qsizetype close = text.indexOf(u')');
  if (!text.startsWith(u"rgb") || open < 0 || close < open)
    return std::nullopt;
  QString inside = text.mid(open + 1, close - open - 1).toString();
  inside.replace(u',', u' ').replace(u'/', u' ');
  const QStringList parts = inside.split(u' ', Qt::SkipEmptyParts);
  if (parts.size() != 3 && parts.size() != 4)
    return std::nullopt;
  const auto red = colorPart(parts[0], 255);
  const auto green = colorPart(parts[1], 255);
  const auto blue = colorPart(parts[2], 255);
  const auto alpha = parts.size() == 4 ? colorPart(parts[3], 1) : 255;
  if (!red || !green || !blue || !alpha)
    return std::nullopt;
  return *alpha << 24 | *red << 16 | *green << 8 | *blue;
}

// "#rgb", "#rgba", "#rrggbb", "#rrggbbaa"
std::optional<quint32> hexColor(QStringView digits) {
  QString all;
  const bool isShort = digits.size() == 3 || digits.size() == 4;
  for (const QChar digit : digits)
    all += isShort ? QString(2, digit) : QString(digit);
  if (all.size() == 6)
    all += QStringLiteral("ff");
  bool valid = false;
  const quint32 rgba = all.toUInt(&valid, 16);
  if (!valid || all.size() != 8)
    return std::nullopt;
  return rgba << 24 | rgba >> 8;
}

} // namespace

std::optional<double> htmlLength(QStringView text, double size) {
  const QString lower = text.trimmed().toString().toLower();
  qsizetype digits = 0;
  while (digits < lower.size() &&
         (lower[digits].isDigit() || QStringView(u"+-.").contains(lower[digits])))
    ++digits;
  bool valid = false;
  const double number = QStringView(lower).left(digits).toDouble(&valid);
  if (!valid || !std::isfinite(number))
    return std::nullopt;
  const QStringView unit = QStringView(lower).mid(digits);
  std::optional<double> points;
  if (unit.isEmpty())
    points = kPointsOfPixel; // as attributes have it
  for (const Unit& each : kUnits) {
    if (unit == QStringView(each.name))
      points = each.points;
  }
  for (const Unit& each : kRelativeUnits) {
    if (unit == QStringView(each.name))
      points = each.points * size;
  }
  if (!points)
    return std::nullopt;
  return std::clamp(number * *points, -kLongestLength, kLongestLength);
}

std::optional<quint32> htmlColor(QStringView text) {
  const QString lower = text.trimmed().toString().toLower();
  constexpr qsizetype kLongest = 64;
  if (lower.isEmpty() || lower.size() > kLongest)
    return std::nullopt;
  if (lower.startsWith(u'#'))
    return hexColor(QStringView(lower).mid(1));
  if (const auto color = functionColor(lower))
    return color;
  if (!lower[0].isLetter())
    return std::nullopt;
  const QColor named(lower);
  return named.isValid() && named.alpha() != 0 ? std::optional<quint32>(named.rgba())
                                               : std::nullopt;
}

QStringList htmlFamilies(const QString& text) {
  QStringList families;
  for (QStringView each : QStringView(text).split(u',')) {
    each = each.trimmed();
    while (!each.isEmpty() && (each.front() == u'"' || each.front() == u'\''))
      each = each.mid(1);
    while (!each.isEmpty() && (each.back() == u'"' || each.back() == u'\''))
      each.chop(1);
    constexpr qsizetype kLongest = 100;
    if (!each.isEmpty() && each.size() <= kLongest && families.size() < kMostFamilies)
      families += each.toString();
  }
  return families;
}

std::optional<double> cssFontSize(QStringView text, double around) {
  for (const SizeName& each : kSizeNames) {
    if (text.compare(QStringView(each.name), Qt::CaseInsensitive) == 0)
      return each.points;
  }
  if (text == u"smaller")
    return soundFontSize(around / 1.2);
  if (text == u"larger")
    return soundFontSize(around * 1.2);
  const auto length = htmlLength(text, around);
  if (!length || *length <= 0)
    return std::nullopt;
  return soundFontSize(*length);
}

int cssFontWeight(QStringView text, int around) {
  constexpr int kNormal = 400;
  constexpr int kBold = 700;
  if (text == u"bold" || text == u"bolder")
    return kBold;
  if (text == u"normal" || text == u"lighter")
    return kNormal;
  bool valid = false;
  const int weight = text.toInt(&valid);
  return valid && weight >= 1 && weight <= 1000 ? std::clamp((weight + 50) / 100 * 100, 100, 900)
                                                : around;
}

void applyFontShorthand(QStringView text, HtmlStyle& style) {
  style.weight = 0;
  style.italic.reset();
  qsizetype at = 0;
  while (at < text.size()) {
    qsizetype end = text.indexOf(u' ', at);
    if (end < 0)
      end = text.size();
    const QStringView word = text.mid(at, end - at);
    at = end + 1;
    if (word.isEmpty())
      continue;
    if (word == u"italic" || word == u"oblique") {
      style.italic = true;
    } else if (word.front().isDigit() && !isWeight(word)) { // the size ends what may stand first
      const qsizetype slash = word.indexOf(u'/');
      const QStringView size = slash < 0 ? word : word.left(slash);
      style.size = cssFontSize(size, style.sizeOrPlain()).value_or(style.size);
      style.families = htmlFamilies(text.mid(std::min(at, text.size())).toString());
      return;
    } else {
      style.weight = cssFontWeight(word, style.weight);
    }
  }
}

} // namespace tockwise
