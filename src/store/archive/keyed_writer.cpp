#include "store/archive/keyed_writer.h"

#include "store/archive/keyed_archive.h"

#include <QVarLengthArray>

#include <limits>

namespace tockwise {
namespace {

constexpr KeyedWriter::Inline kUnmade = std::numeric_limits<KeyedWriter::Inline>::max();

constexpr size_t kLatestClasses = 16;
constexpr qsizetype kUsualFields = 8;

QStringList chainOf(std::initializer_list<QStringView> names) {
  QStringList chain;
  for (const QStringView name : names)
    chain.append(name.toString());
  return chain;
}

const QStringList& arrayChain() {
  static const QStringList chain = chainOf({u"NSArray", u"NSObject"});
  return chain;
}

const QStringList& dictionaryChain() {
  static const QStringList chain = chainOf({u"NSDictionary", u"NSObject"});
  return chain;
}

} // namespace

KeyedWriter::KeyedWriter() {
  append(m_list.string(QStringLiteral("$null"))); // not by scalar(): a text "$null" is another
}

KeyedWriter::Uid KeyedWriter::append(Inline object) {
  m_objects.push_back(object);
  return m_objects.size() - 1;
}

KeyedWriter::Uid KeyedWriter::scalar(Inline object) {
  const auto known = m_scalars.constFind(object);
  return known != m_scalars.cend() ? *known : *m_scalars.insert(object, append(object));
}

KeyedWriter::Uid KeyedWriter::string(const QString& text) {
  return scalar(m_list.string(text));
}

KeyedWriter::Uid KeyedWriter::integer(qint64 value) {
  return scalar(m_list.integer(value));
}

KeyedWriter::Uid KeyedWriter::real(double value) {
  return scalar(m_list.real(value));
}

KeyedWriter::Uid KeyedWriter::boolean(bool value) {
  return scalar(m_list.boolean(value));
}

KeyedWriter::Uid KeyedWriter::data(QByteArrayView bytes) {
  return scalar(m_list.data(bytes));
}

KeyedWriter::Uid KeyedWriter::date(Date value) {
  static const QStringList chain = chainOf({u"NSDate", u"NSObject"});
  return valueRecord({{QStringLiteral("NS.time"), inlineReal(value.seconds)}}, chain);
}

KeyedWriter::Uid KeyedWriter::null() {
  static const QStringList chain = chainOf({u"NSNull", u"NSObject"});
  return valueRecord({}, chain);
}

KeyedWriter::Uid KeyedWriter::mutableString(const QString& text) {
  static const QStringList chain = chainOf({u"NSMutableString", u"NSString", u"NSObject"});
  const Uid uid = reserve();
  setRecord(uid, {{QStringLiteral("NS.string"), inlineString(text)}}, chain);
  return uid;
}

KeyedWriter::Uid KeyedWriter::mutableData(QByteArrayView bytes) {
  static const QStringList chain = chainOf({u"NSMutableData", u"NSData", u"NSObject"});
  const Uid uid = reserve();
  setRecord(uid, {{QStringLiteral("NS.data"), inlineData(bytes)}}, chain);
  return uid;
}

KeyedWriter::Uid KeyedWriter::array(std::span<const Uid> elements) {
  const Uid uid = reserve();
  setArray(uid, elements);
  return uid;
}

KeyedWriter::Uid KeyedWriter::arrayValue(std::span<const Uid> elements) {
  return valueRecord({{QStringLiteral("NS.objects"), uidArray(elements)}}, arrayChain());
}

void KeyedWriter::setArray(Uid uid, std::span<const Uid> elements) {
  setRecord(uid, {{QStringLiteral("NS.objects"), uidArray(elements)}}, arrayChain());
}

KeyedWriter::Uid KeyedWriter::mutableArray(std::span<const Uid> elements) {
  static const QStringList chain = chainOf({u"NSMutableArray", u"NSArray", u"NSObject"});
  const Uid uid = reserve();
  setRecord(uid, {{QStringLiteral("NS.objects"), uidArray(elements)}}, chain);
  return uid;
}

KeyedWriter::Uid KeyedWriter::dictionary(std::span<const Uid> keys, std::span<const Uid> values) {
  const Uid uid = reserve();
  setDictionary(uid, keys, values);
  return uid;
}

KeyedWriter::Uid KeyedWriter::dictionaryValue(std::span<const Uid> keys,
                                              std::span<const Uid> values) {
  return valueRecord({{QStringLiteral("NS.keys"), uidArray(keys)},
                      {QStringLiteral("NS.objects"), uidArray(values)}},
                     dictionaryChain());
}

void KeyedWriter::setDictionary(Uid uid, std::span<const Uid> keys, std::span<const Uid> values) {
  setRecord(uid,
            {{QStringLiteral("NS.keys"), uidArray(keys)},
             {QStringLiteral("NS.objects"), uidArray(values)}},
            dictionaryChain());
}

KeyedWriter::Inline KeyedWriter::uidArray(std::span<const Uid> uids) {
  std::vector<Inline> references;
  references.reserve(uids.size());
  for (const Uid uid : uids)
    references.push_back(inlineReference(uid));
  return m_list.array(references);
}

KeyedWriter::Inline KeyedWriter::inlineReference(Uid uid) {
  if (uid >= m_references.size())
    m_references.resize(uid + 1, kUnmade);
  if (m_references[uid] == kUnmade)
    m_references[uid] = m_list.uid(uid);
  return m_references[uid];
}

KeyedWriter::Uid KeyedWriter::classRecord(const QStringList& chain, const QStringList& hints) {
  if (hints.isEmpty()) {
    for (const auto& [latest, uid] : m_latestClasses) {
      if (latest == chain)
        return uid;
    }
  }
  const QString key = chain.join(u'\n') + QStringLiteral("\n\n") + hints.join(u'\n');
  const auto known = m_classes.constFind(key);
  const Uid uid =
      known != m_classes.cend() ? *known : *m_classes.insert(key, makeClassRecord(chain, hints));
  if (hints.isEmpty() && m_latestClasses.size() < kLatestClasses)
    m_latestClasses.emplace_back(chain, uid);
  return uid;
}

KeyedWriter::Uid KeyedWriter::makeClassRecord(const QStringList& chain, const QStringList& hints) {
  const auto strings = [this](const QStringList& texts) {
    std::vector<Inline> objects;
    for (const QString& text : texts)
      objects.push_back(m_list.string(text));
    return m_list.array(objects);
  };
  std::vector<Inline> keys{m_list.string(QStringLiteral("$classname")),
                           m_list.string(QStringLiteral("$classes"))};
  std::vector<Inline> values{m_list.string(chain.value(0)), strings(chain)};
  if (!hints.isEmpty()) {
    keys.push_back(m_list.string(QStringLiteral("$classhints")));
    values.push_back(strings(hints));
  }
  return append(m_list.dictionary(keys, values));
}

KeyedWriter::Uid KeyedWriter::reserve() {
  return append(kUnmade);
}

KeyedWriter::Inline KeyedWriter::recordObject(std::span<const Field> fields,
                                              const QStringList& chain) {
  QVarLengthArray<Inline, kUsualFields> keys;
  QVarLengthArray<Inline, kUsualFields> values;
  for (const auto& [name, value] : fields) {
    keys.push_back(m_list.string(name));
    values.push_back(value);
  }
  keys.push_back(m_list.string(QStringLiteral("$class")));
  values.push_back(inlineReference(classRecord(chain)));
  return m_list.dictionary(std::span(keys.constData(), size_t(keys.size())),
                           std::span(values.constData(), size_t(values.size())));
}

void KeyedWriter::setRecord(Uid uid, std::span<const Field> fields, const QStringList& chain) {
  m_objects[uid] = recordObject(fields, chain);
}

KeyedWriter::Uid KeyedWriter::valueRecord(std::span<const Field> fields, const QStringList& chain) {
  // The list makes one object of equal dictionaries, unless they are large.
  const Uid uid = reserve();
  const Inline record = recordObject(fields, chain);
  const auto known = m_values.constFind(record);
  if (known != m_values.cend()) {
    m_objects.pop_back(); // its class was there already, so it is the last one
    return *known;
  }
  m_objects[uid] = record;
  return *m_values.insert(record, uid);
}

QByteArray KeyedWriter::finish(Uid root) {
  const Inline rootName = m_list.string(QStringLiteral("root"));
  const Inline rootReference = inlineReference(root);
  const std::vector<Inline> keys{
      m_list.string(QStringLiteral("$version")), m_list.string(QStringLiteral("$archiver")),
      m_list.string(QStringLiteral("$top")), m_list.string(QStringLiteral("$objects"))};
  const std::vector<Inline> values{
      m_list.integer(KeyedArchive::kVersion), m_list.string(QStringLiteral("NSKeyedArchiver")),
      m_list.dictionary(std::span(&rootName, 1), std::span(&rootReference, 1)),
      m_list.array(m_objects)};
  return m_list.finish(m_list.dictionary(keys, values));
}

// Copies objects breadth first: each gets its index when it is first named, and its fields later.
class KeyedWriter::Copier {
 public:
  Copier(KeyedWriter& writer, const std::shared_ptr<const KeyedArchive>& source)
      : m_writer(writer), m_source(*source), m_list(source->list()) {}

