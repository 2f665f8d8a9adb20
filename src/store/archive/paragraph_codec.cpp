#include "store/archive/paragraph_codec.h"

#include "store/archive/archive_values.h"

#include <algorithm>

namespace tockwise {
namespace {

using Uid = KeyedArchive::Uid;

constexpr double kMostPoints = 1e6; // beyond what any page or window holds
constexpr size_t kMostTabs = 256;
constexpr size_t kMostLists = 64;

struct LengthField {
  QStringView name;
  double ParagraphStyle::*length;
};

// In the order in which they are written; each is left out where it is 0.
constexpr LengthField kLengths[] = {
    {u"NSFirstLineHeadIndent", &ParagraphStyle::firstLineHeadIndent},
    {u"NSHeadIndent", &ParagraphStyle::headIndent},
    {u"NSTailIndent", &ParagraphStyle::tailIndent},
    {u"NSLineSpacing", &ParagraphStyle::lineSpacing},
    {u"NSParagraphSpacing", &ParagraphStyle::paragraphSpacing},
    {u"NSParagraphSpacingBefore", &ParagraphStyle::paragraphSpacingBefore},
    {u"NSLineHeightMultiple", &ParagraphStyle::lineHeightMultiple},
    {u"NSMinLineHeight", &ParagraphStyle::minLineHeight},
    {u"NSMaxLineHeight", &ParagraphStyle::maxLineHeight},
    {u"NSDefaultTabInterval", &ParagraphStyle::defaultTabInterval},
};

double lengthField(const KeyedArchive& archive, Uid uid, QStringView name) {
  return std::clamp(realField(archive, uid, name).value_or(0), -kMostPoints, kMostPoints);
}

std::optional<TextTab> decodeTab(const KeyedArchive& archive, Uid uid) {
  if (!archive.isKindOf(uid, u"NSTextTab"))
    return std::nullopt;
  return TextTab{lengthField(archive, uid, u"NSLocation"),
                 integerField(archive, uid, u"NSTextAlignment").value_or(0), archive.object(uid)};
}

std::optional<std::vector<TextTab>> decodeTabs(const KeyedArchive& archive, Uid uid) {
  const auto elements = elementsAt(archive, uid);
  if (!elements)
    return std::nullopt;
  std::vector<TextTab> tabs;
  for (const Uid element : *elements) {
    if (tabs.size() == kMostTabs)
      break;
    if (auto tab = decodeTab(archive, element))
      tabs.push_back(std::move(*tab));
  }
  return tabs;
}

std::vector<QString> decodeLists(const KeyedArchive& archive, Uid uid) {
  std::vector<QString> lists;
  for (const Uid element : elementsAt(archive, uid).value_or(std::vector<Uid>())) {
    if (lists.size() == kMostLists)
      break;
    if (!archive.isKindOf(element, u"NSTextList"))
      continue;
    if (auto marker = stringField(archive, element, u"NSMarkerFormat"))
      lists.push_back(std::move(*marker));
  }
  return lists;
}

Uid encodeTabs(KeyedWriter& writer, const std::vector<TextTab>& tabs) {
  static const QStringList chain{QStringLiteral("NSTextTab"), QStringLiteral("NSObject")};
  std::vector<Uid> elements;
  for (const TextTab& tab : tabs) {
    if (const Uid copied = writer.copy(tab.original); copied != KeyedWriter::kNil) {
      elements.push_back(copied);
      continue;
    }
    std::vector<KeyedWriter::Field> fields{
        {QStringLiteral("NSLocation"), writer.inlineReal(tab.location)}};
    if (tab.alignment != 0)
      fields.emplace_back(QStringLiteral("NSTextAlignment"), writer.inlineInteger(tab.alignment));
    elements.push_back(writer.valueRecord(std::move(fields), chain));
  }
  return writer.array(elements);
}

Uid encodeLists(KeyedWriter& writer, const std::vector<QString>& lists) {
  static const QStringList chain{QStringLiteral("NSTextList"), QStringLiteral("NSObject")};
  std::vector<Uid> elements;
  for (const QString& marker : lists) {
    const auto format = writer.inlineReference(writer.string(marker));
    elements.push_back(writer.valueRecord({{QStringLiteral("NSMarkerFormat"), format}}, chain));
  }
  return writer.array(elements);
}

} // namespace

std::optional<ParagraphStyle> decodeParagraphStyle(const KeyedArchive& archive, Uid uid) {
  if (!archive.isKindOf(uid, u"NSParagraphStyle"))
    return std::nullopt;
  ParagraphStyle style;
  for (const auto& [name, length] : kLengths)
    style.*length = lengthField(archive, uid, name);
  if (const auto alignment = integerField(archive, uid, u"NSAlignment");
      alignment && *alignment >= 0 && *alignment <= qint64(TextAlignment::Natural))
    style.alignment = TextAlignment(*alignment);
  if (const auto direction = integerField(archive, uid, u"NSWritingDirection");
      direction && (*direction == 1 || *direction == 2))
    style.writingDirection = int(*direction);
  style.tabStops = decodeTabs(archive, archive.reference(uid, u"NSTabStops"));
  style.lists = decodeLists(archive, archive.reference(uid, u"NSTextLists"));
  style.original = archive.object(uid);
  return style;
}

KeyedWriter::Uid encodeParagraphStyle(KeyedWriter& writer, const ParagraphStyle& style) {
  if (const Uid copied = writer.copy(style.original); copied != KeyedWriter::kNil)
    return copied;
  static const QStringList chain{QStringLiteral("NSParagraphStyle"), QStringLiteral("NSObject")};
  // The tabs are written even when they are the default ones.
  const Uid tabs = style.tabStops ? encodeTabs(writer, *style.tabStops) : KeyedWriter::kNil;
  std::vector<KeyedWriter::Field> fields{
      {QStringLiteral("NSTabStops"), writer.inlineReference(tabs)}};
  if (style.alignment)
    fields.emplace_back(QStringLiteral("NSAlignment"),
                        writer.inlineInteger(qint64(*style.alignment)));
  for (const auto& [name, length] : kLengths) {
    if (style.*length != 0)
      fields.emplace_back(name.toString(), writer.inlineReal(style.*length));
  }
  if (style.writingDirection != 0)
    fields.emplace_back(QStringLiteral("NSWritingDirection"),
                        writer.inlineInteger(style.writingDirection));
  if (!style.lists.empty())
    fields.emplace_back(QStringLiteral("NSTextLists"),
                        writer.inlineReference(encodeLists(writer, style.lists)));
  return writer.valueRecord(std::move(fields), chain);
}

} // namespace tockwise
