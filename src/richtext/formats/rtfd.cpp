// Flat RTFD: a folder in a file wrapper, whose "TXT.rtf" names the attached files beside it.
#include "richtext/formats/picture_type.h"
#include "richtext/formats/rtf_reader.h"
#include "richtext/formats/rtf_units.h"
#include "richtext/formats/rtf_writer.h"
#include "richtext/text_formats.h"
#include "store/archive/file_wrapper.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace tockwise {
namespace {

const QString kTextFile = QStringLiteral("TXT.rtf");

// The files of a container while it is written: each name once, without regard to case.
class AttachedFiles {
 public:
  /// The name under which attachment is in the container.
  QString add(const TextAttachment& attachment) {
    const QString wanted = soundName(attachment.name);
    const QFileInfo parts(wanted);
    QString name = wanted;
    for (int count = 2;; ++count) {
      const FileWrapper* taken = find(name);
      if (!taken && name.compare(kTextFile, Qt::CaseInsensitive) != 0)
        break;
      if (taken && taken->name == name && taken->contents == attachment.contents)
        return name;
      const QString suffix = parts.suffix().isEmpty() ? QString() : u'.' + parts.suffix();
      name = QStringLiteral("%1 %2%3").arg(parts.completeBaseName()).arg(count).arg(suffix);
    }
    m_indexes.insert(name.toLower(), m_files.size());
    m_files.push_back({FileWrapper::Type::RegularFile, name, attachment.contents, {}});
    return name;
  }

  std::vector<FileWrapper> finish() { return std::move(m_files); }

 private:
  // Names that mean something to a container start with a dot or two underscores.
  static QString soundName(const QString& name) {
    constexpr int kMostBytes = 200; // which leaves room for a number
    QString sound = sanitisedFileName(name);
    while (sound.startsWith(u'.') || sound.startsWith(u"__"))
      sound.remove(0, 1);
    while (sound.toUtf8().size() > kMostBytes) {
      const bool endsWithPair = sound.back().isLowSurrogate();
      sound.chop(endsWithPair ? 2 : 1);
    }
    return sound.trimmed().isEmpty() ? QStringLiteral("attachment") : sound.trimmed();
  }

  const FileWrapper* find(const QString& name) const {
    const auto found = m_indexes.constFind(name.toLower());
    return found == m_indexes.constEnd() ? nullptr : &m_files[*found];
  }

  std::vector<FileWrapper> m_files;
  QHash<QString, size_t> m_indexes; // by name in lower case
};

// A group that names the file, then the character that stands for it in readers without it.
QByteArray fileGroup(const QString& name, const QByteArray& contents) {
  QByteArray group = "{{\\NeXTGraphic " + escapedForRTF(name);
  if (const auto type = pictureTypeOf(contents)) {
    group += " \\width" + QByteArray::number(type->size.width() * kTwipsPerPixel);
    group += " \\height" + QByteArray::number(type->size.height() * kTwipsPerPixel);
  }
  return group + "\n}\\'ac}";
}

} // namespace

QByteArray toRTFD(const AttributedText& text) {
  AttachedFiles files;
  const QByteArray rtf = writeRTF(text, [&](const TextAttachment& attachment) {
    if (attachment.contents.isEmpty()) // a folder, or what is not understood
      return escapedForRTF(u'[' + attachment.name + u']');
    return fileGroup(files.add(attachment), attachment.contents);
  });
  FileWrapper folder{FileWrapper::Type::Folder, {}, {}, {}};
  folder.children.push_back({FileWrapper::Type::RegularFile, kTextFile, rtf, {}});
  for (FileWrapper& file : files.finish())
    folder.children.push_back(std::move(file));
  return writeFileWrapper(folder);
}

Result<AttributedText> fromRTFD(const QByteArray& bytes) {
  const auto folder = readFileWrapper(bytes);
  if (!folder)
    return folder.error();
  const auto find = [&](const QString& name) -> const FileWrapper* {
    const auto found = std::find_if(
        folder->children.begin(), folder->children.end(), [&](const FileWrapper& file) {
          return file.type == FileWrapper::Type::RegularFile && file.name == name;
        });
    return found == folder->children.end() ? nullptr : &*found;
  };
  const FileWrapper* text = find(kTextFile);
  if (!text)
    return Error{Error::Kind::Damaged, QStringLiteral("this RTFD has no text")};
  return readRTF(text->contents, [&](const QString& name) -> std::optional<QByteArray> {
    const FileWrapper* file = name == kTextFile ? nullptr : find(name);
    return file ? std::optional(file->contents) : std::nullopt;
  });
}

} // namespace tockwise
