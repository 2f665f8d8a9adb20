#include "store/archive/typedstream_translation.h"

#include "store/archive/keyed_writer.h"
#include "store/archive/run_codec.h"
#include "store/archive/typedstream_values.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace tockwise::typedstream {
namespace {

using Kind = Item::Kind;
using Uid = KeyedWriter::Uid;

constexpr quint64 kNone = std::numeric_limits<quint64>::max(); // no object has this index
const QString kObject = QStringLiteral("NSObject");

// Bookkeeping of the program that wrote the archive: without a meaning for anybody else.
bool isBookkeeping(const QString& attribute) {
  return attribute == u"NSOriginalFont" || attribute == u"NSCursor" ||
         attribute == u"NSSpellingState";
}

// Numbers from 0 to 1, separated by spaces; an alpha of 1 at the end is left out.
QByteArray componentText(const Color& color) {
  constexpr int digits = 10;
  QByteArray text;
  for (size_t i = 0; i < color.components.size(); ++i) {
    const double stated = color.components[i];
    const double component = stated > 0 ? std::min(stated, 1.0) : 0; // what is no number too
    if (i + 1 == color.components.size() && component == 1)
      break;
    std::array<char, 32> number{};
    const auto end = std::to_chars(number.data(), number.data() + number.size(), component,
                                   std::chars_format::general, digits)
                         .ptr;
    if (i > 0)
      text += ' ';
    text.append(number.data(), end - number.data());
  }
  return text + '\0';
}

class Translator {
 public:
  explicit Translator(const Tree& tree) : m_tree(tree) {}

  std::optional<Translation> translate();

 private:
  struct AttributeName {
    QString text;
    Uid uid = KeyedWriter::kNil; // nil: it is no string
    bool isNoted = false;
  };

  std::vector<Uid> translateRuns(const AttributedString& text, std::vector<RunEntry>& entries);
  Uid translateAttributes(const std::optional<Item>& dictionary);
  /// Nil for what has no place in a keyed archive. Each object is translated once.
  Uid translate(const Item& item);
  Uid translateObject(const Item& item);
  Uid translateFormat(const Item& item);
  Uid translateNumber(const Item& number);
  Uid translateCollection(const std::vector<Item>& elements);
  Uid translateDictionary(const std::vector<std::pair<Item, Item>>& pairs);
  Uid translateFont(const Font& font);
  Uid translateColor(const Color& color);
  Uid translateLink(const Link& link);
  Uid translateContainer(const QByteArray& container);
  AttributeName& attributeName(const Item& key);
  void noteUnconverted(const QString& attribute);
  void note(const QString& text);

  KeyedWriter::Inline reference(Uid uid) { return m_writer.inlineReference(uid); }
  QStringList rootChain(const Item& root) const;

