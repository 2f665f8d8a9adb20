#include "support/typedstream_json.h"

#include "store/archive/file_wrapper.h"
#include "store/archive/typedstream_values.h"

#include <QRegularExpression>
#include <QSet>

#include <charconv>

namespace tockwise {
namespace {

using namespace typedstream;
using Kind = Item::Kind;

// A JSON value whose members keep their order, and whose numbers keep their text.
struct Json {
  enum class Type { Scalar, Array, Object };
  Type type = Type::Scalar;
  QString scalar = QStringLiteral("null");
  std::vector<std::pair<QString, Json>> members;

  static Json array() { return {Type::Array, {}, {}}; }
  static Json object() { return {Type::Object, {}, {}}; }
  static Json raw(const QString& text) { return {Type::Scalar, text, {}}; }
  static Json tagged(const char* tag, Json value) { return object().with(tag, std::move(value)); }
  Json& add(Json value) {
    members.emplace_back(QString(), std::move(value));
    return *this;
  }
  Json& with(const QString& name, Json value) {
    members.emplace_back(name, std::move(value));
    return *this;
  }
  Json& with(const char* name, Json value) {
    return with(QString::fromLatin1(name), std::move(value));
  }
};

Json number(qint64 value) {
  return Json::raw(QString::number(value));
}

Json real(double value) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, value).ptr;
  QString shortest = QString::fromLatin1(text, end - text);
  if (!shortest.contains(u'.') && !shortest.contains(u'e'))
    shortest += QStringLiteral(".0");
  return Json::raw(shortest);
}

Json string(const QString& text) {
  QString quoted(u'"');
  for (const QChar character : text) {
    if (character == u'"' || character == u'\\')
      quoted += u'\\' + QString(character);
    else if (character == u'\n')
      quoted += QStringLiteral("\\n");
    else if (character == u'\r')
      quoted += QStringLiteral("\\r");
    else if (character == u'\t')
      quoted += QStringLiteral("\\t");
    else
      quoted += character;
  }
  return Json::raw(quoted + u'"');
}

Json data(const QByteArray& bytes) {
  return Json::tagged("$data", string(QString::fromLatin1(bytes.toHex())));
}

void write(const Json& json, int indent, QString& text) {
  if (json.type == Json::Type::Scalar) {
    text += json.scalar;
    return;
  }
  const bool object = json.type == Json::Type::Object;
  text += object ? u'{' : u'[';
  bool first = true;
  for (const auto& [name, value] : json.members) {
    text += first ? QStringLiteral("\n") : QStringLiteral(",\n");
    text += QString(indent + 1, u' ');
    if (object)
      text += string(name).scalar + QStringLiteral(": ");
    write(value, indent + 1, text);
    first = false;
  }
  if (!first)
    text += u'\n' + QString(indent, u' ');
  text += object ? u'}' : u']';
}

class Describer {
 public:
  explicit Describer(const Tree& tree) : m_tree(tree) {}

  Json describe(const Item& item) {
    switch (item.kind) {
    case Kind::Nil:
      return {};
    case Kind::Integer:
      return number(item.integer());
    case Kind::Unsigned:
      return Json::raw(QString::number(item.payload));
    case Kind::Real:
      return real(item.real());
    case Kind::Bytes:
      return item.code == '[' ? data(m_tree.bytes(item))
                              : string(QString::fromUtf8(m_tree.bytes(item)));
    case Kind::List: {
      Json list = Json::array();
      for (const Item& element : m_tree.list(item))
        list.add(describe(element));
      return list;
    }
    case Kind::Class:
      return Json::tagged("$class", string(QString::fromLatin1("class")));
    case Kind::Object:
      return object(item);
    }
    return {};
  }

 private:
  Json object(const Item& item) {
    if (m_inProgress.contains(item.payload))
      return Json::tagged("$cycle", number(m_tree.object(item).number));
    m_inProgress.insert(item.payload);
    Json json = known(item);
    m_inProgress.remove(item.payload);
    return json;
  }

  Json known(const Item& item) {
    if (const auto text = stringOf(m_tree, item))
      return string(*text);
    if (const auto bytes = dataOf(m_tree, item))
      return data(*bytes);
    if (const auto value = numberOf(m_tree, item))
      return isBoolean(*value)
                 ? Json::raw(value->payload ? QStringLiteral("true") : QStringLiteral("false"))
                 : describe(*value);
    if (const auto seconds = dateOf(m_tree, item))
      return Json::tagged("$date", real(*seconds));
    if (const auto elements = elementsOf(m_tree, item))
      return collection(item, *elements);
    if (const auto pairs = pairsOf(m_tree, item))
      return Json::tagged("$dict", dictionary(*pairs));
    if (const auto attributed = attributedStringOf(m_tree, item))
      return attributedString(item, *attributed);
    return appKit(item);
  }

