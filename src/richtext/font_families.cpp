#include "richtext/font_families.h"

#include <algorithm>
#include <array>

namespace tockwise {
namespace {

constexpr QStringView kLikeHelvetica =
    u"Nimbus Sans|TeX Gyre Heros|Liberation Sans|Arimo|Helvetica|Arial|FreeSans";
constexpr QStringView kLikeArial =
    u"Liberation Sans|Arimo|Arial|Nimbus Sans|TeX Gyre Heros|Helvetica|FreeSans";
constexpr QStringView kLikeTimes =
    u"Nimbus Roman|TeX Gyre Termes|Liberation Serif|Tinos|Times New Roman|Times|FreeSerif";
constexpr QStringView kLikeTimesNew =
    u"Liberation Serif|Tinos|Times New Roman|Nimbus Roman|TeX Gyre Termes|Times|FreeSerif";
constexpr QStringView kLikeCourier =
    u"Nimbus Mono PS|TeX Gyre Cursor|Liberation Mono|Cousine|Courier New|Courier|FreeMono";
constexpr QStringView kLikeCourierNew =
    u"Liberation Mono|Cousine|Courier New|Nimbus Mono PS|TeX Gyre Cursor|Courier|FreeMono";
constexpr QStringView kLikeVera = u"DejaVu Sans|Bitstream Vera Sans|Verdana";
constexpr QStringView kLikeVeraMono = u"DejaVu Sans Mono|Bitstream Vera Sans Mono|Liberation Mono";
constexpr QStringView kLikePalatino = u"P052|TeX Gyre Pagella|Palladio|Palatino Linotype|Palatino";
constexpr QStringView kLikeAvantGarde = u"URW Gothic|TeX Gyre Adventor|Montserrat";
constexpr QStringView kLikeFutura = u"Jost|URW Gothic|Nunito|Montserrat";
constexpr QStringView kLikeAvenir =
    u"Nunito Sans|Nunito|Mulish|Montserrat|Nimbus Sans|Liberation Sans";
constexpr QStringView kLikeGaramond = u"EB Garamond|Cormorant Garamond|P052|TeX Gyre Pagella";
constexpr QStringView kLikeHand = u"Comic Neue|Comic Relief|Z003|TeX Gyre Chorus";
constexpr QStringView kJapanese = u"Noto Sans CJK JP|Source Han Sans JP|IPAexGothic|VL PGothic";
constexpr QStringView kJapaneseSerif = u"Noto Serif CJK JP|Source Han Serif JP|IPAexMincho";
constexpr QStringView kChinese = u"Noto Sans CJK SC|Source Han Sans SC|WenQuanYi Zen Hei";

using enum FontHabit;
using enum FontKind;

constexpr std::array kFamilies{
    // The font that archives write for text in no particular one: here, that of the desktop.
    FontFamily{u"Helvetica", u"Helvetica", Oblique, System, u""},
    FontFamily{u"Helvetica Neue", u"HelveticaNeue", Plain, SansSerif, kLikeHelvetica},
    FontFamily{u"Arial", u"Arial", MT, SansSerif, kLikeArial},
    FontFamily{u"Times", u"Times", Roman, Serif, kLikeTimes},
    FontFamily{u"Times New Roman", u"TimesNewRoman", PSMT, Serif, kLikeTimesNew},
    FontFamily{u"Courier", u"Courier", Oblique, Monospaced, kLikeCourier},
    FontFamily{u"Courier New", u"CourierNew", PSMT, Monospaced, kLikeCourierNew},
    FontFamily{u"Menlo", u"Menlo", FontHabit::Regular, Monospaced, kLikeVeraMono},
    FontFamily{u"Monaco", u"Monaco", Single, Monospaced, kLikeVeraMono},
    FontFamily{u"Andale Mono", u"AndaleMono", Single, Monospaced, kLikeVeraMono},
    FontFamily{u"SF Mono", u"SFMono", FontHabit::Regular, Monospaced, kLikeVeraMono},
    FontFamily{u"Georgia", u"Georgia", Plain, Serif, u"Gelasio|Georgia|DejaVu Serif"},
    FontFamily{u"Lucida Grande", u"LucidaGrande", NoItalic, SansSerif, kLikeVera},
    FontFamily{u"Geneva", u"Geneva", Single, SansSerif, kLikeVera},
    FontFamily{u"Verdana", u"Verdana", Plain, SansSerif, u"Verdana|DejaVu Sans"},
    FontFamily{u"Tahoma", u"Tahoma", NoItalic, SansSerif, u"Tahoma|DejaVu Sans Condensed"},
    FontFamily{u"Trebuchet MS", u"TrebuchetMS", Plain, SansSerif, u"Fira Sans|DejaVu Sans"},
    FontFamily{u"Avenir", u"Avenir", FontHabit::Avenir, SansSerif, kLikeAvenir},
    FontFamily{u"Avenir Next", u"AvenirNext", FontHabit::Regular, SansSerif, kLikeAvenir},
    FontFamily{u"Gill Sans", u"GillSans", Plain, SansSerif, u"Cabin|Lato|Nimbus Sans"},
    FontFamily{u"Optima", u"Optima", FontHabit::Regular, SansSerif, u"URW Classico|Nimbus Sans"},
    FontFamily{u"Futura", u"Futura", Plain, SansSerif, kLikeFutura},
    FontFamily{u"Century Gothic", u"CenturyGothic", Plain, SansSerif, kLikeAvantGarde},
    FontFamily{u"Calibri", u"Calibri", Plain, SansSerif, u"Carlito"},
    FontFamily{u"Cambria", u"Cambria", Plain, Serif, u"Caladea"},
    FontFamily{u"Palatino", u"Palatino", Roman, Serif, kLikePalatino},
    FontFamily{u"Baskerville", u"Baskerville", Plain, Serif, u"Libre Baskerville|Baskervville"},
    FontFamily{u"Hoefler Text", u"HoeflerText", FontHabit::Regular, Serif, kLikeGaramond},
    FontFamily{u"Didot", u"Didot", Plain, Serif, u"GFS Didot|Playfair Display"},
    FontFamily{u"Cochin", u"Cochin", Plain, Serif, kLikeGaramond},
    FontFamily{u"American Typewriter", u"AmericanTypewriter", Plain, Serif, u"Courier Prime"},
    FontFamily{u"Comic Sans MS", u"ComicSansMS", NoItalic, SansSerif, kLikeHand},
    FontFamily{u"Marker Felt", u"MarkerFelt", Plain, SansSerif, kLikeHand},
    FontFamily{u"Chalkboard", u"Chalkboard", NoItalic, SansSerif, kLikeHand},
    FontFamily{u"Impact", u"Impact", Single, SansSerif, u"Anton|Oswald"},
    FontFamily{u"Hiragino Sans", u"HiraginoSans", Numbers, SansSerif, kJapanese},
    FontFamily{u"Hiragino Kaku Gothic ProN", u"HiraKakuProN", Numbers, SansSerif, kJapanese},
    FontFamily{u"Hiragino Mincho ProN", u"HiraMinProN", Numbers, Serif, kJapaneseSerif},
    FontFamily{u"PingFang SC", u"PingFangSC", FontHabit::Regular, SansSerif, kChinese},
    FontFamily{u"DejaVu Sans", u"DejaVuSans", Oblique, SansSerif, kLikeVera},
    FontFamily{u"DejaVu Sans Mono", u"DejaVuSansMono", Oblique, Monospaced, kLikeVeraMono},
    FontFamily{u"DejaVu Serif", u"DejaVuSerif", Plain, Serif, u"Bitstream Vera Serif"},
    FontFamily{u"Liberation Sans", u"LiberationSans", Plain, SansSerif, kLikeArial},
    FontFamily{u"Liberation Serif", u"LiberationSerif", Plain, Serif, kLikeTimesNew},
    FontFamily{u"Liberation Mono", u"LiberationMono", Plain, Monospaced, kLikeCourierNew},
    FontFamily{u"Nimbus Sans", u"NimbusSans", FontHabit::Regular, SansSerif, kLikeHelvetica},
    FontFamily{u"Nimbus Roman", u"NimbusRoman", FontHabit::Regular, Serif, kLikeTimes},
    FontFamily{u"Nimbus Mono PS", u"NimbusMonoPS", FontHabit::Regular, Monospaced, kLikeCourier},
    FontFamily{u".AppleSystemUIFont", u".AppleSystemUIFont", Joined, System, u""},
};

/// Whether name is known, spaces and case aside.
bool isNamed(QStringView known, QStringView name) {
  qsizetype at = 0;
  for (const QChar character : name) {
    if (character.isSpace())
      continue;
    while (at < known.size() && known[at].isSpace())
      ++at;
    if (at == known.size() || known[at].toCaseFolded() != character.toCaseFolded())
      return false;
    ++at;
  }
  return at == known.size() && at > 0;
}

} // namespace

const FontFamily* familyOfBase(QStringView base) {
  const auto found = std::find_if(kFamilies.begin(), kFamilies.end(),
                                  [&](const FontFamily& family) { return family.base == base; });
  return found == kFamilies.end() ? nullptr : &*found;
}

const FontFamily* familyOfName(QStringView name) {
  const auto found =
      std::find_if(kFamilies.begin(), kFamilies.end(), [&](const FontFamily& family) {
        return isNamed(family.name, name) || isNamed(family.base, name);
      });
  return found == kFamilies.end() ? nullptr : &*found;
}

FontKind kindOfName(QStringView name) {
  const auto says = [&](QStringView word) { return name.contains(word, Qt::CaseInsensitive); };
  if (name.startsWith(u'.'))
    return says(u"Mono") ? Monospaced : System;
  if (says(u"Mono") || says(u"Courier") || says(u"Code") || says(u"Typewriter") ||
      says(u"Consolas") || says(u"Terminal"))
    return Monospaced;
  if (says(u"Sans"))
    return SansSerif;
  static constexpr QStringView kSerif[] = {u"Serif", u"Times",  u"Roman",  u"Garamond", u"Bodoni",
                                           u"Book",  u"Caslon", u"Mincho", u"Song",     u"Didot"};
  const bool serif = std::any_of(std::begin(kSerif), std::end(kSerif), says);
  return serif ? Serif : SansSerif;
}

QStringList familiesOfKind(FontKind kind) {
  const auto split = [](QStringView names) { return names.toString().split(u'|'); };
  switch (kind) {
  case Monospaced:
    return split(u"DejaVu Sans Mono|Noto Sans Mono|Liberation Mono|Nimbus Mono PS|FreeMono");
  case Serif:
    return split(u"DejaVu Serif|Noto Serif|Liberation Serif|Nimbus Roman|FreeSerif");
  case SansSerif:
    return split(u"DejaVu Sans|Noto Sans|Liberation Sans|Nimbus Sans|FreeSans");
  case System:
    break;
  }
  return {};
}

} // namespace tockwise
