#include "richtext/text_fonts.h"

#include "richtext/font_families.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QHash>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

constexpr double kSmallestFont = 0.5; // points
constexpr double kLargestFont = 2000; // points
constexpr double kDefaultSize = 12;   // points

struct WeightWord {
  QStringView word;
  int weight;
};
/// Longer words before those that they contain.
constexpr WeightWord kWeights[] = {
    {u"UltraLight", QFont::ExtraLight}, {u"Ultralight", QFont::ExtraLight},
    {u"ExtraLight", QFont::ExtraLight}, {u"SemiBold", QFont::DemiBold},
    {u"Semibold", QFont::DemiBold},     {u"DemiBold", QFont::DemiBold},
    {u"Demibold", QFont::DemiBold},     {u"ExtraBold", QFont::ExtraBold},
    {u"UltraBold", QFont::ExtraBold},   {u"Thin", QFont::Thin},
    {u"Light", QFont::Light},           {u"Medium", QFont::Medium},
    {u"Demi", QFont::DemiBold},         {u"Bold", QFont::Bold},
    {u"Heavy", QFont::ExtraBold},       {u"Black", QFont::Black},
    {u"W6", QFont::DemiBold},           {u"W3", QFont::Normal},
    {u"Emphasized", QFont::DemiBold},
};

int weightOf(QStringView style) {
  for (const WeightWord& weight : kWeights) {
    if (style.contains(weight.word))
      return weight.weight;
  }
  return QFont::Normal;
}

bool isSlanted(QStringView style) {
  return style.contains(u"Italic") || style.contains(u"Oblique") || style.endsWith(u"It") ||
         style.endsWith(u"Obl") || style.endsWith(u"Ital");
}

/// "HelveticaNeue" as "Helvetica Neue"; a row of capitals stays together: "PTSans" is "PT Sans".
QString wordsApart(QStringView base) {
  QString words;
  for (qsizetype i = 0; i < base.size(); ++i) {
    const bool starts = base[i].isUpper() && i > 0 &&
                        (base[i - 1].isLower() || base[i - 1].isDigit() ||
                         (base[i - 1].isUpper() && i + 1 < base.size() && base[i + 1].isLower()));
    if (starts)
      words += u' ';
    words += base[i];
  }
  return words;
}

/// The word for a weight that a family of many members uses; empty for the ordinary one.
QString weightWord(int weight, bool numbers) {
  if (numbers)
    return weight >= QFont::DemiBold ? QStringLiteral("W6") : QStringLiteral("W3");
  static constexpr WeightWord kWords[] = {{u"Thin", 100}, {u"UltraLight", 200}, {u"Light", 300},
                                          {u"", 400},     {u"Medium", 500},     {u"DemiBold", 600},
                                          {u"Bold", 700}, {u"Heavy", 800},      {u"Black", 900}};
  const auto nearest = std::min_element(
      std::begin(kWords), std::end(kWords), [&](const auto& one, const auto& other) {
        return std::abs(one.weight - weight) < std::abs(other.weight - weight);
      });
  return nearest->word.toString();
}

QString joined(const QString& base, const QString& style) {
  return style.isEmpty() ? base : base + u'-' + style;
}

/// base and style words put together by the habit of the family.
QString nameByHabit(const QString& base, FontHabit habit, int weight, bool italic) {
  const QString word = weightWord(weight, habit == FontHabit::Numbers);
  const QString bold = weight >= QFont::DemiBold ? QStringLiteral("Bold") : QString();
  const QString slant = italic ? QStringLiteral("Italic") : QString();
  const QString oblique = italic ? QStringLiteral("Oblique") : QString();
  switch (habit) {
  case FontHabit::Plain:
    return joined(base, word + slant);
  case FontHabit::Oblique:
    return joined(base, word + oblique);
  case FontHabit::Regular:
    return joined(base, word.isEmpty() && !italic ? QStringLiteral("Regular") : word + slant);
  case FontHabit::Roman:
    return joined(base, bold.isEmpty() && !italic ? QStringLiteral("Roman") : bold + slant);
  case FontHabit::MT:
    return joined(base, bold + slant) + QStringLiteral("MT");
  case FontHabit::PSMT:
    return joined(base + QStringLiteral("PS"), bold + slant) + QStringLiteral("MT");
  case FontHabit::Avenir: {
    const QString own = word.isEmpty() ? QStringLiteral("Book")
                        : weight == QFont::DemiBold || weight == QFont::Bold
                            ? QStringLiteral("Heavy")
                            : word;
    return joined(base, own + oblique);
  }
  case FontHabit::Numbers:
    return joined(base, word);
  case FontHabit::NoItalic:
    return joined(base, bold);
  case FontHabit::Single:
    return base;
  case FontHabit::Joined:
    return base + bold + slant;
  }
  return base;
}

/// The part of a name that tells the family, and the part that tells the style.
struct NameParts {
  const FontFamily* family = nullptr; // when it is a well-known one
  QString base;
  QString style;
};

