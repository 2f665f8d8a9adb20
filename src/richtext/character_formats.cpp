#include "richtext/character_formats.h"

#include "richtext/format_properties.h"
#include "richtext/paragraph_formats.h"
#include "richtext/text_fonts.h"

#include <QBrush>
#include <QGuiApplication>
#include <QPalette>

#include <cmath>

namespace tockwise {
namespace {

// The stored form of underlines: a kind in the low byte, a pattern in the next.
constexpr qint64 kKindBits = 0xff;
constexpr qint64 kPatternBits = 0x0700;
constexpr qint64 kSingle = 1;
constexpr qint64 kDot = 0x100;
constexpr qint64 kDash = 0x200;
constexpr qint64 kDashDot = 0x300;
constexpr qint64 kDashDotDot = 0x400;

using Underline = QTextCharFormat::UnderlineStyle;

/// What can be seen of a run, and changed.
struct CharacterLook {
  QString family; // empty: the document's own
  int weight = QFont::Normal;
  bool italic = false;
  double size = 0; // points; 0: the document's own
  std::optional<QRgb> color;
  std::optional<QRgb> background;
  Underline underline = QTextCharFormat::NoUnderline;
  bool strikeOut = false;
  int script = 0; // 1 raised, -1 lowered
  std::optional<QString> link;

