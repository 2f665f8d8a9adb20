#include "richtext/paragraph_formats.h"

#include "richtext/format_properties.h"

#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

/// Finer differences than this are no change (pixels).
constexpr double kNoLength = 1e-6;
/// Changed lengths are kept to so many parts of a point.
constexpr double kGrain = 1000.0;

using Tab = QTextOption::Tab;

/// What can be seen of a paragraph's style, and changed. Lengths in pixels.
struct ParagraphLook {
  TextAlignment alignment = TextAlignment::Natural;
  double head = 0;
  double firstLine = 0; // beyond head
  double tail = 0;      // from the right margin
  double before = 0;
  double after = 0;
  double lineHeight = 0; // in the unit of its type
  int lineHeightType = QTextBlockFormat::SingleHeight;
  QList<Tab> tabs;
  Qt::LayoutDirection direction = Qt::LayoutDirectionAuto;
  QStringList lists;
};

double pixels(double points) {
  return std::isfinite(points) ? points * kPixelsPerPoint : 0;
}

double inPoints(double pixels) {
  return std::round(pixels / kPixelsPerPoint * kGrain) / kGrain;
}

bool same(double one, double other) {
  return std::abs(one - other) < kNoLength;
}

bool same(const Tab& one, const Tab& other) {
  return same(one.position, other.position) && one.type == other.type;
}

bool same(const QList<Tab>& one, const QList<Tab>& other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](const Tab& left, const Tab& right) { return same(left, right); });
}

bool sameLineHeight(const ParagraphLook& one, const ParagraphLook& other) {
  return one.lineHeightType == other.lineHeightType && same(one.lineHeight, other.lineHeight);
}

bool same(const ParagraphLook& one, const ParagraphLook& other) {
  return one.alignment == other.alignment && same(one.head, other.head) &&
         same(one.firstLine, other.firstLine) && same(one.tail, other.tail) &&
         same(one.before, other.before) && same(one.after, other.after) &&
         sameLineHeight(one, other) && same(one.tabs, other.tabs) &&
         one.direction == other.direction && one.lists == other.lists;
}

/// Archives measure tab stops from the margin, Qt from where the first line starts (pixels).
Tab tabOf(const TextTab& tab, double lineStart) {
  QTextOption::TabType type = QTextOption::LeftTab;
  if (tab.alignment == qint64(TextAlignment::Right))
    type = QTextOption::RightTab;
  else if (tab.alignment == qint64(TextAlignment::Center))
    type = QTextOption::CenterTab;
  return {pixels(tab.location) - lineStart, type};
}

TextTab tabOf(const Tab& tab, double lineStart) {
  TextAlignment alignment = TextAlignment::Left;
  if (tab.type == QTextOption::RightTab)
    alignment = TextAlignment::Right;
  else if (tab.type == QTextOption::CenterTab)
    alignment = TextAlignment::Center;
  return {inPoints(tab.position + lineStart), qint64(alignment), {}};
}

/// Qt has one kind of line height at a time: the most telling of those that are stated.
void lookAtLineHeight(const ParagraphStyle& style, ParagraphLook& look) {
  if (style.minLineHeight > 0 && style.minLineHeight == style.maxLineHeight) {
    look.lineHeightType = QTextBlockFormat::FixedHeight;
    look.lineHeight = pixels(style.minLineHeight);
  } else if (style.lineHeightMultiple > 0) {
    look.lineHeightType = QTextBlockFormat::ProportionalHeight;
    look.lineHeight = style.lineHeightMultiple * 100;
  } else if (style.minLineHeight > 0) {
    look.lineHeightType = QTextBlockFormat::MinimumHeight;
    look.lineHeight = pixels(style.minLineHeight);
  } else if (style.lineSpacing > 0) {
    look.lineHeightType = QTextBlockFormat::LineDistanceHeight;
    look.lineHeight = pixels(style.lineSpacing);
  }
}