NameParts partsOf(const QString& name) {
  NameParts parts;
  if (name.startsWith(u".AppleSystemUIFont")) {
    parts.family = familyOfBase(u".AppleSystemUIFont");
    parts.base = parts.family->base.toString();
    parts.style = name.mid(parts.base.size());
    return parts;
  }
  const qsizetype hyphen = name.lastIndexOf(u'-');
  parts.base = hyphen > 0 ? name.left(hyphen) : name;
  parts.style = hyphen > 0 ? name.mid(hyphen + 1) : QString();
  parts.family = familyOfBase(parts.base);
  for (const QStringView ending : {QStringView(u"PSMT"), QStringView(u"PS"), QStringView(u"MT")}) {
    if (parts.family || !parts.base.endsWith(ending))
      continue;
    parts.family = familyOfBase(QStringView(parts.base).chopped(ending.size()));
  }
  return parts;
}

/// Qt tells families of several foundries apart: "Nimbus Sans [urw]".
QString withoutFoundry(const QString& family) {
  const qsizetype bracket = family.indexOf(u" [");
  return bracket > 0 && family.endsWith(u']') ? family.left(bracket) : family;
}

/// What this machine has, looked up once and again when fonts were added or removed. A child of
/// the application.
class InstalledFonts final : public QObject {
 public:
  explicit InstalledFonts(QObject* application) : QObject(application) {
    connect(qGuiApp, &QGuiApplication::fontDatabaseChanged, this, [this] {
      m_names.clear();
      m_chosen.clear();
    });
  }

  /// The name under which this machine has the family, or nothing.
  QString find(QStringView family) {
    if (m_names.isEmpty()) {
      for (const QString& installed : QFontDatabase::families())
        m_names.insert(folded(withoutFoundry(installed)), withoutFoundry(installed));
    }
    return m_names.value(folded(family));
  }

  /// The family that is to be shown for that name.
  QString chosenFor(const QString& postScriptName) {
    const auto known = m_chosen.constFind(postScriptName);
    if (known != m_chosen.constEnd())
      return *known;
    if (m_chosen.size() > kMostNames)
      m_chosen.clear(); // names come from documents
    return *m_chosen.insert(postScriptName, choose(postScriptName));
  }

 private:
  static constexpr qsizetype kMostNames = 1000;

  static QString folded(QStringView family) {
    return family.toString().remove(u' ').toCaseFolded();
  }

  QString choose(const QString& postScriptName) {
    const NameParts parts = partsOf(postScriptName);
    const FontKind kind = parts.family ? parts.family->kind : kindOfName(parts.base);
    if (kind == FontKind::System)
      return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    QStringList candidates{parts.family ? parts.family->name.toString() : parts.base};
    if (parts.family)
      candidates += parts.family->standIns.toString().split(u'|', Qt::SkipEmptyParts);
    candidates += familiesOfKind(kind);
    for (const QString& candidate : std::as_const(candidates)) {
      QString installed = find(candidate);
      if (!installed.isEmpty())
        return installed;
    }
    return QFontDatabase::systemFont(kind == FontKind::Monospaced ? QFontDatabase::FixedFont
                                                                  : QFontDatabase::GeneralFont)
        .family();
  }

  QHash<QString, QString> m_names;  // folded to as it is
  QHash<QString, QString> m_chosen; // PostScript name to family
};

InstalledFonts& fontStock() {
  static QPointer<InstalledFonts> fonts;
  if (!fonts)
    fonts = new InstalledFonts(qGuiApp);
  return *fonts;
}

} // namespace

FontTraits fontTraits(const QString& postScriptName) {
  const NameParts parts = partsOf(postScriptName);
  FontTraits traits;
  traits.weight = weightOf(parts.style);
  traits.italic = isSlanted(parts.style);
  if (parts.family)
    traits.family = parts.family->name.toString();
  else
    traits.family = parts.base.startsWith(u'.') ? parts.base : wordsApart(parts.base);
  return traits;
}

QString postScriptName(const FontTraits& traits) {
  if (traits.family.trimmed().isEmpty())
    return postScriptName({kDefaultFontName.toString(), traits.weight, traits.italic});
  const QString family = withoutFoundry(traits.family);
  if (const FontFamily* known = familyOfName(family))
    return nameByHabit(known->base.toString(), known->habit, traits.weight, traits.italic);
  QString base;
  for (const QChar character : family) {
    // Of printable ASCII, PostScript names have all but blanks and brackets.
    const bool isAllowed = character.unicode() > 0x20 && character.unicode() != 0x7f &&
                           !QStringView(u"[](){}<>/%").contains(character);
    if (isAllowed)
      base += character;
  }
  const FontHabit habit = base.startsWith(u".") ? FontHabit::Regular : FontHabit::Plain;
  return nameByHabit(base, habit, traits.weight, traits.italic);
}

QFont fontFor(const QString& postScriptName, double size) {
  const FontTraits traits = fontTraits(postScriptName);
  QFont font;
  font.setFamilies({fontStock().chosenFor(postScriptName)});
  font.setWeight(QFont::Weight(traits.weight));
  font.setItalic(traits.italic);
  font.setPointSizeF(std::isfinite(size) && size > 0 ? std::clamp(size, kSmallestFont, kLargestFont)
                                                     : kDefaultSize);
  return font;
}

} // namespace tockwise
