#include "store/archive/attribute_codec.h"

#include "store/archive/archive_values.h"
#include "store/archive/attachment_codec.h"
#include "store/archive/color_codec.h"
#include "store/archive/font_codec.h"
#include "store/archive/paragraph_codec.h"

#include <QUrl>

#include <algorithm>
#include <array>

namespace tockwise {
namespace {

using Uid = KeyedArchive::Uid;

constexpr qsizetype kMostNotes = 20;

// Book-keeping of the program that wrote the text, of no use to anybody else.
constexpr std::array<QStringView, 3> kDropped{u"NSOriginalFont", u"NSSpellingState", u"NSCursor"};

template <typename Decoded, typename Decode>
bool decodeShared(QHash<Uid, std::optional<Decoded>>& known, const KeyedArchive& archive, Uid uid,
                  const Decode& decode, std::optional<Decoded>& to) {
  auto found = known.find(uid);
  if (found == known.end())
    found = known.insert(uid, decode(archive, uid));
  to = *found;
  return to.has_value();
}

bool decodeLink(const KeyedArchive& archive, Uid uid, TextAttributes& attributes) {
  auto link = stringAt(archive, uid);
  if (!link)
    link = urlAt(archive, uid);
  if (!link)
    return false;
  attributes.link = std::move(link);
  attributes.linkOriginal = archive.object(uid);
  return true;
}

} // namespace

qsizetype sizeOf(const TextAttributes& attributes) {
  size_t size = sizeof(TextRun) + attributes.others.size() * sizeof(OtherAttribute);
  if (attributes.paragraph) {
    size += attributes.paragraph->lists.size() * sizeof(QString);
    if (attributes.paragraph->tabStops)
      size += attributes.paragraph->tabStops->size() * sizeof(TextTab);
  }
  return qsizetype(size);
}

void AttributeDecoder::note(const QString& what) {
  if (m_notes.size() < kMostNotes && !m_notes.contains(what))
    m_notes.append(what);
}

std::optional<TextAttributes> AttributeDecoder::decode(Uid dictionary) {
  const auto pairs = pairsAt(m_archive, dictionary);
  if (!pairs)
    return std::nullopt;
  TextAttributes attributes;
  for (const auto& [key, value] : *pairs) {
    if (const QString& name = nameAt(key); !name.isEmpty())
      decodeAttribute(name, value, attributes);
    else
      note(QStringLiteral("an attribute without a name was left out"));
  }
  // Of attributes with one name, the first one holds.
  auto& others = attributes.others;
  const auto byName = [](const auto& one, const auto& other) { return one.name < other.name; };
  const auto sameName = [](const auto& one, const auto& other) { return one.name == other.name; };
  std::stable_sort(others.begin(), others.end(), byName);
  others.erase(std::unique(others.begin(), others.end(), sameName), others.end());
  return attributes;
}

const QString& AttributeDecoder::nameAt(Uid uid) {
  auto known = m_names.find(uid);
  if (known == m_names.end())
    known = m_names.insert(uid, stringAt(m_archive, uid).value_or(QString()));
  return *known;
}

void AttributeDecoder::decodeAttribute(const QString& name, Uid value, TextAttributes& attributes) {
  if (value == KeyedArchive::kNil ||
      std::find(kDropped.begin(), kDropped.end(), name) != kDropped.end())
    return;
  if (decodeKnown(name, value, attributes))
    return;
  if (m_archive.isSound(value))
    attributes.others.push_back({name, m_archive.object(value)});
  else
    note(QStringLiteral("the attribute %1 is damaged and was left out").arg(inMessage(name)));
}

bool AttributeDecoder::decodeKnown(const QString& name, Uid value, TextAttributes& attributes) {
  const auto integer = [&](std::optional<qint64>& to) {
    to = integerAt(m_archive, value);
    return to.has_value();
  };
  if (name == u"NSFont")
    return decodeShared(m_fonts, m_archive, value, decodeFont, attributes.font);
  if (name == u"NSColor")
    return decodeShared(m_colors, m_archive, value, decodeColor, attributes.color);
  if (name == u"NSBackgroundColor")
    return decodeShared(m_colors, m_archive, value, decodeColor, attributes.background);
  if (name == u"NSParagraphStyle")
    return decodeShared(m_styles, m_archive, value, decodeParagraphStyle, attributes.paragraph);
  if (name == u"NSUnderline")
    return integer(attributes.underline);
  if (name == u"NSStrikethrough")
    return integer(attributes.strikethrough);
  if (name == u"NSSuperScript")
    return integer(attributes.superscript);
  if (name == u"NSLink")
    return decodeLink(m_archive, value, attributes);
  if (name == u"NSAttachment") {
    attributes.attachment = decodeAttachment(m_archive, value);
    return attributes.attachment.has_value();
  }
  return false;
}

void AttributeEncoder::add(const QString& name, Uid value) {
  const Uid key = m_writer.string(name);
  if (std::find(m_keys.begin(), m_keys.end(), key) != m_keys.end())
    return; // an opaque value of an attribute that has been given a known one
  m_keys.push_back(key);
  m_values.push_back(value);
}

void AttributeEncoder::addNumber(const QString& name, const std::optional<qint64>& value) {
  if (value)
    add(name, m_writer.integer(*value));
}

KeyedWriter::Uid AttributeEncoder::color(const TextColor& color) {
  return m_colors.find(color, [&] { return encodeColor(m_writer, color); });
}

KeyedWriter::Uid AttributeEncoder::link(const TextAttributes& attributes) {
  if (const Uid copied = m_writer.copy(attributes.linkOriginal); copied != KeyedWriter::kNil)
    return copied;
  const QUrl url(*attributes.link, QUrl::StrictMode);
  if (!url.isValid() || url.scheme().isEmpty())
    return m_writer.string(*attributes.link);
  static const QStringList chain{QStringLiteral("NSURL"), QStringLiteral("NSObject")};
  const Uid text = m_writer.string(*attributes.link);
  return m_writer.valueRecord(
      {{QStringLiteral("NS.base"), m_writer.inlineReference(KeyedWriter::kNil)},
       {QStringLiteral("NS.relative"), m_writer.inlineReference(text)}},
      chain);
}

KeyedWriter::Uid AttributeEncoder::encode(const TextAttributes& attributes) {
  m_keys.clear();
  m_values.clear();
  if (attributes.font)
    add(QStringLiteral("NSFont"),
        m_fonts.find(*attributes.font, [&] { return encodeFont(m_writer, *attributes.font); }));
  if (attributes.paragraph)
    add(QStringLiteral("NSParagraphStyle"), m_styles.find(*attributes.paragraph, [&] {
      return encodeParagraphStyle(m_writer, *attributes.paragraph);
    }));
  if (attributes.color)
    add(QStringLiteral("NSColor"), color(*attributes.color));
  if (attributes.background)
    add(QStringLiteral("NSBackgroundColor"), color(*attributes.background));
  addNumber(QStringLiteral("NSUnderline"), attributes.underline);
  addNumber(QStringLiteral("NSStrikethrough"), attributes.strikethrough);
  addNumber(QStringLiteral("NSSuperScript"), attributes.superscript);
  if (attributes.link)
    add(QStringLiteral("NSLink"), link(attributes));
  if (attributes.attachment)
    add(QStringLiteral("NSAttachment"), encodeAttachment(m_writer, *attributes.attachment));
  for (const OtherAttribute& other : attributes.others) {
    if (const Uid copied = m_writer.copy(other.value); copied != KeyedWriter::kNil)
      add(other.name, copied);
  }
  QByteArray identity;
  for (const auto& part : {m_keys, m_values})
    identity.append(reinterpret_cast<const char*>(part.data()),
                    qsizetype(part.size()) * qsizetype(sizeof(Uid)));
  if (const auto known = m_dictionaries.constFind(identity); known != m_dictionaries.cend())
    return *known;
  return *m_dictionaries.insert(identity, m_writer.dictionary(m_keys, m_values));
}

} // namespace tockwise
