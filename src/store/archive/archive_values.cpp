#include "store/archive/archive_values.h"

#include <QUrl>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

using plist::Kind;
using plist::Ref;
using Uid = KeyedArchive::Uid;

constexpr qsizetype kLongestName = 80;
constexpr Date kLastOfYear9999{252423993599.0};
constexpr double kLargestWhole = 9007199254740992.0; // up to here, reals hold every integer

std::optional<qint64> integerOf(const plist::Reader& list, Ref ref) {
  switch (list.kind(ref)) {
  case Kind::Integer:
    return list.integer(ref);
  case Kind::Boolean:
    return list.boolean(ref) ? 1 : 0;
  case Kind::Real: {
    const double number = list.real(ref);
    if (std::abs(number) <= kLargestWhole && std::trunc(number) == number)
      return qint64(number);
    return std::nullopt;
  }
  default:
    return std::nullopt;
  }
}

std::optional<double> realOf(const plist::Reader& list, Ref ref) {
  switch (list.kind(ref)) {
  case Kind::Integer:
    return double(list.integer(ref));
  case Kind::Boolean:
    return list.boolean(ref) ? 1 : 0;
  case Kind::Real: {
    const double number = list.real(ref);
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
  }
  default:
    return std::nullopt;
  }
}

// The scalar that an object is, or that a number's record wraps.
std::optional<Ref> numberRef(const KeyedArchive& archive, Uid uid) {
  if (!archive.names(uid))
    return std::nullopt;
  if (archive.kind(uid) != Kind::Dictionary)
    return archive.ref(uid);
  if (!archive.isKindOf(uid, u"NSNumber"))
    return std::nullopt;
  for (const QStringView name : {u"NS.intval", u"NS.dblval", u"NS.boolval"}) {
    if (const auto value = archive.field(uid, name))
      return value;
  }
  return std::nullopt;
}

std::optional<std::vector<Uid>> uidsOf(const plist::Reader& list, std::optional<Ref> array) {
  if (!array || list.kind(*array) != Kind::Array)
    return std::nullopt;
  std::vector<Uid> uids;
  uids.reserve(size_t(list.count(*array)));
  for (qsizetype i = 0; i < list.count(*array); ++i) {
    const Ref element = list.element(*array, i);
    if (list.kind(element) != Kind::Uid)
      return std::nullopt;
    uids.push_back(list.uid(element));
  }
  return uids;
}

std::optional<Date> dateOf(double seconds) {
  if (!std::isfinite(seconds))
    return std::nullopt;
  return std::clamp(Date{seconds}, kDistantPast, kLastOfYear9999);
}

// Reads a field with inlined when it holds the value, with named when it names an object.
template <typename Inlined, typename Named>
auto readField(const KeyedArchive& archive, Uid record, QStringView name, const Inlined& inlined,
               const Named& named) -> decltype(named(archive, Uid())) {
  const auto value = archive.field(record, name);
  if (!value)
    return std::nullopt;
  if (archive.list().kind(*value) == Kind::Uid)
    return named(archive, archive.list().uid(*value));
  return inlined(archive.list(), *value);
}

} // namespace

std::optional<QString> stringAt(const KeyedArchive& archive, Uid uid) {
  if (archive.kind(uid) == Kind::String)
    return archive.list().string(archive.ref(uid));
  if (!archive.isKindOf(uid, u"NSString"))
    return std::nullopt;
  if (const auto text = archive.field(uid, u"NS.string");
      text && archive.list().kind(*text) == Kind::String)
    return archive.list().string(*text);
  if (const auto bytes = archive.field(uid, u"NS.bytes");
      bytes && archive.list().kind(*bytes) == Kind::Data)
    return QString::fromUtf8(archive.list().data(*bytes));
  return std::nullopt;
}

std::optional<QByteArray> dataAt(const KeyedArchive& archive, Uid uid) {
  if (archive.kind(uid) == Kind::Data)
    return archive.list().data(archive.ref(uid));
  if (!archive.isKindOf(uid, u"NSData"))
    return std::nullopt;
  const auto bytes = archive.field(uid, u"NS.data");
  if (!bytes || archive.list().kind(*bytes) != Kind::Data)
    return std::nullopt;
  return archive.list().data(*bytes);
}

