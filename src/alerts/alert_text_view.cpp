#include "alerts/alert_text_view.h"

#include "alerts/alert_rich_text.h"

#include <QRegularExpression>
#include <QScrollBar>
#include <QTextCursor>

#include <algorithm>
#include <cmath>
#include <memory>

namespace tockwise {
namespace {

/// A text of up to so many characters is set in the desktop's font times scale.
struct TypeSize {
  qsizetype longest;
  double scale;
};
constexpr TypeSize kTypeSizes[] = {{60, 1.6}, {160, 1.35}, {500, 1.15}};

double typeScale(qsizetype length) {
  for (const TypeSize& size : kTypeSizes) {
    if (length <= size.longest)
      return size.scale;
  }
  return 1.05;
}

// The time that Qt takes to find the ends of lines grows with the square of a word's length.
constexpr qsizetype kLongestWord = 5000;

bool hasEndlessWord(const QString& text) {
  qsizetype word = 0;
  return std::any_of(text.begin(), text.end(), [&word](QChar character) {
    word = character.isSpace() ? 0 : word + 1;
    return word > kLongestWord;
  });
}

// No picture is larger, in heights of a line.
constexpr int kPictureWidth = 26;
constexpr int kPictureHeight = 20;

struct Link {
  qsizetype start;
  qsizetype length;
  QString target;
};

/// Sentences end where addresses do: a trailing mark of punctuation is not part of the address.
qsizetype trimmedLength(const QString& address) {
  qsizetype length = address.size();
  while (length > 0 && QStringLiteral(".,;:!?'\")]}").contains(address[length - 1])) {
    const bool closesItsOwn = address[length - 1] == u')' &&
                              address.left(length).count(u'(') >= address.left(length).count(u')');
    if (closesItsOwn)
      break;
    --length;
  }
  return length;
}

QList<Link> linksIn(const QString& text) {
  static const QRegularExpression form(
      QStringLiteral(R"((?:\bhttps?://|\bmailto:|\bwww\.)[^\s<>"]+)"),
      QRegularExpression::CaseInsensitiveOption);
  QList<Link> links;
  auto matches = form.globalMatch(text);
  while (matches.hasNext()) {
    const auto match = matches.next();
    const qsizetype length = trimmedLength(match.captured());
    QString target = match.captured().left(length);
    if (target.startsWith(u"www.", Qt::CaseInsensitive))
      target.prepend(QStringLiteral("https://"));
    links.push_back({match.capturedStart(), length, target});
  }
  return links;
}

} // namespace

AlertTextView::AlertTextView(QWidget* parent) : QTextBrowser(parent) {
  setOpenLinks(false);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  wrapFor(QString());
  viewport()->setAutoFillBackground(false);
  document()->setDocumentMargin(0);
}

void AlertTextView::wrapFor(const QString& text) {
  setWordWrapMode(hasEndlessWord(text) ? QTextOption::WrapAnywhere
                                       : QTextOption::WrapAtWordBoundaryOrAnywhere);
}

void AlertTextView::setReminderText(const QString& text) {
  wrapFor(text);
  QFont type = font();
  type.setPointSizeF(type.pointSizeF() * typeScale(text.size()));
  if (text.size() <= kTypeSizes[0].longest)
    type.setWeight(QFont::DemiBold);
  document()->setDefaultFont(type);
  setPlainText(text);
  linkAddresses();
}

void AlertTextView::linkAddresses() {
  QTextCursor cursor(document());
  for (const Link& link : linksIn(toPlainText())) {
    cursor.setPosition(int(link.start) + 1);
    if (cursor.charFormat().isAnchor())
      continue;
    cursor.setPosition(int(link.start));
    cursor.setPosition(int(link.start + link.length), QTextCursor::KeepAnchor);
    QTextCharFormat format;
    format.setAnchor(true);
    format.setAnchorHref(link.target);
    format.setForeground(palette().link());
    format.setFontUnderline(true);
    cursor.mergeCharFormat(format);
  }
}

void AlertTextView::takeRichText() {
  wrapFor(toPlainText());
  const int em = fontMetrics().height();
  keepOpenableLinks(*document());
  linkAddresses();
  fitPictures(*document(), QSize(em * kPictureWidth, em * kPictureHeight));
}

void AlertTextView::followColours(const QPalette& look) {
  recolour(*document(), look);
}

void AlertTextView::fitContents(int maximumHeight) {
  const int em = fontMetrics().height();
  // Measured on a copy: the view keeps laying its own document out for its present width.
  const std::unique_ptr<QTextDocument> copy(document()->clone());
  copy->setDefaultFont(document()->defaultFont());
  copy->setDocumentMargin(0);
  QTextOption wrapping = copy->defaultTextOption();
  wrapping.setWrapMode(wordWrapMode());
  copy->setDefaultTextOption(wrapping);
  copy->setTextWidth(-1);
  const int ideal = int(std::ceil(copy->idealWidth())) + 2;
  const bool isLong = copy->characterCount() > 600;
  const int width = std::clamp(ideal, em * 17, em * (isLong ? 34 : 27));
  copy->setTextWidth(width);
  const int height = int(std::ceil(copy->size().height())) + 1;
  m_fitted = {width, std::max(height, em * 2)};
  if (m_fitted.height() > maximumHeight)
    m_fitted = {width + verticalScrollBar()->sizeHint().width() + 4, maximumHeight};
  updateGeometry();
}

QSize AlertTextView::minimumSizeHint() const {
  const int em = fontMetrics().height();
  return {em * 12, std::min(m_fitted.height(), em * 3)};
}

void AlertTextView::scrollBy(int direction) {
  QScrollBar* bar = verticalScrollBar();
  switch (direction) {
  case -2:
    bar->triggerAction(QAbstractSlider::SliderToMinimum);
    break;
  case -1:
    bar->triggerAction(QAbstractSlider::SliderPageStepSub);
    break;
  case 1:
    bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
    break;
  default:
    bar->triggerAction(QAbstractSlider::SliderToMaximum);
    break;
  }
}

QVariant AlertTextView::loadResource(int, const QUrl&) {
  // Pictures are in the document; nothing is fetched from files or the network because a text
  // names it.
  return {};
}

} // namespace tockwise
