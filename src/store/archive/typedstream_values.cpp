#include "store/archive/typedstream_values.h"

#include "store/archive/legacy_text.h"

#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>

namespace tockwise::typedstream {
namespace {

using Kind = Item::Kind;

const std::vector<Group>* groupsOf(const Tree& tree, const Item& item, QByteArrayView className) {
  return tree.isKindOf(item, className) ? &tree.object(item).groups : nullptr;
}

// The only item of a group with that one type; null when the group is another.
const Item* only(const Group& group, Kind kind) {
  return group.items.size() == 1 && group.items[0].kind == kind ? &group.items[0] : nullptr;
}

const Item* firstOnly(const std::vector<Group>& groups, Kind kind) {
  for (const Group& group : groups) {
    if (const Item* item = only(group, kind))
      return item;
  }
  return nullptr;
}

// The objects that follow a count, at most as many as it says; each is a group of its own.
std::optional<std::vector<Item>> counted(const std::vector<Group>& groups, quint64 each) {
  const Item* count = groups.empty() ? nullptr : only(groups[0], Kind::Integer);
  if (!count || count->integer() < 0)
    return std::nullopt;
  std::vector<Item> items;
  for (size_t i = 1; i < groups.size(); ++i) {
    for (const Item& item : groups[i].items) {
      if (item.code == '@')
        items.push_back(item);
    }
  }
  if (items.size() / each < quint64(count->integer()))
    return std::nullopt;
  items.resize(size_t(count->integer()) * each);
  return items;
}

// A mini property list that holds one string.
std::optional<QString> miniListString(const QByteArray& list) {
  constexpr qsizetype header = 8;
  constexpr quint32 nextStep = 5;
  constexpr quint32 utf16 = 6;
  if (list.size() < header)
    return std::nullopt;
  const auto kind = qFromLittleEndian<quint32>(list.constData());
  const auto length = qFromLittleEndian<quint32>(list.constData() + 4);
  if (length > quint64(list.size() - header))
    return std::nullopt;
  const QByteArray bytes = list.mid(header, length);
  if (kind == nextStep)
    return decodeLegacy(bytes, LegacyCharset::NextStep);
  if (kind != utf16)
    return std::nullopt;
  QStringDecoder decoder(QStringDecoder::Utf16); // by the byte-order mark
  return QString(decoder.decode(bytes));
}

std::optional<std::vector<double>> realsOf(const Group& group) {
  std::vector<double> reals;
  for (const Item& item : group.items) {
    if (item.kind != Kind::Real)
      return std::nullopt;
    reals.push_back(item.real());
  }
  return reals;
}

// Adds the runs of a text of length units, from a group on. A run names its attributes by a
// number, counted from 1; those of a new number follow it.
void readRuns(const std::vector<Group>& groups, size_t at, qint64 length,
              std::vector<AttributeRun>& runs) {
  std::vector<std::optional<Item>> known;
  for (qint64 sum = 0; sum < length && at < groups.size(); ++at) {
    const std::vector<Item>& items = groups[at].items;
    if (items.size() != 2 || items[0].kind != Kind::Integer || items[1].kind != Kind::Integer)
      return;
    const qint64 index = items[0].integer();
    const qint64 run = items[1].integer();
    if (index < 1 || index > qint64(known.size()) + 1 || run < 0)
      return;
    if (index > qint64(known.size())) {
      if (++at >= groups.size() || groups[at].items.size() != 1)
        return;
      const Item& attributes = groups[at].items[0];
      known.push_back(attributes.kind == Kind::Object ? std::optional(attributes) : std::nullopt);
    }
    const qint64 taken = std::min(run, length - sum);
    if (taken > 0)
      runs.push_back({qsizetype(taken), known[size_t(index - 1)]});
    sum += taken;
  }
}

} // namespace

std::optional<QString> stringOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSString");
  const Item* bytes = groups ? firstOnly(*groups, Kind::Bytes) : nullptr;
  if (!bytes)
    return std::nullopt;
  return QString::fromUtf8(tree.bytes(*bytes));
}

std::optional<QByteArray> dataOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSData");
  const Item* count = groups && !groups->empty() ? only((*groups)[0], Kind::Integer) : nullptr;
  if (!count)
    return std::nullopt;
  if (groups->size() < 2)
    return count->integer() == 0 ? std::optional(QByteArray()) : std::nullopt;
  const Item* bytes = only((*groups)[1], Kind::Bytes);
  return bytes ? std::optional(tree.bytes(*bytes)) : std::nullopt;
}

