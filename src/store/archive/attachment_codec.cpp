#include "store/archive/attachment_codec.h"

#include "store/archive/archive_values.h"
#include "store/archive/file_wrapper.h"

namespace tockwise {
namespace {

// What the attachment's file wrapper holds, if it is in the container that we know.
std::optional<FileWrapper> wrapperOf(const KeyedArchive& archive, KeyedArchive::Uid attachment) {
  const auto wrapper = archive.reference(attachment, u"NSFileWrapper");
  const auto container = dataField(archive, wrapper, u"NSFileWrapperData");
  if (!container)
    return std::nullopt;
  auto read = readFileWrapper(*container);
  return read ? std::optional(std::move(read).value()) : std::nullopt;
}

} // namespace

std::optional<TextAttachment> decodeAttachment(const KeyedArchive& archive, KeyedArchive::Uid uid) {
  if (!archive.isKindOf(uid, u"NSTextAttachment") && !archive.field(uid, u"NSFileWrapper"))
    return std::nullopt;
  TextAttachment attachment;
  attachment.original = archive.object(uid);
  if (auto wrapper = wrapperOf(archive, uid)) {
    attachment.name = std::move(wrapper->name);
    if (wrapper->type == FileWrapper::Type::RegularFile)
      attachment.contents = std::move(wrapper->contents);
  }
  // Where an attachment has contents of its own, they win over the wrapper's.
  if (auto contents = dataField(archive, uid, u"NS.contents"))
    attachment.contents = std::move(*contents);
  return attachment;
}

KeyedWriter::Uid encodeAttachment(KeyedWriter& writer, const TextAttachment& attachment) {
  if (const auto copied = writer.copy(attachment.original); copied != KeyedWriter::kNil)
    return copied;
  static const QStringList attachmentChain{QStringLiteral("NSTextAttachment"),
                                           QStringLiteral("NSObject")};
  static const QStringList wrapperChain{QStringLiteral("NSFileWrapper"),
                                        QStringLiteral("NSObject")};
  FileWrapper file;
  file.name = attachment.name;
  file.contents = attachment.contents;
  const auto uid = writer.reserve();
  const auto wrapper = writer.reserve();
  const auto container = writer.mutableData(writeFileWrapper(file));
  writer.setRecord(wrapper,
                   {{QStringLiteral("NSFileWrapperData"), writer.inlineReference(container)}},
                   wrapperChain);
  writer.setRecord(uid, {{QStringLiteral("NSFileWrapper"), writer.inlineReference(wrapper)}},
                   attachmentChain);
  return uid;
}

} // namespace tockwise
