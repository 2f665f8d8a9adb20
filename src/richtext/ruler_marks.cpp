#include "richtext/ruler_marks.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

/// Positions nearer than this are one (pixels).
constexpr double kSame = 0.25;

bool isSame(const QTextOption::Tab& one, const QTextOption::Tab& other) {
  return std::abs(one.position - other.position) < kSame && one.type == other.type;
}

RulerMarks marksOf(const QTextBlock& block) {
  const QTextBlockFormat format = block.blockFormat();
  const double left = format.leftMargin() + format.indent() * block.document()->indentWidth();
  RulerMarks marks;
  marks.isRightToLeft = block.textDirection() == Qt::RightToLeft;
  marks.head = marks.isRightToLeft ? format.rightMargin() : left;
  marks.tail = marks.isRightToLeft ? left : format.rightMargin();
  marks.firstLine = marks.head + format.textIndent();
  marks.tabs = format.tabPositions();
  // Qt counts them from where the first line begins.
  for (QTextOption::Tab& tab : marks.tabs)
    tab.position += marks.firstLine;
  return marks;
}

void write(const RulerMarks& marks, QTextBlockFormat& format) {
  format.setIndent(0);
  format.setLeftMargin(marks.isRightToLeft ? marks.tail : marks.head);
  format.setRightMargin(marks.isRightToLeft ? marks.head : marks.tail);
  format.setTextIndent(marks.firstLine - marks.head);
  QList<QTextOption::Tab> tabs = marks.tabs;
  for (QTextOption::Tab& tab : tabs)
    tab.position -= marks.firstLine;
  if (tabs.isEmpty())
    format.clearProperty(QTextFormat::TabPositions);
  else
    format.setTabPositions(tabs);
}

} // namespace

RulerMarks marksOf(const QTextCursor& cursor) {
  return marksOf(cursor.document()->findBlock(cursor.selectionStart()));
}

double positionOf(const RulerMarks& marks, const RulerMark& mark) {
  switch (mark.kind) {
  case RulerMark::Kind::FirstLine:
    return marks.firstLine;
  case RulerMark::Kind::Head:
    return marks.head;
  case RulerMark::Kind::Tail:
    return marks.tail;
  case RulerMark::Kind::Tab:
    break;
  }
  return marks.tabs.value(mark.tab).position;
}

RulerChange::RulerChange(const QTextCursor& selection, std::optional<QTextOption::Tab> tab)
    : m_cursor(selection.document()), m_tab(tab) {
  QTextBlock block = selection.document()->findBlock(selection.selectionStart());
  for (; block.isValid() && (m_paragraphs.empty() || block.position() < selection.selectionEnd());
       block = block.next())
    m_paragraphs.push_back({block.position(), block.blockFormat(), marksOf(block)});
}

template <typename Change> void RulerChange::apply(const Change& change) {
  if (m_hasChanged)
    m_cursor.joinPreviousEditBlock();
  else
    m_cursor.beginEditBlock();
  m_hasChanged = true;
  for (const Paragraph& paragraph : m_paragraphs) {
    RulerMarks marks = paragraph.marks;
    change(marks);
    QTextBlockFormat format = paragraph.format;
    if (marks != paragraph.marks)
      write(marks, format);
    m_cursor.setPosition(paragraph.position);
    m_cursor.setBlockFormat(format);
  }
  m_cursor.endEditBlock();
}

void RulerChange::setIndent(RulerMark::Kind kind, double value) {
  apply([&](RulerMarks& marks) {
    if (kind == RulerMark::Kind::FirstLine)
      marks.firstLine = value;
    else if (kind == RulerMark::Kind::Head)
      marks.head = value;
    else
      marks.tail = value;
  });
}

void RulerChange::setTab(const std::optional<QTextOption::Tab>& tab) {
  apply([&](RulerMarks& marks) {
    if (m_tab)
      marks.tabs.removeIf([&](const QTextOption::Tab& one) { return isSame(one, *m_tab); });
    if (!tab)
      return;
    marks.tabs.removeIf([&](const QTextOption::Tab& one) {
      return std::abs(one.position - tab->position) < kSame;
    });
    marks.tabs.push_back(*tab);
    std::sort(marks.tabs.begin(), marks.tabs.end(),
              [](const auto& one, const auto& other) { return one.position < other.position; });
  });
}

} // namespace tockwise
