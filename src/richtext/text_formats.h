// Rich text in the formats of other programs: HTML, RTF, flat RTFD, plain text, pictures.
#pragma once

#include "base/result.h"
#include "store/archive/attributed_text.h"

#include <QMimeData>

#include <memory>
#include <optional>

namespace tockwise {

/// A whole, self-contained page: pictures as data URIs, links only of schemes that are safe to
/// follow, everything else escaped.
QString toHTML(const AttributedText& text);
/// Sanitised: no scripts, no style beyond what a run can carry, nothing loaded from files or the
/// network; pictures only from data URIs.
AttributedText fromHTML(const QString& html);

QByteArray toRTF(const AttributedText& text);
/// Damaged when bytes are no RTF.
Result<AttributedText> fromRTF(const QByteArray& bytes);

/// Flat RTFD: "TXT.rtf" and the attached files in one container.
QByteArray toRTFD(const AttributedText& text);
Result<AttributedText> fromRTFD(const QByteArray& bytes);

/// The text without attributes; an attachment as its name in square brackets.
QString toPlainText(const AttributedText& text);

/// HTML, RTF and plain text; RTFD and our own archive are made when they are asked for.
std::unique_ptr<QMimeData> mimeDataOf(const AttributedText& text);
/// The best that mimeData has, of: our own archive, RTFD, RTF, HTML, a picture, picture files,
/// plain text. Nothing when there is none of these.
std::optional<AttributedText> textFromMimeData(const QMimeData& mimeData);

/// An HTML, RTF, flat RTFD or picture file, told by its contents. NotFound, Storage, Damaged or
/// Refused (too large), with a message that names the file.
Result<AttributedText> readRichFile(const QString& path);

} // namespace tockwise
