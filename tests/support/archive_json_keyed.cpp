// Keyed archives in the fixtures' vocabulary.
#include "store/archive/archive_values.h"
#include "store/archive/file_wrapper.h"
#include "store/archive/run_codec.h"
#include "support/archive_json.h"

#include <QSet>

namespace tockwise {
namespace {

using Uid = KeyedArchive::Uid;
using plist::Kind;
using plist::Ref;

Value wrapped(const char* name, Value value) {
  return Value::Dictionary{{QString::fromLatin1(name), std::move(value)}};
}

class Dump {
 public:
  explicit Dump(const KeyedArchive& archive) : m_archive(archive), m_list(archive.list()) {}

  Value object(Uid uid) {
    if (!m_archive.names(uid))
      return {};
    if (m_archive.kind(uid) != Kind::Dictionary)
      return scalar(m_archive.ref(uid));
    if (m_open.contains(uid))
      return wrapped("$cycle", qint64(uid));
    m_open.insert(uid);
    Value value = record(uid);
    m_open.remove(uid);
    return value;
  }

 private:
  Value scalar(Ref ref) {
    switch (m_list.kind(ref)) {
    case Kind::Uid:
      return object(m_list.uid(ref));
    case Kind::Date:
      return wrapped("$date", m_list.real(ref));
    case Kind::Data:
      return dataJson(m_list.data(ref));
    default:
      return m_list.value(ref);
    }
  }

  Value record(Uid uid) {
    const auto is = [&](QStringView name) { return m_archive.isKindOf(uid, name); };
    if (is(u"NSString"))
      return stringAt(m_archive, uid).value_or(QString());
    if (is(u"NSData"))
      return dataJson(dataAt(m_archive, uid).value_or(QByteArray()));
    if (is(u"NSDate"))
      return wrapped("$date", scalar(*m_archive.field(uid, u"NS.time")));
    if (is(u"NSNull"))
      return wrapped("$nsnull", true);
    if (is(u"NSDictionary"))
      return dictionary(uid);
    if (is(u"NSSet"))
      return wrapped("$set", array(uid));
    if (is(u"NSArray"))
      return array(uid);
    if (is(u"NSURL"))
      return wrapped("$url",
                     Value::Dictionary{{QStringLiteral("base"), field(uid, u"NS.base")},
                                       {QStringLiteral("relative"), field(uid, u"NS.relative")}});
    if (is(u"NSAttributedString"))
      return wrapped("$attributed", attributed(uid));
    if (is(u"NSFont"))
      return wrapped("$font",
                     Value::Dictionary{{QStringLiteral("name"), field(uid, u"NSName")},
                                       {QStringLiteral("size"), field(uid, u"NSSize")},
                                       {QStringLiteral("flags"), field(uid, u"NSfFlags")}});
    if (is(u"NSColor"))
      return wrapped("$color", color(uid));
    return recordWithFields(uid);
  }

  Value recordWithFields(Uid uid) {
    const auto is = [&](QStringView name) { return m_archive.isKindOf(uid, name); };
    Value::Dictionary fieldsOnly = fields(uid);
    const QString name = m_archive.classOf(uid)->name;
    if (is(u"NSTextTab"))
      return wrapped("$tab", std::move(fieldsOnly));
    if (is(u"NSTextList"))
      return wrapped("$list", std::move(fieldsOnly));
    if (is(u"NSFileWrapper"))
      return wrapped("$filewrapper", fileWrapper(uid));
    if (is(u"NSParagraphStyle") || is(u"NSTextAttachment")) {
      fieldsOnly.emplace_back(QStringLiteral("class"), name);
      return wrapped(is(u"NSParagraphStyle") ? "$paragraph" : "$attachment", std::move(fieldsOnly));
    }
    return wrapped("$object",
                   Value::Dictionary{{QStringLiteral("class"), name},
                                     {QStringLiteral("classes"), m_archive.classOf(uid)->chain},
                                     {QStringLiteral("fields"), std::move(fieldsOnly)}});
  }

  Value field(Uid uid, QStringView name) {
    const auto value = m_archive.field(uid, name);
    return value ? scalar(*value) : Value();
  }

  Value::Dictionary fields(Uid uid) {
    const Ref ref = m_archive.ref(uid);
    Value::Dictionary all;
    for (qsizetype i = 0; i < m_list.count(ref); ++i) {
      if (!m_list.isString(m_list.key(ref, i), u"$class"))
        all.emplace_back(m_list.string(m_list.key(ref, i)), scalar(m_list.valueAt(ref, i)));
    }
    return all;
  }

