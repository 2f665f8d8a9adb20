#include "richtext/content_loading.h"

#include "richtext/formats/picture_type.h"
#include "richtext/picture_reading.h"
#include "richtext/picture_scaling.h"
#include "richtext/text_formats.h"
#include "store/archive/file_wrapper.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace tockwise {
namespace {

/// Pictures are decoded no wider than this, and averaged down from there.
constexpr int kWidthForScaling = 2 * int(kWidestPicture);

QString loadingText(const char* text) {
  return QCoreApplication::translate("RichText", text);
}

QString tooLarge() {
  return loadingText("The picture is too large to be put into a text.");
}

QString unreadable() {
  return loadingText("The picture cannot be read.");
}

void appendAttachment(AttributedText& text, const TextAttachment& attachment) {
  TextAttributes attributes;
  attributes.attachment = attachment;
  text.append(QString(QChar(AttributedText::kAttachmentCharacter)), attributes);
}

void appendText(AttributedText& text, const AttributedText& more) {
  text.text += more.text;
  text.runs.insert(text.runs.end(), more.runs.begin(), more.runs.end());
  text.joinEqualRuns();
}

/// Reads content into what is loaded so far.
class Loader {
 public:
  explicit Loader(QSizeF frame) : m_frame(frame) {}

  void operator()(const QImage& image) {
    if (image.isNull())
      return refuse(unreadable());
    if (qint64(image.width()) * image.height() > kMostPicturePixels)
      return refuse(tooLarge());
    take(attachmentFor(image, m_frame));
  }

  void operator()(const QByteArray& contents) {
    const PictureHeader header = readPictureHeader(contents);
    if (header.isTooLarge)
      return refuse(tooLarge());
    const auto type = pictureTypeOf(contents);
    if (!header.size.isValid() || !type)
      return refuse(unreadable());
    takePicture({QStringLiteral("image.") + type->suffix, contents, {}}, unreadable());
  }

  void operator()(const AttributedText& text) {
    AttributedText scaled = text;
    scaleAttachments(scaled, m_frame);
    appendText(m_loaded.text, scaled);
  }

  void operator()(const std::shared_ptr<const QMimeData>& data) {
    if (const auto text = textFromMimeData(*data))
      (*this)(*text);
    else
      refuse(loadingText("What was to be inserted cannot be read."));
  }

  void operator()(const QStringList& paths) {
    for (const QString& path : paths)
      readFile(path);
  }

  LoadedContent take() { return std::move(m_loaded); }

 private:
  void refuse(const QString& why) { m_loaded.refused.push_back(why); }

  void take(const std::optional<TextAttachment>& attachment) {
    if (attachment)
      appendAttachment(m_loaded.text, *attachment);
    else
      refuse(unreadable());
  }

  /// A picture is decoded before it is taken, so that a damaged one is refused and not stored.
  void takePicture(const TextAttachment& whole, const QString& ifDamaged) {
    const QImage image = readPicture(whole.contents, kWidthForScaling);
    if (image.isNull())
      refuse(ifDamaged);
    else if (isTooWide(whole, m_frame))
      take(attachmentFor(image, m_frame));
    else
      appendAttachment(m_loaded.text, whole);
  }

  void readFile(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    const QString cannotRead = loadingText("“%1” cannot be read.").arg(name);
    // A pipe or a device would never end.
    if (!QFileInfo(path).isFile())
      return refuse(cannotRead);
    if (QFileInfo(path).size() > kMostPictureBytes)
      return refuse(loadingText("“%1” is too large to be put into a text.").arg(name));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
      return refuse(cannotRead);
    const QByteArray contents = file.read(kMostPictureBytes + 1);
    const PictureHeader header = readPictureHeader(contents);
    if (header.isTooLarge)
      return refuse(loadingText("“%1” is too large to be put into a text.").arg(name));
    if (header.size.isValid())
      return takePicture({sanitisedFileName(name), contents, {}}, cannotRead);
    const Result<AttributedText> text = readRichFile(path);
    if (!text)
      return refuse(loadingText("“%1” is no picture and no rich text that can be read.").arg(name));
    (*this)(*text);
  }

  QSizeF m_frame;
  LoadedContent m_loaded;
};

} // namespace

LoadedContent loadContent(const IncomingContent& content, QSizeF frame) {
  Loader loader(frame);
  std::visit(loader, content);
  return loader.take();
}

} // namespace tockwise
