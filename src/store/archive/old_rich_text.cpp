#include "store/archive/old_rich_text.h"

#include "base/log.h"
#include "store/archive/text_archive.h"
#include "store/archive/typedstream.h"

namespace tockwise {
namespace {

// The text storage that bytes hold; nothing when they hold none, which needs no words when they
// are empty or are no older archive at all.
std::optional<AttributedText> oldTextStorage(const QByteArray& bytes, size_t index) {
  if (!looksLikeTypedstream(bytes))
    return std::nullopt;
  const auto about = [index](const QString& what) {
    logLine(QStringLiteral("reminderRTFs: element %1: %2").arg(index).arg(what));
  };
  auto read = readTypedstreamText(bytes);
  if (!read) {
    about(read.error().message);
    return std::nullopt;
  }
  if (!read->isTextStorage) {
    about(QStringLiteral("the old archive holds no text storage"));
    return std::nullopt;
  }
  for (const QString& note : read->notes)
    about(note);
  return std::move(read->text);
}

} // namespace

std::optional<Value> convertOldRichText(const Value& rtfs, const ScaleAttachments& scale) {
  return convertOldRichText(rtfs, scale, archiveText);
}

std::optional<Value> convertOldRichText(const Value& rtfs, const ScaleAttachments& scale,
                                        const ArchiveText& archive) {
  const auto* stored = rtfs.get<Value::Array>();
  if (!stored)
    return std::nullopt;
  Value::Array converted = *stored;
  bool failed = false;
  for (size_t i = 0; i < converted.size(); ++i) {
    const auto* bytes = converted[i].get<QByteArray>();
    if (!bytes) {
      logLine(QStringLiteral("Uh Oh - unarchiveObjectWithData - there was a problem converting the "
                             "RTF data! Index: %1")
                  .arg(i));
      return std::nullopt;
    }
    auto text = oldTextStorage(*bytes, i);
    if (!text) {
      logLine(QStringLiteral("We have our representation of null RTF data"));
      continue;
    }
    if (const int scaled = scale(*text); scaled > 0)
      logLine(QStringLiteral("%1 Scaled").arg(scaled));
    QByteArray keyed = archive(*text);
    if (keyed.isEmpty()) {
      logLine(QStringLiteral("Uh Oh - archivedDataWithRootObject - there was a problem converting "
                             "the RTF data! Index: %1")
                  .arg(i));
      failed = true;
      continue;
    }
    converted[i] = Value(std::move(keyed));
  }
  if (failed)
    return std::nullopt;
  return Value(std::move(converted));
}

} // namespace tockwise