  Value array(Uid uid) {
    Value::Array all;
    for (const Uid element : elementsAt(m_archive, uid).value_or(std::vector<Uid>()))
      all.push_back(object(element));
    return all;
  }

  Value::Dictionary pairs(Uid uid) {
    Value::Dictionary all;
    const auto found = pairsAt(m_archive, uid);
    for (const auto& [key, value] : found ? *found : std::vector<std::pair<Uid, Uid>>())
      all.emplace_back(stringAt(m_archive, key).value_or(QString()), object(value));
    return all;
  }

  Value dictionary(Uid uid) { return wrapped("$dict", pairs(uid)); }

  Value attributed(Uid uid) {
    const QString text = stringField(m_archive, uid, u"NSString").value_or(QString());
    Value::Array runs;
    qint64 start = 0;
    const auto addRun = [&](qint64 length, Uid attributes) {
      runs.push_back(Value::Dictionary{{QStringLiteral("start"), start},
                                       {QStringLiteral("length"), length},
                                       {QStringLiteral("attributes"), pairs(attributes)}});
      start += length;
    };
    const Uid attributes = m_archive.reference(uid, u"NSAttributes");
    if (const auto table = dataField(m_archive, uid, u"NSAttributeInfo")) {
      const auto dictionaries = elementsAt(m_archive, attributes).value_or(std::vector<Uid>());
      for (const RunEntry& run : decodeRuns(*table).runs)
        addRun(run.length, dictionaries.at(run.attributes));
    } else if (!text.isEmpty()) {
      addRun(text.size(), attributes);
    }
    return Value::Dictionary{{QStringLiteral("class"), m_archive.classOf(uid)->name},
                             {QStringLiteral("text"), text},
                             {QStringLiteral("utf16_length"), qint64(text.size())},
                             {QStringLiteral("runs"), std::move(runs)}};
  }

  // The numbers of a component string, with an alpha of 1 where it is left out.
  static Value components(const QByteArray& text, qsizetype count) {
    Value::Array numbers;
    for (const QByteArray& part : text.chopped(text.endsWith('\0') ? 1 : 0).split(' '))
      numbers.emplace_back(part.toDouble());
    if (qsizetype(numbers.size()) == count)
      numbers.emplace_back(1.0);
    return numbers;
  }

  Value color(Uid uid) {
    Value::Dictionary parts{{QStringLiteral("space"), field(uid, u"NSColorSpace")}};
    struct Components {
      QStringView field;
      const char* name;
      qsizetype count;
    };
    for (const Components& each :
         {Components{u"NSRGB", "rgba", 3}, Components{u"NSWhite", "wa", 1},
          Components{u"NSCMYK", "cmyka", 4}, Components{u"NSCYMK", "cmyka", 4},
          Components{u"NSComponents", "components_in_custom_space", 3}}) {
      if (const auto text = dataField(m_archive, uid, each.field))
        parts.emplace_back(QString::fromLatin1(each.name), components(*text, each.count));
    }
    if (m_archive.field(uid, u"NSCatalogName")) {
      parts.emplace_back(QStringLiteral("catalog"), field(uid, u"NSCatalogName"));
      parts.emplace_back(QStringLiteral("name"), field(uid, u"NSColorName"));
      if (m_archive.field(uid, u"NSColor"))
        parts.emplace_back(QStringLiteral("fallback"), field(uid, u"NSColor"));
    }
    if (const Uid space = m_archive.reference(uid, u"NSCustomColorSpace"))
      parts.emplace_back(QStringLiteral("custom_space_id"), field(space, u"NSID"));
    return parts;
  }

  Value fileWrapper(Uid uid) {
    const QByteArray bytes = dataField(m_archive, uid, u"NSFileWrapperData").value_or(QByteArray());
    const auto wrapper = readFileWrapper(bytes);
    if (!wrapper)
      return Value::Dictionary{
          {QStringLiteral("unreadable"), true},
          {QStringLiteral("first8"), QString::fromLatin1(bytes.left(8).toHex())}};
    return Value::Dictionary{{QStringLiteral("kind"), QStringLiteral("file")},
                             {QStringLiteral("name"), wrapper->name},
                             {QStringLiteral("data"), dataJson(wrapper->contents)}};
  }

  const KeyedArchive& m_archive;
  const plist::Reader& m_list;
  QSet<Uid> m_open;
};

} // namespace

Value jsonOf(const KeyedArchive& archive, Uid uid) {
  return Dump(archive).object(uid);
}

} // namespace tockwise