  bool hasFontOf(const CharacterLook& other) const {
    return family == other.family && weight == other.weight && italic == other.italic &&
           size == other.size;
  }
};

Underline underlineStyle(qint64 stored) {
  if ((stored & kKindBits) == 0)
    return QTextCharFormat::NoUnderline;
  switch (stored & kPatternBits) {
  case kDot:
    return QTextCharFormat::DotLine;
  case kDash:
    return QTextCharFormat::DashUnderline;
  case kDashDot:
    return QTextCharFormat::DashDotLine;
  case kDashDotDot:
    return QTextCharFormat::DashDotDotLine;
  default:
    return QTextCharFormat::SingleUnderline; // Qt has neither thick nor double ones
  }
}

qint64 storedUnderline(Underline style) {
  switch (style) {
  case QTextCharFormat::NoUnderline:
    return 0;
  case QTextCharFormat::DotLine:
    return kSingle | kDot;
  case QTextCharFormat::DashUnderline:
    return kSingle | kDash;
  case QTextCharFormat::DashDotLine:
    return kSingle | kDashDot;
  case QTextCharFormat::DashDotDotLine:
    return kSingle | kDashDotDot;
  default:
    return kSingle;
  }
}

/// A link shows underlined unless its text says otherwise: isLink is whether it is one now.
CharacterLook lookOf(const TextAttributes& attributes, bool isLink) {
  CharacterLook look;
  if (attributes.font) {
    const QFont font = fontFor(attributes.font->name, attributes.font->size);
    look.family = font.families().value(0);
    look.weight = font.weight();
    look.italic = font.italic();
    look.size = font.pointSizeF();
  }
  if (attributes.color && !attributes.color->followsTheme)
    look.color = attributes.color->argb;
  if (attributes.background && !attributes.background->followsTheme)
    look.background = attributes.background->argb;
  look.underline = underlineStyle(attributes.underline.value_or(isLink ? kSingle : 0));
  look.strikeOut = (attributes.strikethrough.value_or(0) & kKindBits) != 0;
  const qint64 script = attributes.superscript.value_or(0);
  look.script = script > 0 ? 1 : script < 0 ? -1 : 0;
  look.link = attributes.link;
  return look;
}

std::optional<QRgb> colorOf(const QBrush& brush) {
  if (brush.style() == Qt::NoBrush)
    return std::nullopt;
  return brush.color().rgba();
}

std::optional<QString> linkOf(const QTextCharFormat& format) {
  const QString address = format.anchorHref();
  if (format.hasProperty(QTextFormat::IsAnchor) ? format.isAnchor() : !address.isEmpty())
    return address;
  return std::nullopt;
}

double sizeOf(const QTextCharFormat& format) {
  if (format.hasProperty(QTextFormat::FontPixelSize) &&
      !format.hasProperty(QTextFormat::FontPointSize))
    return format.doubleProperty(QTextFormat::FontPixelSize) * kPointsPerPixel;
  return format.fontPointSize();
}

Underline underlineOf(const QTextCharFormat& format) {
  return format.fontUnderline() && format.underlineStyle() == QTextCharFormat::NoUnderline
             ? QTextCharFormat::SingleUnderline
             : format.underlineStyle();
}

CharacterLook lookOf(const QTextCharFormat& format) {
  CharacterLook look;
  look.family = format.fontFamilies().toStringList().value(0);
  look.weight = format.fontWeight();
  look.italic = format.fontItalic();
  look.size = sizeOf(format);
  look.color = colorOf(format.foreground());
  if (look.color && format.hasProperty(LinkColorProperty) &&
      *look.color == QRgb(format.intProperty(LinkColorProperty)))
    look.color.reset();
  look.background = colorOf(format.background());
  look.underline = underlineOf(format);
  look.strikeOut = format.fontStrikeOut();
  const auto vertical = format.verticalAlignment();
  look.script = vertical == QTextCharFormat::AlignSuperScript ? 1
                : vertical == QTextCharFormat::AlignSubScript ? -1
                                                              : 0;
  look.link = linkOf(format);
  return look;
}

void showLinkColor(QTextCharFormat& format) {
  const QColor color = QGuiApplication::palette().color(QPalette::Link);
  format.setForeground(color);
  format.setProperty(LinkColorProperty, int(color.rgba()));
}

void show(const CharacterLook& look, QTextCharFormat& format) {
  if (!look.family.isEmpty()) {
    format.setFontFamilies({look.family});
    format.setFontWeight(look.weight);
    format.setFontItalic(look.italic);
    format.setFontPointSize(look.size);
  }
  if (look.link) {
    format.setAnchor(true);
    format.setAnchorHref(*look.link);
    if (!look.color)
      showLinkColor(format);
  }
  if (look.color)
    format.setForeground(QColor::fromRgba(*look.color));
  if (look.background)
    format.setBackground(QColor::fromRgba(*look.background));
  if (look.underline != QTextCharFormat::NoUnderline)
    format.setUnderlineStyle(look.underline);
  if (look.strikeOut)
    format.setFontStrikeOut(true);
  if (look.script != 0)
    format.setVerticalAlignment(look.script > 0 ? QTextCharFormat::AlignSuperScript
                                                : QTextCharFormat::AlignSubScript);
}

/// The font that now stands for what was original, shown as before.
TextFont changedFont(const std::optional<TextFont>& original, const CharacterLook& before,
                     const CharacterLook& now, double defaultSize) {
  TextFont font;
  font.size = now.size > 0 ? now.size : defaultSize;
  const QString name = original ? original->name : kDefaultFontName.toString();
  if (now.family == before.family && now.weight == before.weight && now.italic == before.italic) {
    font.name = name;
    if (now.size == before.size && original)
      font.size = original->size;
    return font;
  }
  const bool keepsFamily = now.family == before.family || now.family.isEmpty();
  font.name =
      postScriptName({keepsFamily ? fontTraits(name).family : now.family, now.weight, now.italic});
  return font;
}

std::optional<TextColor> changedColor(const std::optional<QRgb>& color) {
  if (!color)
    return std::nullopt;
  return TextColor{*color, false, {}};
}

void takeOverLines(TextAttributes& attributes, const CharacterLook& before,
                   const CharacterLook& now) {
  if (now.underline != before.underline) {
    attributes.underline.reset();
    const bool isShownUnasked = now.link.has_value();
    if (now.underline != QTextCharFormat::NoUnderline || isShownUnasked)
      attributes.underline = storedUnderline(now.underline);
  }
  if (now.strikeOut != before.strikeOut) {
    attributes.strikethrough.reset();
    if (now.strikeOut)
      attributes.strikethrough = kSingle;
  }
  if (now.script != before.script) {
    attributes.superscript.reset();
    if (now.script != 0)
      attributes.superscript = now.script;
  }
}

size_t hashOf(const std::optional<TextColor>& color, size_t seed) {
  return color ? qHashMulti(seed, color->argb, color->original.uid()) : seed;
}

size_t hashOf(const TextAttributes& attributes) {
  size_t hash = 1;
  if (attributes.font)
    hash = qHashMulti(hash, attributes.font->name, attributes.font->size,
                      attributes.font->original.uid());
  hash = hashOf(attributes.background, hashOf(attributes.color, hash));
  hash = qHashMulti(hash, attributes.underline.value_or(-1), attributes.strikethrough.value_or(-1),
                    attributes.superscript.value_or(0), attributes.link.value_or(QString()));
  if (attributes.paragraph)
    hash = qHashMulti(hash, attributes.paragraph->headIndent, attributes.paragraph->original.uid());
  if (attributes.attachment)
    hash = qHashMulti(hash, attributes.attachment->name, attributes.attachment->contents.size(),
                      attributes.attachment->original.uid());
  for (const OtherAttribute& other : attributes.others)
    hash = qHashMulti(hash, other.name, other.value.uid());
  return hash;
}

} // namespace

QTextCharFormat characterFormat(const TextAttributes& attributes) {
  QTextCharFormat format;
  show(lookOf(attributes, attributes.link.has_value()), format);
  setOrigin(format, attributes);
  return format;
}

void setOrigin(QTextCharFormat& format, const TextAttributes& attributes) {
  if (attributes == TextAttributes()) {
    format.clearProperty(RunOriginProperty);
    format.clearProperty(RunHashProperty);
    return;
  }
  const RunOrigin origin{std::make_shared<const TextAttributes>(attributes)};
  format.setProperty(RunOriginProperty, QVariant::fromValue(origin));
  format.setProperty(RunHashProperty, int(hashOf(attributes)));
}

const TextAttributes* originOf(const QTextCharFormat& format) {
  const QVariant property = format.property(RunOriginProperty);
  // The format keeps the attributes alive.
  return property.isValid() ? property.value<RunOrigin>().attributes.get() : nullptr;
}

TextAttributes attributesOf(const QTextCharFormat& format, double defaultSize) {
  const TextAttributes* origin = originOf(format);
  TextAttributes attributes = origin ? *origin : TextAttributes();
  const CharacterLook now = lookOf(format);
  const CharacterLook before = lookOf(attributes, now.link.has_value());
  if (!now.hasFontOf(before))
    attributes.font = changedFont(attributes.font, before, now, defaultSize);
  if (now.color != before.color)
    attributes.color = changedColor(now.color);
  if (now.background != before.background)
    attributes.background = changedColor(now.background);
  takeOverLines(attributes, before, now);
  if (now.link != before.link) {
    attributes.link = now.link && !now.link->isEmpty() ? now.link : std::nullopt;
    attributes.linkOriginal = {};
  }
  return attributes;
}

QTextCharFormat linkFormat(const QString& address) {
  QTextCharFormat format;
  format.setAnchor(!address.isEmpty());
  format.setAnchorHref(address);
  format.setUnderlineStyle(address.isEmpty() ? QTextCharFormat::NoUnderline
                                             : QTextCharFormat::SingleUnderline);
  if (address.isEmpty())
    format.setForeground(Qt::NoBrush);
  else
    showLinkColor(format);
  return format;
}

} // namespace tockwise
