// A text on the clipboard, and what another program put there as a text.
#include "richtext/formats/html_charset.h"
#include "richtext/formats/mime_types.h"
#include "richtext/formats/paragraphs.h"
#include "richtext/formats/picture_type.h"
#include "richtext/picture_scaling.h"
#include "richtext/text_formats.h"
#include "store/archive/text_archive.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QUrl>

#include <algorithm>

namespace tockwise {
namespace {

constexpr qsizetype kMostTextBytes = 2 * kMostPictureBytes; // of one form that is read

QString string(const char16_t* text) {
  return QString::fromUtf16(text);
}

// Makes each form when it is asked for, once.
class TextMimeData final : public QMimeData {
 public:
  explicit TextMimeData(const AttributedText& text) : m_text(text) {}

  QStringList formats() const override {
    return {string(kArchiveType), string(kRtfdType), string(kTextRtfdType), string(kRtfType),
            string(kTextRtfType), string(kHtmlType), string(kPlainType)};
  }
  bool hasFormat(const QString& type) const override { return formats().contains(type); }

 protected:
  QVariant retrieveData(const QString& type, QMetaType) const override {
    if (!hasFormat(type))
      return {};
    auto made = m_made.find(type);
    if (made == m_made.end())
      made = m_made.insert(type, make(type));
    return *made;
  }

 private:
  QByteArray make(const QString& type) const {
    if (type == kArchiveType)
      return archiveText(m_text);
    if (type == kRtfdType || type == kTextRtfdType)
      return toRTFD(m_text);
    if (type == kRtfType || type == kTextRtfType)
      return toRTF(m_text);
    if (type == kHtmlType)
      return toHTML(m_text).toUtf8();
    return toPlainText(m_text).toUtf8();
  }

  AttributedText m_text;
  mutable QHash<QString, QByteArray> m_made;
};

AttributedText pictureText(const QString& name, const QByteArray& contents) {
  AttributedText text;
  TextAttributes attributes;
  attributes.attachment = TextAttachment{name, contents, {}};
  text.append(QString(QChar(AttributedText::kAttachmentCharacter)), attributes);
  return text;
}

QByteArray dataOf(const QMimeData& mimeData, const char16_t* type) {
  if (!mimeData.hasFormat(string(type)))
    return {};
  const QByteArray data = mimeData.data(string(type));
  return data.size() > kMostTextBytes ? QByteArray() : data;
}

std::optional<AttributedText> archiveIn(const QMimeData& mimeData) {
  const QByteArray data = dataOf(mimeData, kArchiveType);
  if (data.isEmpty())
    return std::nullopt;
  auto text = unarchiveTextStorage(data);
  return text ? std::optional(std::move(text.value())) : std::nullopt;
}

using Read = Result<AttributedText> (*)(const QByteArray& bytes);

std::optional<AttributedText> firstOf(const QMimeData& mimeData,
                                      std::initializer_list<const char16_t*> types, Read read) {
  for (const char16_t* type : types) {
    const QByteArray data = dataOf(mimeData, type);
    if (data.isEmpty())
      continue;
    if (auto text = read(data); text && !text->isEmpty())
      return std::move(text.value());
  }
  return std::nullopt;
}

// Bytes as they are offered where there are any: the picture that Qt would make of them has lost
// what a JPEG says of itself, and is larger.
std::optional<AttributedText> pictureIn(const QMimeData& mimeData) {
  const QStringList formats = mimeData.formats();
  for (const QString& format : formats) {
    if (!format.startsWith(u"image/"))
      continue;
    const QByteArray data = mimeData.data(format);
    if (const auto picture = portablePicture(data, Gif::Keep))
      return pictureText(QStringLiteral("image.") + picture->type.suffix, picture->bytes);
  }
  if (!mimeData.hasImage())
    return std::nullopt;
  const QImage image = qvariant_cast<QImage>(mimeData.imageData());
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  if (image.isNull() || !image.save(&buffer, "PNG"))
    return std::nullopt;
  return pictureText(QStringLiteral("image.png"), png);
}

// The files that are pictures, in their order.
std::optional<AttributedText> pictureFilesIn(const QMimeData& mimeData) {
  AttributedText text;
  const QList<QUrl> urls = mimeData.urls();
  for (const QUrl& url : urls) {
    QFile file(url.toLocalFile());
    if (!url.isLocalFile() || !QFileInfo(file).isFile() || file.size() > kMostPictureBytes ||
        !file.open(QIODevice::ReadOnly))
      continue;
    const QByteArray contents = file.readAll();
    if (!pictureTypeOf(contents))
      continue;
    const AttributedText picture = pictureText(url.fileName(), contents);
    text.append(picture.text, picture.runs.front().attributes);
  }
  return text.isEmpty() ? std::nullopt : std::optional(std::move(text));
}

bool hasWords(const AttributedText& text) {
  return std::any_of(text.text.begin(), text.text.end(), [](QChar character) {
    return !character.isSpace() && character != AttributedText::kAttachmentCharacter;
  });
}

// A browser's copied picture comes with HTML that only names its address, a copied passage of an
// office program with a picture of the passage.
std::optional<AttributedText> htmlOrPictureIn(const QMimeData& mimeData) {
  const QByteArray data = dataOf(mimeData, kHtmlType);
  std::optional<AttributedText> text;
  if (!data.isEmpty())
    text = fromHTML(decodedHTML(data));
  if (text && hasWords(*text))
    return text;
  if (auto picture = pictureIn(mimeData))
    return picture;
  return text && !text->isEmpty() ? text : std::nullopt;
}

} // namespace

std::unique_ptr<QMimeData> mimeDataOf(const AttributedText& text) {
  return std::make_unique<TextMimeData>(text);
}

std::optional<AttributedText> textFromMimeData(const QMimeData& mimeData) {
  if (auto text = archiveIn(mimeData))
    return text;
  if (auto text = firstOf(mimeData, {kRtfdType, kTextRtfdType}, fromRTFD))
    return text;
  if (auto text = firstOf(mimeData, {kTextRtfType, kRtfType, kTextRichtextType}, fromRTF))
    return text;
  if (auto text = htmlOrPictureIn(mimeData))
    return text;
  if (auto text = pictureFilesIn(mimeData))
    return text;
  if (!mimeData.hasText() || mimeData.text().isEmpty())
    return std::nullopt;
  QString plain = mimeData.text();
  plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
  AttributedText text;
  text.append(cleanText(plain), {});
  return text;
}

} // namespace tockwise
