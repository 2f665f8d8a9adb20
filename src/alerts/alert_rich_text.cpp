#include "alerts/alert_rich_text.h"

#include "alerts/alert_look.h"
#include "colors/color_contrast.h"
#include "richtext/character_formats.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QUrl>

#include <functional>
#include <vector>

namespace tockwise {
namespace {

constexpr double kLeastContrast = 4.5;

/// A stretch of text whose format is to be another.
struct Change {
  int start;
  int length;
  QTextCharFormat format;
};

/// Gives every stretch of text the format that change makes of it; false leaves it.
void changeFormats(QTextDocument& document,
                   const std::function<bool(QTextCharFormat& format)>& change) {
  std::vector<Change> changes;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto at = block.begin(); !at.atEnd(); ++at) {
      const QTextFragment fragment = at.fragment();
      QTextCharFormat format = fragment.charFormat();
      if (change(format))
        changes.push_back({fragment.position(), fragment.length(), format});
    }
  }
  QTextCursor cursor(&document);
  cursor.beginEditBlock();
  for (const Change& one : changes) {
    cursor.setPosition(one.start);
    cursor.setPosition(one.start + one.length, QTextCursor::KeepAnchor);
    cursor.setCharFormat(one.format);
  }
  cursor.endEditBlock();
}

/// color, moved towards ink until it can be told from the ground.
QColor readable(QColor color, const QColor& ground, const QColor& ink) {
  for (int step = 0; step < 6 && contrast(color, ground) < kLeastContrast; ++step)
    color = mixed(color, ink, 0.6);
  return contrast(color, ground) < kLeastContrast ? ink : color;
}

/// The colour that the text itself asks for, however it is shown now.
std::optional<QColor> colorAskedFor(const QTextCharFormat& format) {
  const TextAttributes* origin = originOf(format);
  if (!origin || !origin->color || origin->color->followsTheme)
    return std::nullopt;
  return QColor::fromRgb(origin->color->argb);
}

/// What is seen behind text: a background that lets the window through is mixed with it.
QColor groundOf(const QTextCharFormat& format, const QColor& window) {
  if (format.background().style() == Qt::NoBrush)
    return window;
  const QColor color = format.background().color();
  return mixed(color, window, color.alphaF());
}

} // namespace

bool isOpenable(const QUrl& address) {
  static const QStringList schemes{QStringLiteral("http"), QStringLiteral("https"),
                                   QStringLiteral("mailto")};
  return address.isValid() && schemes.contains(address.scheme());
}

void keepOpenableLinks(QTextDocument& document) {
  changeFormats(document, [](QTextCharFormat& format) {
    if (!format.isAnchor() || isOpenable(QUrl(format.anchorHref(), QUrl::StrictMode)))
      return false;
    format.setAnchor(false);
    format.clearProperty(QTextFormat::AnchorHref);
    const TextAttributes* origin = originOf(format);
    if (!origin || !origin->underline)
      format.setFontUnderline(false);
    if (!colorAskedFor(format))
      format.clearForeground();
    return true;
  });
}

void recolour(QTextDocument& document, const QPalette& palette) {
  const QColor window = palette.color(QPalette::Base);
  changeFormats(document, [&](QTextCharFormat& format) {
    const std::optional<QColor> asked = colorAskedFor(format);
    const bool hasGround = format.background().style() != Qt::NoBrush;
    if (!asked && !hasGround && !format.isAnchor()) {
      const bool wasColoured = format.hasProperty(QTextFormat::ForegroundBrush);
      format.clearForeground();
      return wasColoured;
    }
    const QColor ground = groundOf(format, window);
    const QColor text = palette.color(QPalette::Text);
    const QColor ink = contrast(text, ground) < kLeastContrast ? textOn(ground) : text;
    const QColor plain = format.isAnchor() ? palette.color(QPalette::Link) : ink;
    const QColor shown = readable(asked.value_or(plain), ground, ink);
    if (format.foreground().style() != Qt::NoBrush && format.foreground().color() == shown)
      return false;
    format.setForeground(shown);
    return true;
  });
}

void fitPictures(QTextDocument& document, QSize most) {
  changeFormats(document, [&](QTextCharFormat& format) {
    if (!format.isImageFormat())
      return false;
    QTextImageFormat picture = format.toImageFormat();
    const QSizeF size(picture.width(), picture.height());
    if (size.isEmpty() || (size.width() <= most.width() && size.height() <= most.height()))
      return false;
    const QSizeF fitted = size.scaled(most, Qt::KeepAspectRatio);
    picture.setWidth(fitted.width());
    picture.setHeight(fitted.height());
    format = picture;
    return true;
  });
}

} // namespace tockwise
