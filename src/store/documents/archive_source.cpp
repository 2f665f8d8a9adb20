#include "store/documents/archive_source.h"

#include "store/archive/archive_values.h"

namespace tockwise {
namespace {

using plist::Kind;
using plist::Ref;

constexpr qsizetype kMostBytes = 64 << 20; // that the elements may take, and
constexpr qsizetype kBytesPerByte = 4;     // so many more for each byte of the archive
constexpr qsizetype kMostFields = 16;      // of a record; looking one up compares with each

} // namespace

ArchiveSource::ArchiveSource(const KeyedArchive& archive)
    : m_archive(archive), m_bytesLeft(kMostBytes + kBytesPerByte * archive.size()) {}

bool ArchiveSource::charge(qsizetype bytes) {
  if (m_bytesLeft >= 0)
    m_bytesLeft -= bytes;
  return m_bytesLeft >= 0;
}

bool ArchiveSource::isSmall(Handle from) const {
  return m_archive.kind(from) != Kind::Dictionary ||
         m_archive.list().count(m_archive.ref(from)) <= kMostFields;
}

// The list that a record of that class has in a field.
std::optional<Ref> ArchiveSource::list(Handle from, QStringView className,
                                       QStringView field) const {
  if (!isSmall(from) || !m_archive.isRecord(from) || !m_archive.isKindOf(from, className))
    return std::nullopt;
  const auto found = m_archive.field(from, field);
  return found && m_archive.list().kind(*found) == Kind::Array ? found : std::nullopt;
}

// The object that an element of a list names; nil when it names none.
ArchiveSource::Handle ArchiveSource::named(Ref list, qsizetype at) const {
  const Ref element = m_archive.list().element(list, at);
  return m_archive.list().kind(element) == Kind::Uid ? m_archive.list().uid(element)
                                                     : KeyedArchive::kNil;
}

std::optional<std::vector<ArchiveSource::Handle>> ArchiveSource::elementsOf(Handle array) {
  const auto elements = list(array, u"NSArray", u"NS.objects");
  if (!elements)
    return std::nullopt;
  const qsizetype count = m_archive.list().count(*elements);
  std::vector<Handle> handles;
  if (!charge(count * qsizetype(sizeof(Handle))))
    return handles;
  handles.reserve(size_t(count));
  for (qsizetype i = 0; i < count; ++i)
    handles.push_back(named(*elements, i));
  return handles;
}

std::optional<qint64> ArchiveSource::integer(Handle from) const {
  return isSmall(from) ? integerAt(m_archive, from) : std::nullopt;
}

// Dates with a calendar format are records of a class below that of plain dates.
std::optional<Date> ArchiveSource::date(Handle from) const {
  return isSmall(from) ? dateAt(m_archive, from) : std::nullopt;
}

std::optional<QString> ArchiveSource::string(Handle from) {
  auto text = isSmall(from) ? stringAt(m_archive, from) : std::nullopt;
  if (text && !charge(text->size() * qsizetype(sizeof(QChar))))
    return std::nullopt;
  return text;
}

std::optional<QByteArray> ArchiveSource::data(Handle from) {
  auto bytes = isSmall(from) ? dataAt(m_archive, from) : std::nullopt;
  if (bytes && !charge(bytes->size()))
    return std::nullopt;
  return bytes;
}

bool ArchiveSource::isString(Handle from, QStringView wanted) const {
  if (m_archive.kind(from) == Kind::String)
    return m_archive.list().isString(m_archive.ref(from), wanted);
  if (!isSmall(from) || !m_archive.isRecord(from) || !m_archive.isKindOf(from, u"NSString"))
    return false;
  const auto text = m_archive.field(from, u"NS.string");
  return text && m_archive.list().isString(*text, wanted);
}

std::optional<qsizetype> ArchiveSource::arrayCount(Handle from) const {
  const auto elements = list(from, u"NSArray", u"NS.objects");
  return elements ? std::optional(m_archive.list().count(*elements)) : std::nullopt;
}

std::optional<qsizetype> ArchiveSource::pairCount(Handle from) const {
  const auto keys = list(from, u"NSDictionary", u"NS.keys");
  const auto values = list(from, u"NSDictionary", u"NS.objects");
  if (!keys || !values || m_archive.list().count(*keys) != m_archive.list().count(*values))
    return std::nullopt;
  return m_archive.list().count(*keys);
}

ArchiveSource::Handle ArchiveSource::element(Handle array, qsizetype at) const {
  return named(*list(array, u"NSArray", u"NS.objects"), at);
}

std::optional<ArchiveSource::Handle> ArchiveSource::find(Handle dictionary, QStringView key) const {
  const auto keys = list(dictionary, u"NSDictionary", u"NS.keys");
  const auto values = list(dictionary, u"NSDictionary", u"NS.objects");
  if (!keys || !values)
    return std::nullopt;
  const qsizetype count = std::min(m_archive.list().count(*keys), m_archive.list().count(*values));
  for (qsizetype i = 0; i < count; ++i) {
    if (isString(named(*keys, i), key))
      return named(*values, i);
  }
  return std::nullopt;
}

} // namespace tockwise
