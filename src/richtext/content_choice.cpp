#include "richtext/content_choice.h"

#include "richtext/formats/mime_types.h"

#include <QImage>
#include <QRegularExpression>
#include <QUrl>
#include <QVariant>

#include <algorithm>

Q_DECLARE_METATYPE(tockwise::AttributedText)

namespace tockwise {
namespace {

constexpr const char* kTextProperty = "tockwise.text";

/// Encoded pictures, which need not be decoded on the main thread.
const QStringList& pictureFormats() {
  static const QStringList formats{QStringLiteral("image/png"),  QStringLiteral("image/jpeg"),
                                   QStringLiteral("image/webp"), QStringLiteral("image/gif"),
                                   QStringLiteral("image/tiff"), QStringLiteral("image/bmp")};
  return formats;
}

bool isRichFormat(const QString& format) {
  static constexpr const char16_t* kTypes[] = {
      kArchiveType, kRtfdType, kTextRtfdType, kRtfType, kTextRtfType, kTextRichtextType, kHtmlType};
  return std::any_of(std::begin(kTypes), std::end(kTypes),
                     [&](const char16_t* type) { return format == QStringView(type); });
}

/// Whether a page has words: browsers put one beside a copied picture that only names its address.
bool hasWords(const QString& html) {
  static const QRegularExpression tags(
      QStringLiteral("<head\\b.*?</head>|<style\\b.*?</style>|<[^>]*>"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
  QString bare = html;
  bare.remove(tags);
  return !bare.trimmed().isEmpty();
}

bool hasPicture(const QMimeData& data) {
  return data.hasImage() || std::any_of(pictureFormats().begin(), pictureFormats().end(),
                                        [&](const QString& one) { return data.hasFormat(one); });
}

std::shared_ptr<const QMimeData> richCopy(const QMimeData& data) {
  auto copy = std::make_shared<QMimeData>();
  bool isRich = false;
  const QStringList formats = data.formats();
  for (const QString& format : formats) {
    if (!isRichFormat(format))
      continue;
    if (format == QStringView(kHtmlType) && hasPicture(data) && !hasWords(data.html()))
      continue;
    copy->setData(format, data.data(format));
    isRich = true;
  }
  if (!isRich)
    return nullptr;
  if (data.hasText())
    copy->setText(data.text());
  return copy;
}

std::optional<IncomingContent> pictureOf(const QMimeData& data) {
  for (const QString& format : pictureFormats()) {
    const QByteArray contents = data.hasFormat(format) ? data.data(format) : QByteArray();
    if (!contents.isEmpty())
      return contents;
  }
  if (data.hasImage()) {
    const auto image = qvariant_cast<QImage>(data.imageData());
    if (!image.isNull())
      return image;
  }
  return std::nullopt;
}

QStringList filesOf(const QMimeData& data) {
  QStringList paths;
  const QList<QUrl> addresses = data.urls();
  for (const QUrl& address : addresses) {
    if (address.isLocalFile())
      paths.push_back(address.toLocalFile());
  }
  return paths;
}

} // namespace

bool hasContent(const QMimeData& data) {
  const QStringList formats = data.formats();
  return data.hasText() || data.hasUrls() || hasPicture(data) ||
         std::any_of(formats.begin(), formats.end(), isRichFormat);
}

std::optional<IncomingContent> contentOf(const QMimeData& data) {
  const QVariant own = data.property(kTextProperty);
  if (own.isValid())
    return own.value<AttributedText>();
  // Files come with their names as text, and from some programs as HTML.
  const QStringList files = filesOf(data);
  if (!files.isEmpty())
    return files;
  if (auto rich = richCopy(data))
    return rich;
  return pictureOf(data);
}

void rememberText(QMimeData& data, const AttributedText& text) {
  data.setProperty(kTextProperty, QVariant::fromValue(text));
}

} // namespace tockwise
