#include "richtext/formats/html_style_text.h"

#include "richtext/formats/format_fonts.h"

#include <QStringList>

#include <cmath>

namespace tockwise {
namespace {

QString number(double value) {
  return std::isfinite(value) ? QString::number(value, 'g', 7) : QStringLiteral("0");
}

QString pointsText(double value) {
  return value == 0 ? QStringLiteral("0") : number(value) + QStringLiteral("pt");
}

// A font's name without what ends a string, a style or an attribute.
QString quotedFamily(const QString& name) {
  QString safe;
  for (const QChar character : name) {
    if (character.isLetterOrNumber() || QStringView(u" -._+").contains(character))
      safe += character;
  }
  return safe.isEmpty() ? QString() : u'\'' + safe + u'\'';
}

QString fontText(const TextFont& font) {
  const QString family = visibleFamily(font.name);
  QStringList families{quotedFamily(font.name)};
  if (family != font.name)
    families += quotedFamily(family);
  if (font.name.startsWith(u'.')) // the system's own
    families += QStringLiteral("system-ui");
  families.removeAll(QString());
  QString text;
  if (!families.isEmpty())
    text += QStringLiteral("font-family:%1;").arg(families.join(u','));
  text += QStringLiteral("font-size:%1;").arg(pointsText(soundFontSize(font.size)));
  text += QStringLiteral("font-weight:%1;").arg(weightOfFont(font.name));
  text += isItalicFont(font.name) ? QStringLiteral("font-style:italic;")
                                  : QStringLiteral("font-style:normal;");
  return text;
}

QString colorText(quint32 argb) {
  const quint32 alpha = argb >> 24;
  if (alpha == 0xff)
    return QStringLiteral("#%1").arg(argb & 0xffffff, 6, 16, QChar(u'0'));
  return QStringLiteral("rgba(%1,%2,%3,%4)")
      .arg(argb >> 16 & 0xff)
      .arg(argb >> 8 & 0xff)
      .arg(argb & 0xff)
      .arg(QString::number(alpha / 255.0, 'f', 4));
}

QString alignmentText(TextAlignment alignment) {
  switch (alignment) {
  case TextAlignment::Left:
    return QStringLiteral("text-align:left;");
  case TextAlignment::Right:
    return QStringLiteral("text-align:right;");
  case TextAlignment::Center:
    return QStringLiteral("text-align:center;");
  case TextAlignment::Justified:
    return QStringLiteral("text-align:justify;");
  case TextAlignment::Natural:
    return QStringLiteral("text-align:start;");
  }
  return {};
}

QString lineHeightText(const ParagraphStyle& style) {
  if (style.lineHeightMultiple > 0)
    return QStringLiteral("line-height:%1;").arg(number(style.lineHeightMultiple));
  if (style.minLineHeight <= 0)
    return {};
  const bool exact = style.minLineHeight == style.maxLineHeight;
  return QStringLiteral("line-height:%1;mso-line-height-rule:%2;")
      .arg(pointsText(style.minLineHeight),
           exact ? QStringLiteral("exactly") : QStringLiteral("at-least"));
}

// As office programs write tab stops: a style has no property for them.
QString tabStopsText(const std::vector<TextTab>& stops) {
  QStringList texts;
  for (const TextTab& stop : stops) {
    QString text = pointsText(stop.location);
    if (stop.alignment == qint64(TextAlignment::Right))
      text.prepend(QStringLiteral("right "));
    else if (stop.alignment == qint64(TextAlignment::Center))
      text.prepend(QStringLiteral("center "));
    texts += text;
  }
  return texts.isEmpty() ? QString() : QStringLiteral("tab-stops:%1;").arg(texts.join(u' '));
}

} // namespace

QString characterStyleText(const TextAttributes& attributes) {
  QString text;
  if (attributes.font)
    text += fontText(*attributes.font);
  if (attributes.color && !attributes.color->followsTheme)
    text += QStringLiteral("color:%1;").arg(colorText(attributes.color->argb));
  if (attributes.background && !attributes.background->followsTheme)
    text += QStringLiteral("background-color:%1;").arg(colorText(attributes.background->argb));
  return text;
}

QString paragraphStyleText(const ParagraphStyle* style) {
  if (!style)
    return QStringLiteral("margin:0;");
  // A tail indent from the left margin would need the width of the page.
  const double right = style->tailIndent < 0 ? -style->tailIndent : 0;
  QString text = QStringLiteral("margin:%1 %2 %3 %4;")
                     .arg(pointsText(style->paragraphSpacingBefore), pointsText(right),
                          pointsText(style->paragraphSpacing), pointsText(style->headIndent));
  const double first = style->firstLineHeadIndent - style->headIndent;
  if (first != 0)
    text += QStringLiteral("text-indent:%1;").arg(pointsText(first));
  if (style->alignment)
    text += alignmentText(*style->alignment);
  text += lineHeightText(*style);
  if (style->tabStops)
    text += tabStopsText(*style->tabStops);
  if (style->defaultTabInterval > 0)
    text += QStringLiteral("tab-size:%1;").arg(pointsText(style->defaultTabInterval));
  return text;
}

QString lineStyleText(qint64 kind) {
  constexpr qint64 kDouble = 9;
  constexpr qint64 kThick = 2;
  QString text;
  if ((kind & 0xff) == kDouble)
    text += QStringLiteral("text-decoration-style:double;");
  else if ((kind & 0x700) == 0x100)
    text += QStringLiteral("text-decoration-style:dotted;");
  else if ((kind & 0x700) != 0)
    text += QStringLiteral("text-decoration-style:dashed;");
  if ((kind & 0xff) == kThick)
    text += QStringLiteral("text-decoration-thickness:2px;");
  return text.isEmpty() ? text : QStringLiteral(" style=\"%1\"").arg(text);
}

} // namespace tockwise
