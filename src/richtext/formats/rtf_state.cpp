#include "richtext/formats/rtf_state.h"

#include "richtext/formats/rtf_units.h"

#include <QHash>

#include <algorithm>

namespace tockwise {
namespace {

constexpr size_t kMostTabs = 32;

struct Parameter {
  std::optional<int> stated;

  bool isOn() const { return stated.value_or(1) != 0; }
  int number() const { return stated.value_or(0); }
  int length() const { return std::clamp(number(), -kMostTwips, kMostTwips); }
};

using Apply = void (*)(RtfState& state, Parameter parameter);

template <qint64 kind> void underline(RtfState& state, Parameter parameter) {
  state.characters.underline = parameter.isOn() ? kind : 0;
}

template <TextAlignment alignment> void align(RtfState& state, Parameter) {
  state.paragraph.alignment = alignment;
}

template <int RtfParagraph::*member> void length(RtfState& state, Parameter parameter) {
  state.paragraph.*member = parameter.length();
}

template <TextAlignment alignment> void tabKind(RtfState& state, Parameter) {
  state.paragraph.nextTabAlignment = qint64(alignment);
}

void addTab(RtfState& state, Parameter parameter) {
  RtfParagraph& paragraph = state.paragraph;
  if (paragraph.tabs.size() < kMostTabs && parameter.number() >= 0)
    paragraph.tabs.push_back({parameter.length() / kTwipsPerPoint, paragraph.nextTabAlignment, {}});
  paragraph.nextTabAlignment = 0;
}

using State = RtfState&;
using P = Parameter;

void addCharacterWords(QHash<QByteArray, Apply>& words) {
  words.insert({
      {"plain", [](State s, P) { s.characters = {}; }},
      {"f", [](State s, P p) { s.characters.font = p.number(); }},
      {"fs", [](State s, P p) { s.characters.size = std::clamp(p.number(), 1, 4000); }},
      {"b", [](State s, P p) { s.characters.bold = p.isOn(); }},
      {"i", [](State s, P p) { s.characters.italic = p.isOn(); }},
      {"v", [](State s, P p) { s.characters.hidden = p.isOn(); }},
      {"deleted", [](State s, P p) { s.characters.hidden = p.isOn(); }},
      {"cf", [](State s, P p) { s.characters.color = p.number(); }},
      {"cb", [](State s, P p) { s.characters.background = p.number(); }},
      {"chcbpat", [](State s, P p) { s.characters.background = p.number(); }},
      {"highlight", [](State s, P p) { s.characters.background = p.number(); }},
      {"ul", underline<1>},
      {"ulnone", underline<0>},
      {"ulth", underline<2>},
      {"uldb", underline<9>},
      {"uld", underline<0x101>},
      {"uldash", underline<0x201>},
      {"ulldash", underline<0x201>},
      {"uldashd", underline<0x301>},
      {"uldashdd", underline<0x401>},
      {"ulthd", underline<0x102>},
      {"ulthdash", underline<0x202>},
      {"ulthdashd", underline<0x302>},
      {"ulthdashdd", underline<0x402>},
      {"ulw", underline<0x8001>},
      {"ulwave", underline<1>},
      {"strike", [](State s, P p) { s.characters.strikethrough = p.isOn() ? 1 : 0; }},
      {"striked", [](State s, P p) { s.characters.strikethrough = p.isOn() ? 9 : 0; }},
      {"super", [](State s, P p) { s.characters.superscript = p.isOn() ? 1 : 0; }},
      {"sub", [](State s, P p) { s.characters.superscript = p.isOn() ? -1 : 0; }},
      {"nosupersub", [](State s, P) { s.characters.superscript = 0; }},
      {"uc", [](State s, P p) { s.skippedAfterUnicode = std::clamp(p.number(), 0, 100); }},
  });
}

void addParagraphWords(QHash<QByteArray, Apply>& words) {
  words.insert({
      {"pard", [](State s, P) { s.paragraph = {}; }},
      {"ql", align<TextAlignment::Left>},
      {"qr", align<TextAlignment::Right>},
      {"qc", align<TextAlignment::Center>},
      {"qj", align<TextAlignment::Justified>},
      {"qnatural", align<TextAlignment::Natural>},
      {"li", length<&RtfParagraph::leftIndent>},
      {"fi", length<&RtfParagraph::firstIndent>},
      {"ri", length<&RtfParagraph::rightIndent>},
      {"sb", length<&RtfParagraph::spaceBefore>},
      {"sa", length<&RtfParagraph::spaceAfter>},
      {"sl", length<&RtfParagraph::lineSpacing>},
      {"slmult", [](State s, P p) { s.paragraph.lineSpacingIsMultiple = p.number() == 1; }},
      {"slleading", length<&RtfParagraph::leading>},
      {"slminimum", length<&RtfParagraph::leastHeight>},
      {"slmaximum", length<&RtfParagraph::mostHeight>},
      {"pardeftab", length<&RtfParagraph::tabInterval>},
      {"tqr", tabKind<TextAlignment::Right>},
      {"tqdec", tabKind<TextAlignment::Right>},
      {"tqc", tabKind<TextAlignment::Center>},
      {"tx", addTab},
      {"rtlpar", [](State s, P) { s.paragraph.writingDirection = 2; }},
      {"ltrpar", [](State s, P) { s.paragraph.writingDirection = 1; }},
  });
}

// Twelve stops every 28 points are what a text has that states none.
bool areDefaultTabs(const std::vector<TextTab>& tabs) {
  constexpr size_t kCount = 12;
  constexpr double kInterval = 28;
  if (tabs.size() != kCount)
    return false;
  for (size_t i = 0; i < kCount; ++i) {
    if (tabs[i].location != kInterval * double(i + 1) || tabs[i].alignment != 0)
      return false;
  }
  return true;
}

} // namespace

ParagraphStyle RtfParagraph::style() const {
  ParagraphStyle style;
  style.alignment = alignment;
  style.headIndent = std::max(0, leftIndent) / kTwipsPerPoint;
  style.firstLineHeadIndent = std::max(0, leftIndent + firstIndent) / kTwipsPerPoint;
  style.tailIndent = rightIndent > 0 ? -rightIndent / kTwipsPerPoint : 0;
  style.paragraphSpacingBefore = std::max(0, spaceBefore) / kTwipsPerPoint;
  style.paragraphSpacing = std::max(0, spaceAfter) / kTwipsPerPoint;
  if (lineSpacingIsMultiple && lineSpacing > 0 && lineSpacing != int(kSingleSpaced))
    style.lineHeightMultiple = lineSpacing / kSingleSpaced;
  else if (!lineSpacingIsMultiple)
    style.minLineHeight = std::abs(lineSpacing) / kTwipsPerPoint;
  if (!lineSpacingIsMultiple && lineSpacing < 0)
    style.maxLineHeight = style.minLineHeight;
  style.lineSpacing = std::max(0, leading) / kTwipsPerPoint;
  if (leastHeight > 0)
    style.minLineHeight = leastHeight / kTwipsPerPoint;
  if (mostHeight > 0)
    style.maxLineHeight = mostHeight / kTwipsPerPoint;
  style.defaultTabInterval = std::max(0, tabInterval) / kTwipsPerPoint;
  style.writingDirection = writingDirection;
  if (!tabs.empty() && !areDefaultTabs(tabs))
    style.tabStops = tabs;
  return style;
}

bool applyRtfProperty(QByteArrayView word, std::optional<int> parameter, RtfState& state) {
  static const QHash<QByteArray, Apply> words = [] {
    QHash<QByteArray, Apply> all;
    addCharacterWords(all);
    addParagraphWords(all);
    return all;
  }();
  const auto known = words.constFind(word.toByteArray());
  if (known == words.constEnd())
    return false;
  (*known)(state, Parameter{parameter});
  return true;
}

char16_t rtfCharacter(QByteArrayView word) {
  static const QHash<QByteArray, char16_t> characters{
      {"tab", u'\t'},
      {"line", u'\x2028'},
      {"lbr", u'\x2028'},
      {"softline", u'\x2028'},
      {"cell", u'\t'},
      {"nestcell", u'\t'},
      {"emdash", u'\x2014'},
      {"endash", u'\x2013'},
      {"emspace", u'\x2003'},
      {"enspace", u'\x2002'},
      {"qmspace", u'\x2005'},
      {"bullet", u'\x2022'},
      {"lquote", u'\x2018'},
      {"rquote", u'\x2019'},
      {"ldblquote", u'\x201c'},
      {"rdblquote", u'\x201d'},
      {"zwj", u'\x200d'},
      {"zwnj", u'\x200c'},
      {"zwbo", u'\x200b'},
      {"zwnbo", u'\xfeff'},
      {"ltrmark", u'\x200e'},
      {"rtlmark", u'\x200f'},
      {"~", u'\xa0'},
      {"_", u'\x2011'},
      {"-", u'\xad'},
      {"\\", u'\\'},
      {"{", u'{'},
      {"}", u'}'},
      {"\t", u'\t'},
  };
  return characters.value(word.toByteArray(), 0);
}

} // namespace tockwise