void takeOverLineHeight(ParagraphStyle& style, const ParagraphLook& now) {
  style.lineSpacing = 0;
  style.lineHeightMultiple = 0;
  style.minLineHeight = 0;
  style.maxLineHeight = 0;
  switch (now.lineHeightType) {
  case QTextBlockFormat::ProportionalHeight:
    style.lineHeightMultiple = std::round(now.lineHeight * kGrain) / kGrain / 100;
    break;
  case QTextBlockFormat::FixedHeight:
    style.minLineHeight = inPoints(now.lineHeight);
    style.maxLineHeight = style.minLineHeight;
    break;
  case QTextBlockFormat::MinimumHeight:
    style.minLineHeight = inPoints(now.lineHeight);
    break;
  case QTextBlockFormat::LineDistanceHeight:
    style.lineSpacing = inPoints(now.lineHeight);
    break;
  default:
    break;
  }
}

ParagraphLook lookOf(const std::optional<ParagraphStyle>& style) {
  ParagraphLook look;
  if (!style)
    return look;
  look.alignment = style->alignment.value_or(TextAlignment::Left);
  look.head = pixels(style->headIndent);
  look.firstLine = pixels(style->firstLineHeadIndent) - look.head;
  if (style->tailIndent < 0) // from the left margin it would hang on the width of the window
    look.tail = pixels(-style->tailIndent);
  look.before = pixels(style->paragraphSpacingBefore);
  look.after = pixels(style->paragraphSpacing);
  lookAtLineHeight(*style, look);
  if (style->tabStops) {
    for (const TextTab& tab : *style->tabStops)
      look.tabs += tabOf(tab, look.head + look.firstLine);
  }
  if (style->writingDirection == 1)
    look.direction = Qt::LeftToRight;
  else if (style->writingDirection == 2)
    look.direction = Qt::RightToLeft;
  look.lists = QStringList(style->lists.begin(), style->lists.end());
  return look;
}

TextAlignment alignmentOf(const QTextBlockFormat& format) {
  const Qt::Alignment alignment = format.alignment();
  if (alignment & Qt::AlignHCenter)
    return TextAlignment::Center;
  if (alignment & Qt::AlignJustify)
    return TextAlignment::Justified;
  if (alignment & Qt::AlignRight)
    return TextAlignment::Right;
  return alignment & Qt::AlignAbsolute ? TextAlignment::Left : TextAlignment::Natural;
}

ParagraphLook lookOf(const QTextBlockFormat& format, double indentWidth) {
  ParagraphLook look;
  look.alignment = alignmentOf(format);
  look.head = format.leftMargin() + format.indent() * indentWidth;
  look.firstLine = format.textIndent();
  look.tail = format.rightMargin();
  look.before = format.topMargin();
  look.after = format.bottomMargin();
  look.lineHeightType = format.lineHeightType();
  look.lineHeight = look.lineHeightType == QTextBlockFormat::SingleHeight ? 0 : format.lineHeight();
  look.tabs = format.tabPositions();
  look.direction = format.layoutDirection();
  look.lists = listMarkers(format);
  return look;
}

Qt::Alignment qtAlignment(TextAlignment alignment) {
  switch (alignment) {
  case TextAlignment::Left:
    return Qt::AlignLeft | Qt::AlignAbsolute;
  case TextAlignment::Right:
    return Qt::AlignRight | Qt::AlignAbsolute;
  case TextAlignment::Center:
    return Qt::AlignHCenter;
  case TextAlignment::Justified:
    return Qt::AlignJustify;
  case TextAlignment::Natural:
    break;
  }
  return Qt::AlignLeft;
}

void show(const ParagraphLook& look, QTextBlockFormat& format) {
  const auto put = [&](double length, void (QTextBlockFormat::*set)(qreal)) {
    if (length != 0)
      (format.*set)(length);
  };
  if (look.alignment != TextAlignment::Natural)
    format.setAlignment(qtAlignment(look.alignment));
  put(look.head, &QTextBlockFormat::setLeftMargin);
  put(look.firstLine, &QTextBlockFormat::setTextIndent);
  put(look.tail, &QTextBlockFormat::setRightMargin);
  put(look.before, &QTextBlockFormat::setTopMargin);
  put(look.after, &QTextBlockFormat::setBottomMargin);
  if (look.lineHeightType != QTextBlockFormat::SingleHeight)
    format.setLineHeight(look.lineHeight, look.lineHeightType);
  if (!look.tabs.isEmpty())
    format.setTabPositions(look.tabs);
  if (look.direction != Qt::LayoutDirectionAuto)
    format.setLayoutDirection(look.direction);
  if (!look.lists.isEmpty())
    setListMarkers(format, look.lists);
}