std::optional<qint64> integerAt(const KeyedArchive& archive, Uid uid) {
  const auto ref = numberRef(archive, uid);
  return ref ? integerOf(archive.list(), *ref) : std::nullopt;
}

std::optional<double> realAt(const KeyedArchive& archive, Uid uid) {
  const auto ref = numberRef(archive, uid);
  return ref ? realOf(archive.list(), *ref) : std::nullopt;
}

std::optional<bool> booleanAt(const KeyedArchive& archive, Uid uid) {
  if (archive.kind(uid) == Kind::Boolean)
    return archive.list().boolean(archive.ref(uid));
  const auto value =
      archive.isKindOf(uid, u"NSNumber") ? archive.field(uid, u"NS.boolval") : std::optional<Ref>();
  if (!value || archive.list().kind(*value) != Kind::Boolean)
    return std::nullopt;
  return archive.list().boolean(*value);
}

std::optional<Date> dateAt(const KeyedArchive& archive, Uid uid) {
  if (archive.kind(uid) == Kind::Date)
    return dateOf(archive.list().real(archive.ref(uid)));
  if (!archive.isKindOf(uid, u"NSDate"))
    return std::nullopt;
  const auto seconds = realField(archive, uid, u"NS.time");
  return seconds ? dateOf(*seconds) : std::nullopt;
}

std::optional<QString> urlAt(const KeyedArchive& archive, Uid uid) {
  if (!archive.isKindOf(uid, u"NSURL"))
    return std::nullopt;
  auto relative = stringField(archive, uid, u"NS.relative");
  const Uid base = archive.reference(uid, u"NS.base");
  if (!relative || base == KeyedArchive::kNil || base == uid)
    return relative;
  // A base has no base of its own, as a rule; one that has is taken without it.
  const auto start = stringField(archive, base, u"NS.relative");
  if (!start)
    return relative;
  return QUrl(*start).resolved(QUrl(*relative)).toString(QUrl::FullyEncoded);
}

std::optional<std::vector<Uid>> elementsAt(const KeyedArchive& archive, Uid uid) {
  if (!archive.isKindOf(uid, u"NSArray") && !archive.isKindOf(uid, u"NSSet"))
    return std::nullopt;
  return uidsOf(archive.list(), archive.field(uid, u"NS.objects"));
}

std::optional<std::vector<std::pair<Uid, Uid>>> pairsAt(const KeyedArchive& archive, Uid uid) {
  if (!archive.isKindOf(uid, u"NSDictionary"))
    return std::nullopt;
  const auto keys = uidsOf(archive.list(), archive.field(uid, u"NS.keys"));
  const auto values = uidsOf(archive.list(), archive.field(uid, u"NS.objects"));
  if (!keys || !values || keys->size() != values->size())
    return std::nullopt;
  std::vector<std::pair<Uid, Uid>> pairs;
  pairs.reserve(keys->size());
  for (size_t i = 0; i < keys->size(); ++i)
    pairs.emplace_back((*keys)[i], (*values)[i]);
  return pairs;
}

std::optional<QString> stringField(const KeyedArchive& archive, Uid record, QStringView name) {
  const auto inlined = [](const plist::Reader& list, Ref ref) {
    return list.kind(ref) == Kind::String ? std::optional(list.string(ref)) : std::nullopt;
  };
  return readField(archive, record, name, inlined, stringAt);
}

std::optional<QByteArray> dataField(const KeyedArchive& archive, Uid record, QStringView name) {
  const auto inlined = [](const plist::Reader& list, Ref ref) {
    return list.kind(ref) == Kind::Data ? std::optional(list.data(ref)) : std::nullopt;
  };
  return readField(archive, record, name, inlined, dataAt);
}

std::optional<qint64> integerField(const KeyedArchive& archive, Uid record, QStringView name) {
  return readField(archive, record, name, integerOf, integerAt);
}

std::optional<double> realField(const KeyedArchive& archive, Uid record, QStringView name) {
  return readField(archive, record, name, realOf, realAt);
}

QString inMessage(const QString& name) {
  QString shown = name.left(kLongestName);
  for (QChar& unit : shown) {
    if (!unit.isPrint())
      unit = QChar::ReplacementCharacter;
  }
  return shown;
}

} // namespace tockwise
