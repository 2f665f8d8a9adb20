// Attributed texts, made comparable with what the fixtures expect.
#include "support/archive_json.h"

#include <QStringList>

#include <cmath>

namespace tockwise {
namespace {

Value text(const char* latin1) {
  return QString::fromLatin1(latin1);
}

Value valueOf(const Value& dictionary, QStringView key) {
  const Value* found = dictionary.find(key);
  return found ? *found : Value();
}

double number(const Value& value) {
  if (const qint64* integer = value.get<qint64>())
    return double(*integer);
  const double* real = value.get<double>();
  return real ? *real : 0;
}

struct NamedLength {
  const char* name;
  double ParagraphStyle::*length;
};
constexpr NamedLength kLengths[] = {
    {"NSFirstLineHeadIndent", &ParagraphStyle::firstLineHeadIndent},
    {"NSHeadIndent", &ParagraphStyle::headIndent},
    {"NSTailIndent", &ParagraphStyle::tailIndent},
    {"NSLineSpacing", &ParagraphStyle::lineSpacing},
    {"NSParagraphSpacing", &ParagraphStyle::paragraphSpacing},
    {"NSParagraphSpacingBefore", &ParagraphStyle::paragraphSpacingBefore},
    {"NSLineHeightMultiple", &ParagraphStyle::lineHeightMultiple},
    {"NSMinLineHeight", &ParagraphStyle::minLineHeight},
    {"NSMaxLineHeight", &ParagraphStyle::maxLineHeight},
    {"NSDefaultTabInterval", &ParagraphStyle::defaultTabInterval},
};

Value expectedColor(const Value& color) {
  if (const Value name = valueOf(color, u"name"); const QString* system = name.get<QString>()) {
    const QStringList themed{QStringLiteral("textColor"), QStringLiteral("labelColor"),
                             QStringLiteral("controlTextColor"),
                             QStringLiteral("textBackgroundColor")};
    if (themed.contains(*system))
      return text("theme");
    return expectedColor(valueOf(valueOf(color, u"fallback"), u"$color"));
  }
  std::vector<double> parts;
  const bool isExact = number(valueOf(color, u"custom_space_id")) == 7;
  for (const QStringView key : {u"components_in_custom_space", u"rgba", u"wa", u"cmyka"}) {
    if (key == u"components_in_custom_space" && !isExact)
      continue;
    const Value components = valueOf(color, key);
    if (const auto* array = components.get<Value::Array>(); array && parts.empty()) {
      for (const Value& component : *array)
        parts.push_back(number(component));
    }
  }
  if (parts.size() == 2)
    parts = {parts[0], parts[0], parts[0], parts[1]};
  if (parts.size() == 5)
    parts = {(1 - parts[0]) * (1 - parts[3]), (1 - parts[1]) * (1 - parts[3]),
             (1 - parts[2]) * (1 - parts[3]), parts[4]};
  qint64 argb = 0;
  for (const size_t at : {3, 0, 1, 2})
    argb = argb << 8 | std::lround(parts.at(at) * 255);
  return argb;
}

Value expectedParagraph(const Value& style) {
  Value::Dictionary described;
  for (const auto& [name, length] : kLengths)
    described.emplace_back(QString::fromLatin1(name),
                           number(valueOf(style, QString::fromLatin1(name))));
  described.emplace_back(QStringLiteral("alignment"), valueOf(style, u"NSAlignment"));
  described.emplace_back(QStringLiteral("direction"),
                         qint64(number(valueOf(style, u"NSWritingDirection"))));
  Value tabs = valueOf(style, u"NSTabStops");
  if (const auto* stops = tabs.get<Value::Array>()) {
    Value::Array locations;
    for (const Value& stop : *stops)
      locations.emplace_back(number(valueOf(valueOf(stop, u"$tab"), u"NSLocation")));
    tabs = std::move(locations);
  }
  described.emplace_back(QStringLiteral("tabs"), std::move(tabs));
  Value::Array lists;
  const Value expectedLists = valueOf(style, u"NSTextLists");
  if (const auto* all = expectedLists.get<Value::Array>()) {
    for (const Value& list : *all)
      lists.push_back(valueOf(valueOf(list, u"$list"), u"NSMarkerFormat"));
  }
  described.emplace_back(QStringLiteral("lists"), std::move(lists));
  return described;
}

Value expectedAttachment(const Value& attachment) {
  const Value wrapper = valueOf(valueOf(attachment, u"NSFileWrapper"), u"$filewrapper");
  const Value name = valueOf(wrapper, u"name");
  const Value data = valueOf(wrapper, u"data");
  return Value::Dictionary{{QStringLiteral("name"), name.isNull() ? Value(QString()) : name},
                           {QStringLiteral("data"), data.isNull() ? dataJson({}) : data}};
}

Value expectedAttribute(const QString& name, const Value& value) {
  if (const Value font = valueOf(value, u"$font"); name == u"NSFont" && !font.isNull())
    return Value::Dictionary{{QStringLiteral("name"), valueOf(font, u"name")},
                             {QStringLiteral("size"), number(valueOf(font, u"size"))}};
  if (const Value color = valueOf(value, u"$color"); !color.isNull())
    return expectedColor(color);
  if (const Value style = valueOf(value, u"$paragraph"); !style.isNull())
    return expectedParagraph(style);
  if (const Value url = valueOf(value, u"$url"); name == u"NSLink" && !url.isNull())
    return valueOf(url, u"relative");
  if (const Value attachment = valueOf(value, u"$attachment"); !attachment.isNull())
    return expectedAttachment(attachment);
  return value;
}

Value describeColor(const TextColor& color) {
  return color.followsTheme ? text("theme") : Value(qint64(color.argb));
}

Value describeParagraph(const ParagraphStyle& style) {
  Value::Dictionary described;
  for (const auto& [name, length] : kLengths)
    described.emplace_back(QString::fromLatin1(name), style.*length);
  described.emplace_back(QStringLiteral("alignment"),
                         style.alignment ? Value(qint64(*style.alignment)) : Value());
  described.emplace_back(QStringLiteral("direction"), qint64(style.writingDirection));
  Value tabs;
  if (style.tabStops) {
    Value::Array locations;
    for (const TextTab& tab : *style.tabStops)
      locations.emplace_back(tab.location);
    tabs = std::move(locations);
  }
  described.emplace_back(QStringLiteral("tabs"), std::move(tabs));
  Value::Array lists(style.lists.begin(), style.lists.end());
  described.emplace_back(QStringLiteral("lists"), std::move(lists));
  return described;
}

void describeNumbers(const TextAttributes& attributes, Value::Dictionary& to) {
  if (attributes.underline)
    to.emplace_back(QStringLiteral("NSUnderline"), *attributes.underline);
  if (attributes.strikethrough)
    to.emplace_back(QStringLiteral("NSStrikethrough"), *attributes.strikethrough);
  if (attributes.superscript)
    to.emplace_back(QStringLiteral("NSSuperScript"), *attributes.superscript);
}

Value describeAttributes(const TextAttributes& attributes, Others others) {
  Value::Dictionary described;
  if (attributes.font)
    described.emplace_back(QStringLiteral("NSFont"),
                           Value::Dictionary{{QStringLiteral("name"), attributes.font->name},
                                             {QStringLiteral("size"), attributes.font->size}});
  if (attributes.color)
    described.emplace_back(QStringLiteral("NSColor"), describeColor(*attributes.color));
  if (attributes.background)
    described.emplace_back(QStringLiteral("NSBackgroundColor"),
                           describeColor(*attributes.background));
  if (attributes.paragraph)
    described.emplace_back(QStringLiteral("NSParagraphStyle"),
                           describeParagraph(*attributes.paragraph));
  describeNumbers(attributes, described);
  if (attributes.link)
    described.emplace_back(QStringLiteral("NSLink"), *attributes.link);
  if (attributes.attachment)
    described.emplace_back(
        QStringLiteral("NSAttachment"),
        Value::Dictionary{{QStringLiteral("name"), attributes.attachment->name},
                          {QStringLiteral("data"), dataJson(attributes.attachment->contents)}});
  if (others == Others::Described) {
    for (const OtherAttribute& other : attributes.others)
      described.emplace_back(other.name, jsonOf(*other.value.archive(), other.value.uid()));
  }
  return described;
}

Value describeRun(qint64 length, Value attributes) {
  return Value::Dictionary{{QStringLiteral("length"), length},
                           {QStringLiteral("attributes"), std::move(attributes)}};
}

} // namespace

Value describeExpected(const Value& attributed) {
  Value::Array runs;
  const Value expectedRuns = valueOf(attributed, u"runs");
  for (const Value& run : *expectedRuns.get<Value::Array>()) {
    Value::Dictionary attributes;
    const Value expected = valueOf(run, u"attributes");
    for (const auto& [name, value] : *expected.get<Value::Dictionary>())
      attributes.emplace_back(name, expectedAttribute(name, value));
    runs.push_back(describeRun(*valueOf(run, u"length").get<qint64>(), std::move(attributes)));
  }
  return Value::Dictionary{{QStringLiteral("text"), valueOf(attributed, u"text")},
                           {QStringLiteral("runs"), std::move(runs)}};
}

Value describe(const AttributedText& text, Others others) {
  Value::Array runs;
  for (const TextRun& run : text.runs)
    runs.push_back(describeRun(run.length, describeAttributes(run.attributes, others)));
  return Value::Dictionary{{QStringLiteral("text"), text.text},
                           {QStringLiteral("runs"), std::move(runs)}};
}

AttributedText withoutOriginals(AttributedText text) {
  for (TextRun& run : text.runs) {
    TextAttributes& attributes = run.attributes;
    if (attributes.font)
      attributes.font->original = {};
    if (attributes.color)
      attributes.color->original = {};
    if (attributes.background)
      attributes.background->original = {};
    if (attributes.attachment)
      attributes.attachment->original = {};
    if (attributes.paragraph) {
      attributes.paragraph->original = {};
      if (attributes.paragraph->tabStops) {
        for (TextTab& tab : *attributes.paragraph->tabStops)
          tab.original = {};
      }
    }
    attributes.linkOriginal = {};
    attributes.others.clear();
  }
  return text;
}

} // namespace tockwise
