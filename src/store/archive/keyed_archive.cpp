#include "store/archive/keyed_archive.h"

#include "store/plist_writer.h"
#include "store/plist_xml.h"

#include <algorithm>
#include <limits>

namespace tockwise {
namespace {

using plist::Kind;
using plist::Ref;

constexpr quint32 kNoClass = std::numeric_limits<quint32>::max();
constexpr qsizetype kLongestChain = 64;
constexpr qsizetype kLongestClassName = 256;
// What the names of all classes may take, and so many more for each byte of the archive: many
// records can share one long chain.
constexpr qsizetype kMostClassBytes = 2 << 20;
constexpr qsizetype kClassBytesPerByte = 8;

Error damagedArchive(const QString& what) {
  return Error{Error::Kind::Damaged, QStringLiteral("not a sound keyed archive: %1").arg(what)};
}

bool isClassName(const plist::Reader& list, Ref object) {
  return list.kind(object) == Kind::String && list.count(object) <= kLongestClassName;
}

// An array of names of classes only, not too long; nothing otherwise.
std::optional<QStringList> stringsOf(const plist::Reader& list, Ref array) {
  if (list.kind(array) != Kind::Array || list.count(array) > kLongestChain)
    return std::nullopt;
  QStringList strings;
  for (qsizetype i = 0; i < list.count(array); ++i) {
    const Ref element = list.element(array, i);
    if (!isClassName(list, element))
      return std::nullopt;
    strings.append(list.string(element));
  }
  return strings;
}

std::optional<KeyedArchive::ClassRecord> classRecord(const plist::Reader& list, Ref object) {
  const auto name = list.find(object, u"$classname");
  const auto chain = list.find(object, u"$classes");
  if (!name || !chain || !isClassName(list, *name))
    return std::nullopt;
  auto names = stringsOf(list, *chain);
  if (!names)
    return std::nullopt;
  KeyedArchive::ClassRecord record{list.string(*name), std::move(*names), {}};
  if (!record.chain.contains(record.name))
    record.chain.prepend(record.name);
  if (const auto hints = list.find(object, u"$classhints"))
    record.hints = stringsOf(list, *hints).value_or(QStringList());
  return record;
}

qsizetype bytesOf(const KeyedArchive::ClassRecord& record) {
  qsizetype bytes = sizeof(record);
  for (const QStringList& names : {record.chain, record.hints}) {
    for (const QString& name : names)
      bytes += qsizetype(sizeof(name)) + name.size() * qsizetype(sizeof(QChar));
  }
  return bytes;
}

} // namespace

Result<std::shared_ptr<const KeyedArchive>> KeyedArchive::open(const QByteArray& bytes) {
  QByteArray binary = bytes;
  if (plist::isXml(bytes)) {
    const auto value = plist::readXml(bytes);
    if (!value)
      return value.error();
    plist::Writer writer;
    binary = writer.finish(writer.value(*value));
  }
  const qsizetype size = binary.size();
  auto list = plist::Reader::open(std::move(binary));
  if (!list)
    return list.error();
  // Not make_shared: the constructor is private.
  const std::shared_ptr<KeyedArchive> archive(new KeyedArchive(std::move(list).value()));
  archive->m_size = size;
  if (const auto read = archive->readEnvelope(); !read)
    return read.error();
  archive->readShapes();
  archive->findUnsound();
  return std::shared_ptr<const KeyedArchive>(archive);
}

Result<void> KeyedArchive::readEnvelope() {
  const Ref root = m_list.root();
  if (m_list.kind(root) != Kind::Dictionary)
    return damagedArchive(QStringLiteral("it is no dictionary"));
  const auto version = m_list.find(root, u"$version");
  const auto archiver = m_list.find(root, u"$archiver");
  const auto top = m_list.find(root, u"$top");
  const auto objects = m_list.find(root, u"$objects");
  if (!version || m_list.kind(*version) != Kind::Integer)
    return damagedArchive(QStringLiteral("no $version"));
  m_version = m_list.integer(*version);
  if (!archiver || !m_list.isString(*archiver, u"NSKeyedArchiver"))
    return damagedArchive(QStringLiteral("another $archiver"));
  if (!objects || m_list.kind(*objects) != Kind::Array || m_list.count(*objects) == 0 ||
      !m_list.isString(m_list.element(*objects, 0), u"$null"))
    return damagedArchive(QStringLiteral("no $objects"));
  m_objects.reserve(size_t(m_list.count(*objects)));
  for (qsizetype i = 0; i < m_list.count(*objects); ++i)
    m_objects.push_back(m_list.element(*objects, i));
  if (!top || m_list.kind(*top) != Kind::Dictionary)
    return damagedArchive(QStringLiteral("no $top"));
  return readTop(*top);
}

Result<void> KeyedArchive::readTop(Ref top) {
  auto root = m_list.find(top, u"root");
  if (!root && m_list.count(top) == 1)
    root = m_list.valueAt(top, 0);
  if (!root || m_list.kind(*root) != Kind::Uid)
    return damagedArchive(QStringLiteral("no root in $top"));
  m_root = m_list.uid(*root);
  if (m_root >= count())
    return damagedArchive(QStringLiteral("$top names object %1 of %2").arg(m_root).arg(count()));
  return {};
}

// Classes come before or after the records that name them, so the records' are looked up last.
void KeyedArchive::readShapes() {
  m_shapes.assign(m_objects.size(), Shape::Scalar);
  m_classOf.assign(m_objects.size(), kNoClass);
  std::vector<std::pair<Uid, Uid>> records; // with what they name as their class
  qsizetype bytesLeft = kMostClassBytes + kClassBytesPerByte * m_size;
  for (Uid uid = 1; uid < count(); ++uid) {
    const Kind kind = m_list.kind(m_objects[uid]);
    if (kind == Kind::Null || kind == Kind::Uid || kind == Kind::Array)
      m_shapes[uid] = Shape::Damaged;
    if (kind != Kind::Dictionary)
      continue;
    m_shapes[uid] = Shape::Damaged;
    if (const auto named = m_list.find(m_objects[uid], u"$class")) {
      if (m_list.kind(*named) == Kind::Uid && m_list.uid(*named) < count())
        records.emplace_back(uid, m_list.uid(*named));
    } else if (auto record = bytesLeft >= 0 ? classRecord(m_list, m_objects[uid]) : std::nullopt) {
      bytesLeft -= bytesOf(*record);
      m_shapes[uid] = Shape::Class;
      m_classOf[uid] = quint32(m_classes.size());
      m_classes.push_back(std::move(*record));
    }
  }
  for (const auto& [uid, named] : records) {
    if (m_shapes[named] == Shape::Class) {
      m_shapes[uid] = Shape::Record;
      m_classOf[uid] = m_classOf[named];
    }
  }
}

template <typename Seen> bool KeyedArchive::visit(Ref value, const Seen& seen) const {
  switch (m_list.kind(value)) {
  case Kind::Null:
    return false;
  case Kind::Uid:
    return seen(m_list.uid(value));
  case Kind::Array:
    for (qsizetype i = 0; i < m_list.count(value); ++i) {
      if (!visit(m_list.element(value, i), seen))
        return false;
    }
    return true;
  case Kind::Dictionary:
    for (qsizetype i = 0; i < m_list.count(value); ++i) {
      if (m_list.kind(m_list.key(value, i)) != Kind::String ||
          !visit(m_list.valueAt(value, i), seen))
        return false;
    }
    return true;
  default:
    return true;
  }
}

void KeyedArchive::findUnsound() {
  std::vector<Uid> unsound;
  const auto inTable = [this](Uid named) { return named < count(); };
  for (Uid uid = 1; uid < count(); ++uid) {
    if (m_shapes[uid] == Shape::Damaged || (isRecord(uid) && !visit(m_objects[uid], inTable)))
      unsound.push_back(uid);
  }
  if (!unsound.empty())
    markUnsound(std::move(unsound));
}

// Marks objects with something wrong in themselves, and all that lead to one of them.
void KeyedArchive::markUnsound(std::vector<Uid> unsound) {
  std::vector<std::pair<quint32, quint32>> parents; // object, one that names it
  for (Uid uid = 1; uid < count(); ++uid) {
    if (isRecord(uid))
      visit(m_objects[uid], [&](Uid named) {
        if (names(named))
          parents.emplace_back(quint32(named), quint32(uid));
        return true;
      });
  }
  std::sort(parents.begin(), parents.end());
  m_unsound.assign(m_objects.size(), false);
  for (const Uid uid : unsound)
    m_unsound[uid] = true;
  while (!unsound.empty()) {
    const auto child = quint32(unsound.back());
    unsound.pop_back();
    for (auto each = std::lower_bound(parents.begin(), parents.end(), std::pair(child, 0U));
         each != parents.end() && each->first == child; ++each) {
      if (!m_unsound[each->second]) {
        m_unsound[each->second] = true;
        unsound.push_back(each->second);
      }
    }
  }
}

ArchiveObject KeyedArchive::object(Uid uid) const {
  return names(uid) ? ArchiveObject(shared_from_this(), uid) : ArchiveObject();
}

const KeyedArchive::ClassRecord* KeyedArchive::classOf(Uid uid) const {
  if (!names(uid) || m_classOf[uid] == kNoClass)
    return nullptr;
  return &m_classes[m_classOf[uid]];
}

bool KeyedArchive::isKindOf(Uid uid, QStringView className) const {
  const ClassRecord* record = classOf(uid);
  return record && record->contains(className);
}

std::optional<Ref> KeyedArchive::field(Uid record, QStringView name) const {
  if (kind(record) != Kind::Dictionary)
    return std::nullopt;
  return m_list.find(m_objects[record], name);
}

KeyedArchive::Uid KeyedArchive::reference(Uid record, QStringView name) const {
  const auto value = field(record, name);
  if (!value || m_list.kind(*value) != Kind::Uid)
    return kNil;
  const Uid uid = m_list.uid(*value);
  return names(uid) ? uid : kNil;
}

} // namespace tockwise