std::optional<Item> numberOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSNumber");
  if (!groups || groups->size() < 2 || !only((*groups)[0], Kind::Bytes))
    return std::nullopt;
  for (const Kind kind : {Kind::Integer, Kind::Unsigned, Kind::Real}) {
    if (const Item* number = only((*groups)[1], kind))
      return *number;
  }
  return std::nullopt;
}

bool isBoolean(const Item& number) {
  return (number.code == 'c' || number.code == 'B') && number.payload <= 1;
}

std::optional<double> dateOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSDate");
  const Item* seconds = groups ? firstOnly(*groups, Kind::Real) : nullptr;
  return seconds ? std::optional(seconds->real()) : std::nullopt;
}

std::optional<std::vector<Item>> elementsOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSArray");
  if (!groups)
    groups = groupsOf(tree, item, "NSSet");
  return groups ? counted(*groups, 1) : std::nullopt;
}

std::optional<std::vector<std::pair<Item, Item>>> pairsOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSDictionary");
  const auto items = groups ? counted(*groups, 2) : std::nullopt;
  if (!items)
    return std::nullopt;
  std::vector<std::pair<Item, Item>> pairs;
  for (size_t i = 0; i + 1 < items->size(); i += 2)
    pairs.emplace_back((*items)[i], (*items)[i + 1]);
  return pairs;
}

std::optional<Link> linkOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSURL");
  const Item* hasBase = groups && !groups->empty() ? only((*groups)[0], Kind::Integer) : nullptr;
  if (!hasBase)
    return std::nullopt;
  std::vector<Item> objects;
  for (const Group& group : *groups) {
    for (const Item& object : group.items) {
      if (object.kind == Kind::Object)
        objects.push_back(object);
    }
  }
  const size_t expected = hasBase->integer() == 0 ? 1 : 2;
  if (objects.size() < expected)
    return std::nullopt;
  return expected == 1 ? Link{Item(), objects[0]} : Link{objects[0], objects[1]};
}

std::optional<Font> fontOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSFont");
  const Item* list = groups ? firstOnly(*groups, Kind::Bytes) : nullptr;
  const Item* size = groups ? firstOnly(*groups, Kind::Real) : nullptr;
  const auto name = list ? miniListString(tree.bytes(*list)) : std::nullopt;
  if (!name || !size)
    return std::nullopt;
  return Font{*name, size->real()};
}

std::optional<Color> colorOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSColor");
  if (!groups || groups->size() < 2)
    return std::nullopt;
  const Item* space = only((*groups)[0], Kind::Integer);
  const Group& values = (*groups)[1];
  if (!space || space->integer() < 1 || space->integer() > 6)
    return std::nullopt;
  Color color;
  color.space = space->integer();
  if (color.space == 6) {
    if (values.types != "@@@")
      return std::nullopt;
    color.catalog = values.items[0];
    color.name = values.items[1];
    color.fallback = values.items[2];
    return color;
  }
  constexpr size_t components[] = {4, 4, 2, 2, 5};
  auto reals = realsOf(values);
  if (!reals || reals->size() != components[color.space - 1])
    return std::nullopt;
  color.components = std::move(*reals);
  return color;
}

std::optional<QByteArray> fileContainerOf(const Tree& tree, const Item& item) {
  if (const auto* groups = groupsOf(tree, item, "NSFileWrapper")) {
    for (const Group& group : *groups) {
      for (const Item& data : group.items) {
        if (auto bytes = dataOf(tree, data))
          return bytes;
      }
    }
    return std::nullopt;
  }
  const auto* groups = groupsOf(tree, item, "NSTextAttachment");
  if (!groups)
    return std::nullopt;
  for (const Group& group : *groups) {
    for (const Item& wrapper : group.items) {
      if (tree.isKindOf(wrapper, "NSFileWrapper"))
        return fileContainerOf(tree, wrapper);
    }
  }
  return std::nullopt;
}

std::optional<AttributedString> attributedStringOf(const Tree& tree, const Item& item) {
  const auto* groups = groupsOf(tree, item, "NSAttributedString");
  if (!groups)
    return std::nullopt;
  for (size_t i = 0; i < groups->size(); ++i) {
    const Item* object = only((*groups)[i], Kind::Object);
    const auto text = object ? stringOf(tree, *object) : std::nullopt;
    if (!text)
      continue;
    AttributedString string;
    string.text = *object;
    readRuns(*groups, i + 1, text->size(), string.runs);
    return string;
  }
  return std::nullopt;
}

} // namespace tockwise::typedstream
