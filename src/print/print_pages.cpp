#include "print/print_pages.h"

#include "alerts/alert_rich_text.h"
#include "base/log.h"
#include "richtext/text_document.h"
#include "store/archive/text_archive.h"

#include <QAbstractTextDocumentLayout>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTextCursor>
#include <QTextFrame>

#include <malloc.h>

#include <limits>

namespace tockwise {
namespace {

// Archives are written for this size where they state none.
constexpr double kFontSize = 12;            // points
constexpr double kLetterSpacing = 1.0 / 64; // dots
constexpr quint32 kLinkColor = 0xff0b4fa8;
constexpr int kRoomBelow = 12; // pixels
/// Qt's layouts count in 1/64 dots, with 32 bits.
constexpr double kDeepestPage = std::numeric_limits<qint32>::max() / 64.0 * 0.9;
constexpr qsizetype kLongestParagraph = 5000; // characters: more than a page full
constexpr qsizetype kLongestWord = 100;       // before which a paragraph may be cut
// Blocks and entries that are dealt with between two looks at the clock.
constexpr int kBlocksAtATime = 32;
// Of the whole work, the part that writing is.
constexpr double kWritingPart = 0.6;

template <typename Attribute> void dropOriginal(std::optional<Attribute>& attribute) {
  if (attribute)
    attribute->original = {};
}

/// Leaves what can be seen. What else an archive has would keep runs of different reminders from
/// sharing a format, and a document with as many formats as reminders is slow.
void keepLookOnly(TextAttributes& attributes) {
  dropOriginal(attributes.font);
  dropOriginal(attributes.color);
  dropOriginal(attributes.background);
  dropOriginal(attributes.paragraph);
  dropOriginal(attributes.attachment);
  if (attributes.paragraph && attributes.paragraph->tabStops) {
    for (TextTab& tab : *attributes.paragraph->tabStops)
      tab.original = {};
  }
  attributes.linkOriginal = {};
  attributes.others.clear();
}

/// Links without a colour of their own would take that of the desktop's theme.
void colourLink(TextAttributes& attributes) {
  if (attributes.link && (!attributes.color || attributes.color->followsTheme))
    attributes.color = TextColor{kLinkColor, false, {}};
}

void prepareForPaper(AttributedText& text) {
  for (TextRun& run : text.runs) {
    keepLookOnly(run.attributes);
    colourLink(run.attributes);
  }
}

bool endsParagraph(QChar character) {
  return character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator ||
         character == QChar::LineSeparator;
}

/// Where a paragraph that begins at from and is too long is cut: behind a space, if there is one.
qsizetype cutOfParagraph(const QString& text, qsizetype from) {
  const qsizetype most = from + kLongestParagraph;
  for (qsizetype at = most; at > most - kLongestWord; --at) {
    if (text[at - 1] == u' ')
      return at;
  }
  qsizetype at = most;
  while (at < text.size() &&
         (text[at].isLowSurrogate() || text[at - 1] == AttributedText::kAttachmentCharacter))
    ++at;
  return at;
}

/// The places after which a line end is missing, ascending.
std::vector<qsizetype> cutsOf(const QString& text) {
  std::vector<qsizetype> cuts;
  qsizetype start = 0;
  for (qsizetype at = 0; at < text.size(); ++at) {
    if (endsParagraph(text[at])) {
      start = at + 1;
    } else if (at - start >= kLongestParagraph) {
      start = cutOfParagraph(text, start);
      if (start >= text.size())
        break;
      if (!endsParagraph(text[start]))
        cuts.push_back(start);
      at = start - 1;
    }
  }
  return cuts;
}

/// Laying out one endless paragraph takes for ever, without a chance to cancel.
void cutLongParagraphs(AttributedText& text) {
  const std::vector<qsizetype> cuts = cutsOf(text.text);
  if (cuts.empty())
    return;
  QString cut;
  cut.reserve(text.text.size() + qsizetype(cuts.size()));
  size_t run = 0;
  qsizetype end = text.runs.front().length; // of that run, in the text as it was
  qsizetype from = 0;
  for (const qsizetype at : cuts) {
    cut += QStringView(text.text).mid(from, at - from);
    cut += u'\n';
    from = at;
    while (end < at)
      end += text.runs[++run].length;
    ++text.runs[run].length;
  }
  cut += QStringView(text.text).mid(from);
  text.text = std::move(cut);
}

QPalette paperPalette() {
  QPalette palette;
  for (const auto role : {QPalette::Text, QPalette::WindowText})
    palette.setColor(role, Qt::black);
  for (const auto role : {QPalette::Base, QPalette::Window})
    palette.setColor(role, Qt::white);
  palette.setColor(QPalette::Link, QColor::fromRgba(kLinkColor));
  return palette;
}

/// What Qt takes the lengths in a document for: pixels of the screen, that many to the inch.
double pixelsPerInch() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen ? screen->logicalDotsPerInchY() : 96;
}

QFont paperFont() {
  QFont font = QGuiApplication::font();
  font.setPointSizeF(kFontSize);
  // Too little to be seen, and enough to keep Qt from joining letters: whoever looks for "first" in
  // a PDF file would not find what is written with a joined f and i.
  font.setLetterSpacing(QFont::AbsoluteSpacing, kLetterSpacing);
  return font;
}

} // namespace

