#include "richtext/rich_runs.h"

#include "richtext/picture_reading.h"
#include "store/archive/text_archive.h"

#include <algorithm>
#include <limits>

namespace tockwise {
namespace {

/// A title's picture beyond this is named, not shown: menus must open at once.
constexpr qint64 kMostShownPixels = 24'000'000;
constexpr qint64 kMostShownBytes = 16LL * 1024 * 1024;

QString alignmentName(TextAlignment alignment) {
  switch (alignment) {
  case TextAlignment::Left:
    return QStringLiteral("left");
  case TextAlignment::Right:
    return QStringLiteral("right");
  case TextAlignment::Center:
    return QStringLiteral("center");
  case TextAlignment::Justified:
    return QStringLiteral("justified");
  case TextAlignment::Natural:
    break;
  }
  return QStringLiteral("natural");
}

/// Colours that follow the theme are none: whoever shows the run has a better one.
std::optional<quint32> shownColor(const std::optional<TextColor>& color) {
  return color && !color->followsTheme ? std::optional(color->argb) : std::nullopt;
}

std::optional<int> number(const std::optional<qint64>& value) {
  if (!value)
    return std::nullopt;
  return int(
      std::clamp<qint64>(*value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

RichAttachment attachmentRun(const TextAttachment& attachment) {
  RichAttachment run;
  run.name = attachment.name;
  run.bytes = attachment.contents.size();
  const QSize size = pictureSize(attachment.contents);
  if (!size.isValid())
    return run;
  run.width = size.width();
  run.height = size.height();
  if (run.bytes <= kMostShownBytes && qint64(run.width) * run.height <= kMostShownPixels)
    run.data = attachment.contents;
  return run;
}

RichAttributes richAttributesOf(const TextAttributes& attributes) {
  RichAttributes run;
  if (attributes.font) {
    run.font = attributes.font->name;
    run.size = attributes.font->size;
  }
  run.color = shownColor(attributes.color);
  run.background = shownColor(attributes.background);
  run.underline = number(attributes.underline);
  run.strikethrough = number(attributes.strikethrough);
  run.superscript = number(attributes.superscript);
  run.link = attributes.link;
  if (attributes.paragraph && attributes.paragraph->alignment)
    run.alignment = alignmentName(*attributes.paragraph->alignment);
  for (const OtherAttribute& other : attributes.others)
    run.other += other.name;
  return run;
}

} // namespace

RichText richRuns(const AttributedText& text) {
  RichText runs;
  qsizetype start = 0;
  const auto put = [&](QString piece, const RichAttributes& attributes) {
    if (!piece.isEmpty())
      runs.push_back({std::move(piece), attributes});
  };
  for (const TextRun& run : text.runs) {
    const QString piece = text.text.mid(start, run.length);
    start += run.length;
    const RichAttributes attributes = richAttributesOf(run.attributes);
    if (!run.attributes.attachment) {
      put(piece, attributes);
      continue;
    }
    // One run may have several pictures, and text that is none.
    RichAttributes withAttachment = attributes;
    withAttachment.attachment = attachmentRun(*run.attributes.attachment);
    qsizetype plain = 0;
    for (qsizetype i = 0; i < piece.size(); ++i) {
      if (piece[i] != AttributedText::kAttachmentCharacter)
        continue;
      put(piece.mid(plain, i - plain), attributes);
      put(piece.mid(i, 1), withAttachment);
      plain = i + 1;
    }
    put(piece.mid(plain), attributes);
  }
  return runs;
}

std::optional<RichText> unarchiveRuns(const QByteArray& archive) {
  const Result<AttributedText> text = unarchiveTextStorage(archive);
  if (!text)
    return std::nullopt;
  return richRuns(text.value());
}

} // namespace tockwise
