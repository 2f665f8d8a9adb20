#include "richtext/formats/rtf_tables.h"

#include "richtext/formats/format_fonts.h"
#include "richtext/text_fonts.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tockwise {
namespace {

constexpr qsizetype kMostFonts = 4096;
constexpr size_t kMostColors = 4096;
constexpr qsizetype kLongestTableName = 200;
constexpr int kSymbolCharset = 2;

// The code page of a font's character set; 0 for that of the document.
int codePageOfCharset(int charset) {
  static constexpr std::pair<int, int> kPages[] = {
      {77, 10000}, {78, 10001}, {128, 932},  {129, 949},  {130, 1361}, {134, 936},
      {136, 950},  {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256},
      {186, 1257}, {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850}};
  for (const auto& [number, page] : kPages) {
    if (number == charset)
      return page;
  }
  return 0;
}

} // namespace

void RtfFontTable::word(QByteArrayView word, std::optional<int> parameter) {
  if (word == "f") {
    const int index = parameter.value_or(0);
    m_current = m_fonts.size() < kMostFonts || m_fonts.contains(index) ? index : -1;
    if (m_current != -1)
      m_fonts[m_current] = {};
  }
  const auto current = m_fonts.find(m_current);
  if (current == m_fonts.end())
    return;
  if (word == "fcharset") {
    current->codePage = codePageOfCharset(parameter.value_or(0));
    current->isSymbol = parameter.value_or(0) == kSymbolCharset;
  } else if (word == "cpg") {
    current->codePage = parameter.value_or(0);
  }
}

void RtfFontTable::text(const QString& text, RtfDestination destination) {
  const auto current = m_fonts.find(m_current);
  if (current == m_fonts.end())
    return;
  QString& name = destination == RtfDestination::FontAlternate ? current->alternate : current->name;
  const qsizetype end = text.indexOf(u';');
  if (name.size() < kLongestTableName)
    name += text.left(std::min(end < 0 ? text.size() : end, kLongestTableName));
  if (end >= 0 && destination == RtfDestination::FontTable)
    m_current = -1;
}

const RtfFont* RtfFontTable::font(int index) const {
  const auto found = m_fonts.constFind(index < 0 ? m_default : index);
  return found == m_fonts.constEnd() ? nullptr : &*found;
}

std::optional<TextFont> RtfFontTable::fontOf(const RtfCharacters& characters) const {
  const bool states =
      characters.font >= 0 || characters.size > 0 || characters.bold || characters.italic;
  if (!states)
    return std::nullopt;
  const RtfFont* entry = font(characters.font);
  QString name = entry ? entry->name.trimmed() : QString();
  // The other name is the PostScript name where it says the same.
  if (entry && !entry->alternate.isEmpty() && visibleFamily(entry->alternate.trimmed()) == name)
    name = entry->alternate.trimmed();
  if (name.isEmpty())
    name = kDefaultFontName.toString();
  int weight = weightOfFont(name);
  if (characters.bold && !isBoldFont(name))
    weight = QFont::Bold;
  name = fontNameFor(name, weight, characters.italic || isItalicFont(name));
  return TextFont{name, soundFontSize(characters.size > 0 ? characters.size / 2.0 : 0), {}};
}

void RtfColorTable::word(QByteArrayView word, std::optional<int> parameter) {
  const auto part = quint32(std::clamp(parameter.value_or(0), 0, 255));
  int shift = -1;
  if (word == "red")
    shift = 16;
  else if (word == "green")
    shift = 8;
  else if (word == "blue")
    shift = 0;
  if (shift < 0)
    return;
  m_current.isStated = true;
  m_current.rgb = (m_current.rgb & ~(0xffU << shift)) | part << shift;
}

void RtfColorTable::text(QByteArrayView bytes) {
  for (const char byte : bytes) {
    if (byte == ';' && m_entries.size() < kMostColors)
      m_entries.push_back(std::exchange(m_current, {}));
  }
}

// "\cssrgb\c100000\c0\c0\c50000": the fourth part is the alpha; "\cname textColor"
void RtfColorTable::extensionWord(QByteArrayView word, std::optional<int> parameter) {
  constexpr int kWhole = 100000;
  constexpr int kAlphaOfGrey = 2;
  constexpr int kAlphaOfColor = 4;
  if (m_extension >= m_entries.size())
    return;
  if (word == "cssgray" || word == "csgray")
    m_extensionParts = -kAlphaOfGrey;
  else if (word == "cssrgb" || word == "csgenericrgb" || word == "csdisplayp")
    m_extensionParts = -kAlphaOfColor;
  if (word != "c" || m_extensionParts >= 0 || ++m_extensionParts != 0)
    return;
  const double alpha = std::clamp(parameter.value_or(kWhole), 0, kWhole) / double(kWhole);
  m_entries[m_extension].alpha = quint32(std::lround(alpha * 255));
}

void RtfColorTable::extensionText(QByteArrayView bytes) {
  for (const char byte : bytes) {
    if (byte != ';') {
      if (m_extensionName.size() < kLongestTableName)
        m_extensionName += byte;
      continue;
    }
    const QByteArray name = m_extensionName.trimmed();
    if (m_extension < m_entries.size()) {
      m_entries[m_extension].followsTheme = name == "textColor" || name == "labelColor" ||
                                            name == "controlTextColor" ||
                                            name == "textBackgroundColor";
    }
    ++m_extension;
    m_extensionParts = 0;
    m_extensionName.clear();
  }
}

std::optional<TextColor> RtfColorTable::color(int index) const {
  if (index <= 0 || size_t(index) >= m_entries.size() || !m_entries[size_t(index)].isStated)
    return std::nullopt;
  const Entry& entry = m_entries[size_t(index)];
  return TextColor{entry.alpha << 24 | entry.rgb, entry.followsTheme, {}};
}

} // namespace tockwise