PrintPages::PrintPages(PrintContents contents, const QPageLayout& layout)
    : m_contents(std::move(contents)), m_cursor(&m_document) {
  m_document.setUndoRedoEnabled(false);
  m_document.setDefaultFont(paperFont());
  m_document.setUseDesignMetrics(true);
  QTextOption option = m_document.defaultTextOption();
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  m_document.setDefaultTextOption(option);
  m_document.documentLayout()->setPaintDevice(&m_device);
  setPageLayout(layout);
  m_cursor.insertText(m_contents.form == PrintForm::Plain ? plainPrintHeading()
                                                          : richPrintHeading());
}

void PrintPages::setPageLayout(const QPageLayout& layout) {
  if (m_layout.isEquivalentTo(layout))
    return;
  m_layout = layout;
  m_pageSize = layout.fullRectPixels(kPaperResolution).size();
  m_document.setPageSize(QSizeF(0, 0)); // nothing is laid out while it is written
  QPageLayout inInches = layout;
  inInches.setUnits(QPageLayout::Inch);
  const QMarginsF margins = inInches.margins() * pixelsPerInch();
  QTextFrameFormat format = m_document.rootFrame()->frameFormat();
  format.setLeftMargin(margins.left());
  format.setTopMargin(margins.top());
  format.setRightMargin(margins.right());
  format.setBottomMargin(margins.bottom());
  m_document.rootFrame()->setFrameFormat(format);
  if (m_stage != Stage::Writing)
    startMeasuring();
}

bool PrintPages::advance(std::chrono::milliseconds span) {
  QElapsedTimer spent;
  spent.start();
  while (m_stage != Stage::Complete && !spent.hasExpired(span.count())) {
    if (m_stage == Stage::Measuring)
      measure();
    else if (m_written < m_contents.entries.size())
      write(m_contents.entries[m_written++]);
    else
      startMeasuring();
  }
  return isComplete();
}

void PrintPages::complete() {
  while (!advance(std::chrono::hours(1))) {
  }
}

double PrintPages::progress() const {
  if (isComplete())
    return 1;
  if (m_stage == Stage::Writing)
    return kWritingPart * double(m_written) / double(m_contents.entries.size() + 1);
  const double measured = double(m_measured.position()) / double(m_document.characterCount());
  return kWritingPart + (1 - kWritingPart) * measured;
}

void PrintPages::write(const PrintEntry& entry) {
  const Calendar& calendar = Calendar::current();
  // Our own lines begin afresh after whatever the text before them looked like.
  const auto writeLines = [this](const QString& text) {
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
      if (i > 0)
        m_cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
      m_cursor.insertText(lines[i], QTextCharFormat());
    }
  };
  m_cursor.beginEditBlock();
  if (m_contents.form == PrintForm::Plain) {
    AttributedText text;
    text.append(plainPrintPiece(entry, calendar), {});
    cutLongParagraphs(text);
    insertText(m_cursor, text);
  } else {
    writeLines(richPrintPiece(entry.date, calendar));
    writeRichText(entry);
  }
  m_cursor.endEditBlock();
}

void PrintPages::writeRichText(const PrintEntry& entry) {
  if (!entry.RTFData.isEmpty()) {
    if (auto text = unarchiveTextStorage(entry.RTFData)) {
      prepareForPaper(*text);
      cutLongParagraphs(*text);
      return insertText(m_cursor, *text);
    }
    logLine(QStringLiteral("No data to unarchive"));
  }
  if (m_contents.withoutRichText == WithoutRichText::Nothing)
    return;
  AttributedText plain;
  plain.append(entry.description, {});
  cutLongParagraphs(plain);
  insertText(m_cursor, plain);
}

void PrintPages::startMeasuring() {
  m_stage = Stage::Measuring;
  m_contents.entries.clear();
  const QSize text = m_layout.fullRectPixels(kPaperResolution)
                         .marginsRemoved(m_layout.marginsPixels(kPaperResolution))
                         .size();
  // A picture that is higher than a page would be cut; below it is what hangs from its line.
  fitPictures(m_document, text * pixelsPerInch() / kPaperResolution - QSize(0, kRoomBelow));
  m_measured = m_document.begin();
  m_document.setPageSize(m_pageSize);
}

/// Asking for a block's place lays out everything up to it.
void PrintPages::measure() {
  for (int i = 0; i < kBlocksAtATime && m_measured.isValid(); ++i) {
    const QRectF place = m_document.documentLayout()->blockBoundingRect(m_measured);
    if (place.bottom() > kDeepestPage)
      return cutFrom(m_measured);
    m_measured = m_measured.next();
  }
  if (!m_measured.isValid())
    m_stage = Stage::Complete;
}

void PrintPages::cutFrom(const QTextBlock& block) {
  QTextCursor rest(block);
  rest.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
  m_isCut = true;
  m_stage = Stage::Complete;
  rest.removeSelectedText();
}

int PrintPages::pageCount() const {
  return isComplete() ? m_document.pageCount() : 0;
}

void PrintPages::paint(QPainter& painter, int page) const {
  const double top = page * m_pageSize.height();
  const QRectF area(QPointF(0, top), m_pageSize);
  QAbstractTextDocumentLayout::PaintContext context;
  context.palette = paperPalette();
  context.clip = area;
  painter.save();
  painter.translate(0, -top);
  painter.setClipRect(area, Qt::IntersectClip);
  // Nothing but text without a colour is drawn in it, and some of that only with the pen's.
  painter.setPen(Qt::black);
  m_document.documentLayout()->draw(&painter, context);
  painter.restore();
}

void giveMemoryBack() {
  malloc_trim(0);
}

} // namespace tockwise