  Json appKit(const Item& item) {
    if (const auto link = linkOf(m_tree, item))
      return Json::tagged("$url", Json::object()
                                      .with("base", describe(link->base))
                                      .with("relative", describe(link->relative)));
    if (const auto font = fontOf(m_tree, item))
      return Json::tagged("$font", Json::object()
                                       .with("name", string(font->name))
                                       .with("size", real(font->size))
                                       .with("version", number(m_tree.classOf(item).version))
                                       .with("flags", fontFlags(item)));
    if (const auto of = colorOf(m_tree, item))
      return color(*of);
    if (m_tree.isKindOf(item, "NSTextAttachment")) {
      Json attachment = Json::object().with("class", className(item));
      if (const auto container = fileContainerOf(m_tree, item))
        attachment.with("NSFileWrapper", fileWrapper(*container));
      return Json::tagged("$attachment", attachment);
    }
    return opaque(item);
  }

  Json className(const Item& item) {
    return string(QString::fromLatin1(m_tree.classOf(item).name));
  }

  Json collection(const Item& item, const std::vector<Item>& elements) {
    Json list = Json::array();
    for (const Item& element : elements)
      list.add(describe(element));
    return m_tree.isKindOf(item, "NSSet") ? Json::tagged("$set", list) : list;
  }

  Json dictionary(const std::vector<std::pair<Item, Item>>& pairs) {
    Json members = Json::object();
    for (const auto& [key, value] : pairs)
      members.with(stringOf(m_tree, key).value_or(QStringLiteral("?")), describe(value));
    return members;
  }

  Json attributedString(const Item& item, const AttributedString& attributed) {
    const QString text = stringOf(m_tree, attributed.text).value_or(QString());
    Json runs = Json::array();
    qsizetype start = 0;
    for (const AttributeRun& run : attributed.runs) {
      const auto pairs = run.attributes ? pairsOf(m_tree, *run.attributes) : std::nullopt;
      runs.add(Json::object()
                   .with("start", number(start))
                   .with("length", number(run.length))
                   .with("attributes", pairs ? dictionary(*pairs) : Json::object()));
      start += run.length;
    }
    return Json::tagged("$attributed", Json::object()
                                           .with("class", className(item))
                                           .with("text", string(text))
                                           .with("utf16_length", number(text.size()))
                                           .with("runs", runs));
  }

  Json fontFlags(const Item& item) {
    Json flags = Json::array();
    for (const Group& group : m_tree.object(item).groups) {
      if (group.types == "c")
        flags.add(describe(group.items[0]));
    }
    return flags;
  }

  Json color(const Color& of) {
    Json json = Json::object().with("space", number(of.space));
    if (of.space == 6)
      return Json::tagged("$color", json.with("catalog", describe(of.catalog))
                                        .with("name", describe(of.name))
                                        .with("fallback", describe(of.fallback)));
    Json components = Json::array();
    for (const double component : of.components)
      components.add(real(component));
    const char* name = of.space <= 2 ? "rgba" : of.space <= 4 ? "wa" : "cmyka";
    return Json::tagged("$color", json.with(name, components));
  }

  static Json fileWrapper(const QByteArray& container) {
    const auto wrapper = readFileWrapper(container);
    if (!wrapper || wrapper->type != FileWrapper::Type::RegularFile)
      return {};
    return Json::tagged("$filewrapper", Json::object()
                                            .with("kind", string(QStringLiteral("file")))
                                            .with("name", string(wrapper->name))
                                            .with("data", data(wrapper->contents)));
  }

  Json opaque(const Item& item) {
    const Object& object = m_tree.object(item);
    if (m_described.contains(item.payload))
      return Json::tagged("$ref", number(object.number));
    m_described.insert(item.payload);
    Json chain = Json::array();
    for (const Class* of = &m_tree.classOf(item); of; of = m_tree.superclassOf(*of))
      chain.add(Json::array().add(string(QString::fromLatin1(of->name))).add(number(of->version)));
    Json groups = Json::array();
    for (const Group& group : object.groups) {
      Json values = Json::array().add(string(QString::fromLatin1(group.types)));
      for (const Item& value : group.items)
        values.add(describe(value));
      groups.add(values);
    }
    return Json::tagged("$object", Json::object()
                                       .with("id", number(object.number))
                                       .with("chain", chain)
                                       .with("groups", groups));
  }

  const Tree& m_tree;
  QSet<quint64> m_inProgress;
  QSet<quint64> m_described;
};

} // namespace

QString typedstreamJson(const Tree& tree) {
  const bool big = tree.byteOrder() == ByteOrder::Big;
  const Json json =
      Json::object()
          .with("byte_order", string(big ? QStringLiteral("big") : QStringLiteral("little")))
          .with("system", number(tree.systemVersion()))
          .with("root", Describer(tree).describe(tree.root()));
  QString text;
  write(json, 0, text);
  return text;
}

QString comparableTypedstreamJson(const QString& text) {
  static const QRegularExpression fileAttributes(
      QStringLiteral(",\\s*\"attributes\": \\{\\s*\"\\.\\.\": \\[[^\\]]*\\]\\s*\\}"));
  return QString(text).remove(fileAttributes).trimmed();
}

} // namespace tockwise