  Uid copy(Uid uid) {
    const Uid copied = copyOf(uid);
    for (size_t next = 0; next < m_waiting.size(); ++next) {
      const auto [from, to] = m_waiting[next];
      const Inline record = copyInline(m_source.ref(from));
      m_writer.m_objects[to] = record;
    }
    m_waiting.clear();
    return copied;
  }

 private:
  Uid copyOf(Uid uid) {
    if (!m_source.names(uid))
      return kNil;
    const auto key = std::pair(&m_source, uid);
    if (const auto known = m_writer.m_copies.constFind(key); known != m_writer.m_copies.cend())
      return *known;
    return *m_writer.m_copies.insert(key, makeCopy(uid));
  }

  Uid makeCopy(Uid uid) {
    if (m_source.kind(uid) != plist::Kind::Dictionary)
      return m_writer.scalar(copyInline(m_source.ref(uid)));
    if (!m_source.field(uid, u"$class")) {
      const KeyedArchive::ClassRecord& record = *m_source.classOf(uid);
      return m_writer.classRecord(record.chain, record.hints);
    }
    const Uid copied = m_writer.reserve();
    m_waiting.emplace_back(uid, copied);
    return copied;
  }

  Inline copyInline(plist::Ref ref) {
    switch (m_list.kind(ref)) {
    case plist::Kind::Uid:
      return m_writer.inlineReference(copyOf(m_list.uid(ref)));
    case plist::Kind::Array:
    case plist::Kind::Dictionary: {
      // A list may share one container among many: it is copied once.
      const auto known = m_containers.constFind(ref.index);
      return known != m_containers.cend() ? *known
                                          : *m_containers.insert(ref.index, copyContainer(ref));
    }
    default:
      return m_writer.m_list.value(m_list.value(ref));
    }
  }

  Inline copyContainer(plist::Ref ref) {
    std::vector<Inline> keys;
    std::vector<Inline> values;
    const bool isArray = m_list.kind(ref) == plist::Kind::Array;
    for (qsizetype i = 0; i < m_list.count(ref); ++i) {
      if (!isArray)
        keys.push_back(m_writer.m_list.string(m_list.string(m_list.key(ref, i))));
      values.push_back(copyInline(isArray ? m_list.element(ref, i) : m_list.valueAt(ref, i)));
    }
    return isArray ? m_writer.m_list.array(values) : m_writer.m_list.dictionary(keys, values);
  }

  KeyedWriter& m_writer;
  const KeyedArchive& m_source;
  const plist::Reader& m_list;
  std::vector<std::pair<Uid, Uid>> m_waiting; // in the source, in the writer
  QHash<quint32, Inline> m_containers;
};

KeyedWriter::Uid KeyedWriter::copy(const ArchiveObject& object) {
  if (object.isNull() || !object.archive()->isSound(object.uid()))
    return kNil;
  if (m_sources.empty() || m_sources.back() != object.archive())
    m_sources.push_back(object.archive());
  return Copier(*this, object.archive()).copy(object.uid());
}

} // namespace tockwise
