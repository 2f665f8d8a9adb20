#include "store/archive/file_wrapper.h"

#include "store/archive/legacy_text.h"

#include <QStringList>
#include <QtEndian>

#include <optional>

namespace tockwise {
namespace {

const QByteArray kMagic("rtfd\0\0\0\0", 8);
const QByteArray kContentsEntry("..");
const QByteArray kAttributesEntry(".");
const QByteArray kLegacyNameEntry("__@PreferredName@__");
const QByteArray kUtf8NameEntry("__@UTF8PreferredName@__");
const QString kUnnamed = QStringLiteral("unnamed");

constexpr quint32 kBytesNode = 1;
constexpr quint32 kFolderNode = 3;
constexpr quint32 kPaddedBlock = 0x80000000;
constexpr qsizetype kLeastEntry = 12; // length of the name, size and type of the node
constexpr int kMostNesting = 32;
constexpr qsizetype kMostNameBytes = 255;

Error damagedWrapper(const QString& what) {
  return Error{Error::Kind::Damaged, QStringLiteral("not a sound file wrapper: %1").arg(what)};
}

bool isSpecial(const QByteArray& name) {
  return name == kContentsEntry || name == kAttributesEntry || name == kLegacyNameEntry ||
         name == kUtf8NameEntry;
}

// Takes numbers and blocks off the front of a part of the container.
class Cursor {
 public:
  explicit Cursor(QByteArrayView bytes) : m_rest(bytes) {}

  qsizetype left() const { return m_rest.size(); }
  std::optional<quint32> number() {
    const auto bytes = block(4);
    return bytes ? std::optional(qFromLittleEndian<quint32>(bytes->data())) : std::nullopt;
  }
  std::optional<QByteArrayView> block(quint64 size) {
    if (size > quint64(m_rest.size()))
      return std::nullopt;
    const QByteArrayView taken = m_rest.first(qsizetype(size));
    m_rest = m_rest.sliced(qsizetype(size));
    return taken;
  }
  std::optional<QByteArrayView> sizedBlock() {
    const auto size = number();
    return size ? block(*size) : std::nullopt;
  }

