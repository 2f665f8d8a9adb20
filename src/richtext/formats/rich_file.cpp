// readRichFile(): a text from a file whose kind its contents tell.
#include "richtext/formats/html_charset.h"
#include "richtext/formats/picture_type.h"
#include "richtext/picture_reading.h"
#include "richtext/picture_scaling.h"
#include "richtext/text_formats.h"
#include "store/archive/file_wrapper.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeDatabase>
#include <QRegularExpression>

namespace tockwise {
namespace {

constexpr qint64 kMostFileBytes = kMostPictureBytes;
constexpr qsizetype kCharactersWithTag = 4096; // characters in which a page has a tag

Error error(Error::Kind kind, const QString& path, const QString& what) {
  return Error{kind, QStringLiteral("%1: %2").arg(path, what)};
}

Result<QByteArray> contentsOf(const QString& path) {
  const QFileInfo info(path);
  if (!info.exists())
    return error(Error::Kind::NotFound, path, QStringLiteral("there is no such file"));
  if (!info.isFile()) // reading a pipe or a device might not end
    return error(Error::Kind::Refused, path, QStringLiteral("this is not a file"));
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    return error(Error::Kind::Storage, path, file.errorString());
  const QByteArray contents = file.read(kMostFileBytes + 1);
  if (file.error() != QFileDevice::NoError)
    return error(Error::Kind::Storage, path, file.errorString());
  if (contents.size() > kMostFileBytes) {
    return error(Error::Kind::Refused, path,
                 QStringLiteral("it is larger than %1 MB").arg(kMostFileBytes / 1024 / 1024));
  }
  return contents;
}

// The picture as an attachment, if all of it can be read.
Result<AttributedText> pictureText(const QByteArray& contents, const QString& path) {
  constexpr int kSample = 64; // pixels; most readers scale while they read
  if (readPicture(contents, kSample).isNull())
    return error(Error::Kind::Damaged, path, QStringLiteral("the picture is damaged"));
  AttributedText text;
  TextAttributes attributes;
  attributes.attachment =
      TextAttachment{sanitisedFileName(QFileInfo(path).fileName()), contents, {}};
  text.append(QString(QChar(AttributedText::kAttachmentCharacter)), attributes);
  return text;
}

bool looksLikeHTML(const QString& text) {
  static const QRegularExpression tag(
      QStringLiteral("<(!doctype html|!--|/?(html|head|meta|title|style|body|div|p|span|a|b|i|u|s|"
                     "em|strong|font|h[1-6]|br|hr|ul|ol|li|table|tr|td|pre|code|blockquote|img|"
                     "center|sub|sup)[\\s>/])"),
      QRegularExpression::CaseInsensitiveOption);
  return tag.match(text.left(kCharactersWithTag)).hasMatch();
}

/// A page without a tag is known by its name alone.
bool isNamedHTML(const QString& path) {
  const QString suffix = QFileInfo(path).suffix();
  return suffix.compare(u"html", Qt::CaseInsensitive) == 0 ||
         suffix.compare(u"htm", Qt::CaseInsensitive) == 0;
}

// Why contents are no text: a picture has a reason of its own.
QString reasonAgainst(const QByteArray& contents) {
  const QString kind = QMimeDatabase().mimeTypeForData(contents).name();
  if (!kind.startsWith(u"image/"))
    return QStringLiteral("this is no HTML, RTF or picture file");
  const bool isReadable = QImageReader::supportedMimeTypes().contains(kind.toLatin1());
  return isReadable ? QStringLiteral("the picture is damaged")
                    : QStringLiteral("pictures of the kind %1 cannot be read here").arg(kind);
}

bool isRTF(const QByteArray& contents) {
  const QByteArray start = contents.left(64).trimmed();
  return start.startsWith("{\\rtf") || start.startsWith("\xef\xbb\xbf{\\rtf");
}

} // namespace

Result<AttributedText> readRichFile(const QString& path) {
  const auto contents = contentsOf(path);
  if (!contents)
    return contents.error();
  if (pictureTypeOf(*contents))
    return pictureText(*contents, path);
  Result<AttributedText> text = Error{Error::Kind::Damaged, {}};
  if (isRTF(*contents))
    text = fromRTF(*contents);
  else if (contents->startsWith(QByteArrayView("rtfd\0\0\0\0", 8)))
    text = fromRTFD(*contents);
  else if (const QString html = decodedHTML(*contents); looksLikeHTML(html) || isNamedHTML(path))
    return fromHTML(html);
  else
    return error(Error::Kind::Damaged, path, reasonAgainst(*contents));
  if (!text)
    return error(text.error().kind, path, text.error().message);
  return text;
}

} // namespace tockwise