/// Tab stops that stayed keep what they came with.
std::vector<TextTab> changedTabs(const ParagraphStyle& style, const ParagraphLook& now) {
  const double lineStart = now.head + now.firstLine;
  std::vector<TextTab> tabs;
  for (const Tab& tab : now.tabs) {
    const std::vector<TextTab> known = style.tabStops.value_or(std::vector<TextTab>());
    const auto kept = std::find_if(known.begin(), known.end(), [&](const TextTab& candidate) {
      return same(tabOf(candidate, lineStart), tab);
    });
    tabs.push_back(kept == known.end() ? tabOf(tab, lineStart) : *kept);
  }
  return tabs;
}

int storedDirection(Qt::LayoutDirection direction) {
  switch (direction) {
  case Qt::LeftToRight:
    return 1;
  case Qt::RightToLeft:
    return 2;
  case Qt::LayoutDirectionAuto:
    break;
  }
  return 0;
}

ParagraphStyle changedStyle(ParagraphStyle style, const ParagraphLook& before,
                            const ParagraphLook& now) {
  const auto take = [](double& field, double was, double is) {
    if (!same(was, is))
      field = inPoints(is);
  };
  if (now.alignment != before.alignment)
    style.alignment = now.alignment;
  take(style.firstLineHeadIndent, before.head + before.firstLine, now.head + now.firstLine);
  take(style.headIndent, before.head, now.head);
  take(style.paragraphSpacingBefore, before.before, now.before);
  take(style.paragraphSpacing, before.after, now.after);
  if (!same(before.tail, now.tail))
    style.tailIndent = -inPoints(now.tail);
  if (!sameLineHeight(before, now))
    takeOverLineHeight(style, now);
  if (!same(before.tabs, now.tabs))
    style.tabStops = changedTabs(style, now);
  if (now.direction != before.direction)
    style.writingDirection = storedDirection(now.direction);
  if (now.lists != before.lists)
    style.lists.assign(now.lists.begin(), now.lists.end());
  style.original = {};
  return style;
}

} // namespace

QTextBlockFormat blockFormat(const std::optional<ParagraphStyle>& style) {
  QTextBlockFormat format;
  if (!style)
    return format;
  show(lookOf(style), format);
  const ParagraphOrigin origin{std::make_shared<const ParagraphStyle>(*style)};
  format.setProperty(ParagraphOriginProperty, QVariant::fromValue(origin));
  return format;
}

bool showsStyle(const QTextBlockFormat& format, const std::optional<ParagraphStyle>& style,
                double indentWidth) {
  return same(lookOf(format, indentWidth), lookOf(style));
}

std::optional<ParagraphStyle> styleOf(const QTextBlockFormat& format, double indentWidth) {
  std::optional<ParagraphStyle> origin;
  const QVariant property = format.property(ParagraphOriginProperty);
  if (property.isValid())
    origin = *property.value<ParagraphOrigin>().style;
  const ParagraphLook before = lookOf(origin);
  const ParagraphLook now = lookOf(format, indentWidth);
  if (same(before, now))
    return origin;
  // A style that states no alignment is left aligned; text without a style is not.
  ParagraphStyle natural;
  natural.alignment = TextAlignment::Natural;
  return changedStyle(origin.value_or(natural), before, now);
}

double tabOrigin(const QTextBlockFormat& format, double indentWidth) {
  return lookOf(format, indentWidth).head + format.textIndent();
}

QStringList listMarkers(const QTextBlockFormat& format) {
  return format.property(ListMarkersProperty).toStringList();
}

void setListMarkers(QTextBlockFormat& format, const QStringList& markers) {
  format.setProperty(ListMarkersProperty, markers);
}

} // namespace tockwise