 private:
  QByteArrayView m_rest;
};

struct Entry {
  QByteArray name;
  QByteArrayView node; // its type word included
};

Result<FileWrapper> readNode(QByteArrayView node, const QString& name, int nesting);

Result<QByteArray> readBytes(QByteArrayView node) {
  Cursor cursor(node);
  if (cursor.number() != kBytesNode)
    return damagedWrapper(QStringLiteral("an entry that holds no bytes"));
  auto size = cursor.number();
  if (size == kPaddedBlock) {
    size = cursor.number();
    if (!cursor.sizedBlock())
      return damagedWrapper(QStringLiteral("padding beyond the data"));
  }
  const auto bytes = size ? cursor.block(*size) : std::nullopt;
  if (!bytes)
    return damagedWrapper(QStringLiteral("a block beyond the data"));
  return bytes->toByteArray();
}

Result<std::vector<Entry>> readEntries(Cursor cursor) {
  const auto count = cursor.number();
  if (!count || *count > quint64(cursor.left() / kLeastEntry))
    return damagedWrapper(QStringLiteral("more entries than data"));
  std::vector<Entry> entries(*count);
  for (Entry& entry : entries) {
    const auto name = cursor.sizedBlock();
    if (!name)
      return damagedWrapper(QStringLiteral("a name beyond the data"));
    entry.name = name->toByteArray();
  }
  auto sizes = cursor.block(4 * quint64(*count));
  if (!sizes)
    return damagedWrapper(QStringLiteral("sizes beyond the data"));
  Cursor sizesCursor(*sizes);
  for (Entry& entry : entries) {
    const auto node = cursor.block(*sizesCursor.number());
    if (!node)
      return damagedWrapper(QStringLiteral("an entry beyond the data"));
    entry.node = *node;
  }
  return entries;
}

const Entry* find(const std::vector<Entry>& entries, const QByteArray& name) {
  for (const Entry& entry : entries) {
    if (entry.name == name)
      return &entry;
  }
  return nullptr;
}

// The name that the entries state, else an empty one: a name that cannot be read costs no contents.
QString preferredName(const std::vector<Entry>& entries) {
  for (const QByteArray& special : {kUtf8NameEntry, kLegacyNameEntry}) {
    const Entry* entry = find(entries, special);
    const auto bytes = entry ? readBytes(entry->node) : QByteArray();
    if (bytes && !bytes->isEmpty())
      return sanitisedFileName(decodeUtf8OrLegacy(*bytes, LegacyCharset::MacRoman));
  }
  return {};
}

Result<FileWrapper> readFolder(QByteArrayView node, const QString& name, int nesting) {
  Cursor cursor(node);
  (void)cursor.number(); // its type
  const auto entries = readEntries(cursor);
  if (!entries)
    return entries.error();
  FileWrapper wrapper;
  wrapper.name = name.isEmpty() ? preferredName(*entries) : name;
  if (const Entry* contents = find(*entries, kContentsEntry)) {
    auto bytes = readBytes(contents->node);
    if (!bytes)
      return bytes.error();
    wrapper.contents = std::move(*bytes);
    return wrapper;
  }
  wrapper.type = FileWrapper::Type::Folder;
  for (const Entry& entry : *entries) {
    if (isSpecial(entry.name))
      continue;
    QString stated = sanitisedFileName(decodeUtf8OrLegacy(entry.name, LegacyCharset::MacRoman));
    if (stated.isEmpty() || isSpecial(stated.toUtf8()))
      stated = kUnnamed;
    auto child = readNode(entry.node, stated, nesting + 1);
    if (!child)
      return child.error();
    wrapper.children.push_back(std::move(*child));
  }
  return wrapper;
}

// name: as the folder around the node has it; empty for the outermost.
Result<FileWrapper> readNode(QByteArrayView node, const QString& name, int nesting) {
  if (nesting > kMostNesting)
    return damagedWrapper(QStringLiteral("folders nested too deep"));
  const auto type = Cursor(node).number();
  if (type == kFolderNode)
    return readFolder(node, name, nesting);
  if (type != kBytesNode || name.isEmpty())
    return damagedWrapper(QStringLiteral("an entry of an unknown kind"));
  auto bytes = readBytes(node);
  if (!bytes)
    return bytes.error();
  return FileWrapper{FileWrapper::Type::RegularFile, name, std::move(*bytes), {}};
}

void appendNumber(QByteArray& to, quint32 number) {
  const quint32 bytes = qToLittleEndian(number);
  to.append(reinterpret_cast<const char*>(&bytes), sizeof bytes);
}

void appendBlock(QByteArray& to, const QByteArray& bytes) {
  appendNumber(to, quint32(bytes.size()));
  to += bytes;
}

QByteArray bytesNode(const QByteArray& bytes) {
  QByteArray node;
  appendNumber(node, kBytesNode);
  appendBlock(node, bytes);
  return node;
}

struct WrittenEntry {
  QByteArray name;
  QByteArray node;
};

QByteArray folderNode(const std::vector<WrittenEntry>& entries) {
  QByteArray node;
  appendNumber(node, kFolderNode);
  appendNumber(node, quint32(entries.size()));
  for (const WrittenEntry& entry : entries)
    appendBlock(node, entry.name);
  for (const WrittenEntry& entry : entries)
    appendNumber(node, quint32(entry.node.size()));
  for (const WrittenEntry& entry : entries)
    node += entry.node;
  return node;
}

// What the last two words of an attribute record mean is not known; readers are used to these.
enum class AttributesOf { FolderEntries, RegularFile };

QByteArray attributesNode(const std::vector<WrittenEntry>& of, AttributesOf kind,
                          quint32 modified) {
  constexpr quint32 recordSize = 16;
  constexpr quint32 mode = 0666;
  QByteArray block;
  appendNumber(block, quint32(of.size()));
  for (const WrittenEntry& entry : of)
    appendBlock(block, entry.name);
  for (size_t i = 0; i < of.size(); ++i) {
    appendNumber(block, recordSize);
    appendNumber(block, modified);
    appendNumber(block, mode);
    appendNumber(block, kind == AttributesOf::RegularFile ? 2 : 0);
    appendNumber(block, kind == AttributesOf::RegularFile ? 1 : 0);
  }
  return bytesNode(block);
}

QByteArray regularFileNode(const FileWrapper& wrapper, quint32 modified) {
  std::vector<WrittenEntry> entries{{kContentsEntry, bytesNode(wrapper.contents)}};
  const QByteArray attributes = attributesNode(entries, AttributesOf::RegularFile, modified);
  const QString name = sanitisedFileName(wrapper.name);
  entries.push_back({kLegacyNameEntry, bytesNode(encodeLegacy(name, LegacyCharset::MacRoman))});
  entries.push_back({kUtf8NameEntry, bytesNode(name.toUtf8())});
  entries.push_back({kAttributesEntry, attributes});
  return folderNode(entries);
}

QByteArray folderNode(const FileWrapper& folder, quint32 modified) {
  std::vector<WrittenEntry> entries;
  for (const FileWrapper& child : folder.children) {
    QByteArray name = sanitisedFileName(child.name).toUtf8();
    if (name.isEmpty() || isSpecial(name))
      name = kUnnamed.toUtf8();
    entries.push_back({name, child.type == FileWrapper::Type::Folder ? folderNode(child, modified)
                                                                     : bytesNode(child.contents)});
  }
  if (!entries.empty())
    entries.push_back(
        {kAttributesEntry, attributesNode(entries, AttributesOf::FolderEntries, modified)});
  return folderNode(entries);
}

// Not so are characters that draw nothing, or that make a name read other than it is ("gpj.exe").
bool isShownInNames(QChar character) {
  const char16_t code = character.unicode();
  const bool turnsDirection = code == 0x200E || code == 0x200F || code == 0x061C ||
                              (code >= 0x202A && code <= 0x202E) ||
                              (code >= 0x2066 && code <= 0x2069);
  return character.category() != QChar::Other_Control && code != 0x2028 && code != 0x2029 &&
         code != QChar::ByteOrderMark && !turnsDirection;
}

} // namespace

QString sanitisedFileName(const QString& name) {
  const QStringList components = name.split(u'/', Qt::SkipEmptyParts);
  QString clean;
  for (const QChar character : components.isEmpty() ? QString() : components.last()) {
    if (isShownInNames(character))
      clean += character;
  }
  clean = QString::fromUtf8(clean.toUtf8()); // a lone half of a surrogate pair becomes "?"
  if (clean == QLatin1String(".") || clean == QLatin1String(".."))
    return {};
  if (clean.size() > kMostNameBytes)
    clean.truncate(kMostNameBytes - (clean[kMostNameBytes].isLowSurrogate() ? 1 : 0));
  while (clean.toUtf8().size() > kMostNameBytes)
    clean.chop(clean.back().isLowSurrogate() ? 2 : 1);
  return clean;
}

Result<FileWrapper> readFileWrapper(const QByteArray& bytes) {
  if (!bytes.startsWith(kMagic))
    return damagedWrapper(QStringLiteral("no header"));
  return readNode(QByteArrayView(bytes).sliced(kMagic.size()), QString(), 0);
}

QByteArray writeFileWrapper(const FileWrapper& wrapper, quint32 modified) {
  return kMagic + (wrapper.type == FileWrapper::Type::Folder ? folderNode(wrapper, modified)
                                                             : regularFileNode(wrapper, modified));
}

} // namespace tockwise