  const Tree& m_tree;
  KeyedWriter m_writer;
  QHash<quint64, Uid> m_known;           // by the index of the object; nil while it is translated
  QHash<quint64, Uid> m_dictionaries;    // of attributes, likewise
  QHash<quint64, AttributeName> m_names; // likewise
  QStringList m_notes;
};

QStringList Translator::rootChain(const Item& root) const {
  QStringList chain{QStringLiteral("NSAttributedString"), kObject};
  if (m_tree.isKindOf(root, "NSMutableAttributedString") || m_tree.isKindOf(root, "NSTextStorage"))
    chain.prepend(QStringLiteral("NSMutableAttributedString"));
  if (m_tree.isKindOf(root, "NSTextStorage"))
    chain.prepend(QStringLiteral("NSTextStorage"));
  return chain;
}

std::optional<Translation> Translator::translate() {
  const Item root = m_tree.root();
  const auto attributed = attributedStringOf(m_tree, root);
  if (!attributed)
    return std::nullopt;
  std::vector<RunEntry> entries;
  const Uid record = m_writer.reserve();
  const Uid text = m_writer.mutableString(stringOf(m_tree, attributed->text).value_or(QString()));
  const std::vector<Uid> dictionaries = translateRuns(*attributed, entries);
  const Uid attributes = m_writer.mutableArray(dictionaries);
  const Uid table = m_writer.mutableData(encodeRuns(entries));
  m_writer.setRecord(record,
                     {{QStringLiteral("NSString"), reference(text)},
                      {QStringLiteral("NSAttributes"), reference(attributes)},
                      {QStringLiteral("NSAttributeInfo"), reference(table)}},
                     rootChain(root));
  return Translation{m_writer.finish(record), m_notes};
}

std::vector<Uid> Translator::translateRuns(const AttributedString& text,
                                           std::vector<RunEntry>& entries) {
  std::vector<Uid> dictionaries;
  QHash<Uid, quint32> places;
  for (const AttributeRun& run : text.runs) {
    const Uid uid = translateAttributes(run.attributes);
    if (!places.contains(uid)) {
      places.insert(uid, quint32(dictionaries.size()));
      dictionaries.push_back(uid);
    }
    entries.push_back({quint32(run.length), places[uid]});
  }
  return dictionaries;
}

Uid Translator::translateAttributes(const std::optional<Item>& dictionary) {
  const quint64 index = dictionary ? dictionary->payload : kNone;
  if (const auto known = m_dictionaries.constFind(index); known != m_dictionaries.cend())
    return *known;
  std::vector<Uid> names;
  std::vector<Uid> values;
  const auto pairs = dictionary ? pairsOf(m_tree, *dictionary) : std::nullopt;
  if (dictionary && !pairs)
    note(QStringLiteral("the attributes of a run of this old note are damaged"));
  for (const auto& [key, value] : pairs.value_or(std::vector<std::pair<Item, Item>>())) {
    AttributeName& name = attributeName(key);
    if (name.uid == KeyedWriter::kNil || isBookkeeping(name.text))
      continue;
    const Uid uid = translate(value);
    if (uid != KeyedWriter::kNil) {
      names.push_back(name.uid);
      values.push_back(uid);
    } else if (!name.isNoted) {
      name.isNoted = true;
      noteUnconverted(name.text);
    }
  }
  return *m_dictionaries.insert(index, m_writer.dictionary(names, values));
}

Translator::AttributeName& Translator::attributeName(const Item& key) {
  const quint64 index = key.kind == Kind::Object ? key.payload : kNone;
  auto known = m_names.find(index);
  if (known == m_names.end()) {
    AttributeName name;
    if (const auto text = stringOf(m_tree, key))
      name = {*text, m_writer.string(*text), false};
    known = m_names.insert(index, name);
  }
  return *known;
}

void Translator::noteUnconverted(const QString& attribute) {
  constexpr qsizetype longest = 64;
  if (attribute == u"NSParagraphStyle")
    note(QStringLiteral("paragraph formatting of this old note was not converted"));
  else
    note(QStringLiteral("the attribute %1 of this old note was not converted")
             .arg(attribute.left(longest)));
}

void Translator::note(const QString& text) {
  constexpr qsizetype most = 20;
  if (m_notes.size() < most && !m_notes.contains(text))
    m_notes.append(text);
}

Uid Translator::translate(const Item& item) {
  if (item.kind != Kind::Object)
    return KeyedWriter::kNil;
  const quint64 index = item.payload;
  if (const auto known = m_known.constFind(index); known != m_known.cend())
    return *known;
  m_known.insert(index, KeyedWriter::kNil); // an object within itself is cut off there
  const Uid uid = translateObject(item);
  m_known[index] = uid;
  return uid;
}

Uid Translator::translateObject(const Item& item) {
  if (const auto text = stringOf(m_tree, item))
    return m_writer.string(*text);
  if (const auto number = numberOf(m_tree, item))
    return translateNumber(*number);
  if (const auto bytes = dataOf(m_tree, item))
    return m_writer.data(*bytes);
  if (const auto seconds = dateOf(m_tree, item))
    return std::isfinite(*seconds) ? m_writer.date(Date{*seconds}) : KeyedWriter::kNil;
  if (m_tree.isKindOf(item, "NSNull"))
    return m_writer.null();
  if (m_tree.isKindOf(item, "NSArray")) {
    const auto elements = elementsOf(m_tree, item);
    return elements ? translateCollection(*elements) : KeyedWriter::kNil;
  }
  if (const auto pairs = pairsOf(m_tree, item))
    return translateDictionary(*pairs);
  return translateFormat(item);
}

Uid Translator::translateFormat(const Item& item) {
  if (const auto font = fontOf(m_tree, item))
    return translateFont(*font);
  if (const auto color = colorOf(m_tree, item))
    return translateColor(*color);
  if (const auto link = linkOf(m_tree, item))
    return translateLink(*link);
  if (!m_tree.isKindOf(item, "NSTextAttachment"))
    return KeyedWriter::kNil;
  const auto container = fileContainerOf(m_tree, item);
  return container ? translateContainer(*container) : KeyedWriter::kNil;
}

Uid Translator::translateNumber(const Item& number) {
  if (number.kind == Kind::Real)
    return std::isfinite(number.real()) ? m_writer.real(number.real()) : KeyedWriter::kNil;
  if (isBoolean(number))
    return m_writer.boolean(number.payload != 0);
  if (number.kind == Kind::Unsigned && number.integer() < 0)
    return m_writer.real(double(number.payload));
  return m_writer.integer(number.integer());
}

Uid Translator::translateCollection(const std::vector<Item>& elements) {
  std::vector<Uid> uids;
  for (const Item& element : elements) {
    if (const Uid uid = translate(element); uid != KeyedWriter::kNil)
      uids.push_back(uid);
  }
  return m_writer.array(uids);
}

Uid Translator::translateDictionary(const std::vector<std::pair<Item, Item>>& pairs) {
  std::vector<Uid> keys;
  std::vector<Uid> values;
  for (const auto& [key, value] : pairs) {
    const Uid keyUid = translate(key);
    const Uid valueUid = translate(value);
    if (keyUid == KeyedWriter::kNil || valueUid == KeyedWriter::kNil)
      continue;
    keys.push_back(keyUid);
    values.push_back(valueUid);
  }
  return m_writer.dictionary(keys, values);
}

Uid Translator::translateFont(const Font& font) {
  constexpr qint64 ordinaryFlags = 16;
  if (font.name.isEmpty() || !std::isfinite(font.size))
    return KeyedWriter::kNil;
  const Uid name = m_writer.string(font.name);
  return m_writer.valueRecord({{QStringLiteral("NSName"), reference(name)},
                               {QStringLiteral("NSSize"), m_writer.inlineReal(font.size)},
                               {QStringLiteral("NSfFlags"), m_writer.inlineInteger(ordinaryFlags)}},
                              {QStringLiteral("NSFont"), kObject});
}

Uid Translator::translateColor(const Color& color) {
  std::vector<KeyedWriter::Field> fields{
      {QStringLiteral("NSColorSpace"), m_writer.inlineInteger(color.space)}};
  switch (color.space) {
  case 1:
  case 2:
    fields.emplace_back(QStringLiteral("NSRGB"), m_writer.inlineData(componentText(color)));
    break;
  case 3:
  case 4:
    fields.emplace_back(QStringLiteral("NSWhite"), m_writer.inlineData(componentText(color)));
    break;
  case 5:
    fields.emplace_back(QStringLiteral("NSCMYK"), m_writer.inlineData(componentText(color)));
    break;
  default:
    fields.emplace_back(QStringLiteral("NSCatalogName"), reference(translate(color.catalog)));
    fields.emplace_back(QStringLiteral("NSColorName"), reference(translate(color.name)));
    fields.emplace_back(QStringLiteral("NSColor"), reference(translate(color.fallback)));
  }
  return m_writer.valueRecord(std::move(fields), {QStringLiteral("NSColor"), kObject});
}

Uid Translator::translateLink(const Link& link) {
  const Uid base = translate(link.base);
  const Uid relative = translate(link.relative);
  if (relative == KeyedWriter::kNil)
    return KeyedWriter::kNil;
  return m_writer.valueRecord({{QStringLiteral("NS.base"), reference(base)},
                               {QStringLiteral("NS.relative"), reference(relative)}},
                              {QStringLiteral("NSURL"), kObject});
}

Uid Translator::translateContainer(const QByteArray& container) {
  const Uid bytes = m_writer.mutableData(container);
  const Uid wrapper = m_writer.reserve();
  m_writer.setRecord(wrapper, {{QStringLiteral("NSFileWrapperData"), reference(bytes)}},
                     {QStringLiteral("NSFileWrapper"), kObject});
  const Uid attachment = m_writer.reserve();
  m_writer.setRecord(attachment, {{QStringLiteral("NSFileWrapper"), reference(wrapper)}},
                     {QStringLiteral("NSTextAttachment"), kObject});
  return attachment;
}

} // namespace

std::optional<Translation> translateText(const Tree& tree) {
  return Translator(tree).translate();
}

} // namespace tockwise::typedstream
