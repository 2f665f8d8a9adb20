#include "richtext/content_choice.h"

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
  static const QStringList formats{
      QStringLiteral("text/html"), QStringLiteral("text/rtf"), QStringLiteral("application/rtf"),
      QStringLiteral("text/richtext"), QStringLiteral("application/vnd.apple.rtfd")};
  return formats.contains(format) || format.startsWith(QLatin1String("application/x-tockwise"));
}

/// Whether a page is more than the address of a picture, as browsers put beside a copied one.
bool saysSomething(const QString& html) {
  static const QRegularExpression tags(
      QStringLiteral("<head\\b.*?</head>|<style\\b.*?</style>|<[^>]*>"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
  QString bare = html;
  bare.remove(tags);
  return !bare.trimmed().isEmpty() || html.contains(QLatin1String("src=\"data:"));
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
    if (format == QLatin1String("text/html") && hasPicture(data) && !saysSomething(data.html()))
      continue;
    if (format == QLatin1String("text/html"))
      copy->setHtml(data.html()); // in whatever encoding it came
    else
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
