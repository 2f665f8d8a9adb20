#include "richtext/ruler_editor.h"

#include <QCoreApplication>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

using MarkKind = RulerMark::Kind;

/// Lines are never narrower than this (pixels).
constexpr double kNarrowest = 24;
/// A tab stop so far off the ruler is removed.
constexpr double kOff = 16;
constexpr double kStill = 3;

QString rulerText(const char* text) {
  return QCoreApplication::translate("TextRuler", text);
}

QString nameOf(const RulerMarks& marks, const RulerMark& mark) {
  switch (mark.kind) {
  case MarkKind::FirstLine:
    return rulerText("First line");
  case MarkKind::Head:
    return rulerText("Indent");
  case MarkKind::Tail:
    return rulerText("Indent at the end of lines");
  case MarkKind::Tab:
    break;
  }
  switch (marks.tabs.value(mark.tab).type) {
  case QTextOption::RightTab:
    return rulerText("Right tab stop");
  case QTextOption::CenterTab:
    return rulerText("Centre tab stop");
  default:
    return rulerText("Left tab stop");
  }
}

} // namespace

void RulerEditor::setView(QTextEdit* view) {
  m_view = view;
  m_change.reset();
  m_chosen.reset();
}

bool RulerEditor::refresh(double left) {
  if (!m_view)
    return false;
  const RulerMarks marks = marksOf(m_view->textCursor());
  const QTextDocument& document = *m_view->document();
  const QScrollBar& bar = *m_view->horizontalScrollBar();
  const int scrolled = m_view->isRightToLeft() ? bar.maximum() - bar.value() : bar.value();
  const double whole =
      document.textWidth() > 0 ? document.textWidth() : m_view->viewport()->width();
  const RulerSpan span{left + document.documentMargin() - scrolled,
                       whole - 2 * document.documentMargin(), marks.isRightToLeft};
  const bool isSame = marks == m_marks && span.left == m_span.left && span.width == m_span.width;
  m_marks = marks;
  m_span = span;
  m_viewLeft = left;
  if (m_chosen && m_chosen->kind == MarkKind::Tab && m_chosen->tab >= marks.tabs.size())
    m_chosen.reset();
  return !isSame;
}

std::vector<RulerMark> RulerEditor::allMarks() const {
  std::vector<RulerMark> all{{MarkKind::FirstLine}, {MarkKind::Head}};
  for (int tab = 0; tab < m_marks.tabs.size(); ++tab)
    all.push_back({MarkKind::Tab, tab});
  all.push_back({MarkKind::Tail});
  return all;
}

std::optional<RulerMark> RulerEditor::markAt(QPointF place) const {
  const std::vector<RulerMark> all = allMarks();
  std::optional<RulerMark> nearest;
  double least = 0;
  for (const RulerMark& mark : all) {
    const QRectF area = markArea(m_marks, mark, m_span);
    const double distance = (area.center() - place).manhattanLength();
    if (area.contains(place) && (!nearest || distance < least)) {
      nearest = mark;
      least = distance;
    }
  }
  return nearest;
}

void RulerEditor::chooseNext(int steps) {
  const std::vector<RulerMark> all = allMarks();
  const int count = int(all.size());
  const auto at = m_chosen ? std::find(all.begin(), all.end(), *m_chosen) : all.end();
  const int index = at == all.end() ? (steps > 0 ? 0 : count - 1)
                                    : (int(at - all.begin()) + steps + count) % count;
  m_chosen = all[size_t(index)];
}

std::optional<QTextOption::Tab> RulerEditor::chosenTab() const {
  if (!m_chosen || m_chosen->kind != MarkKind::Tab)
    return std::nullopt;
  return m_marks.tabs.value(m_chosen->tab);
}

QTextOption::TabType RulerEditor::newTabType() const {
  return m_marks.isRightToLeft ? QTextOption::RightTab : QTextOption::LeftTab;
}

double RulerEditor::clamped(const RulerMark& mark, double length) const {
  double most = m_span.width;
  if (mark.kind == MarkKind::FirstLine || mark.kind == MarkKind::Head)
    most -= m_marks.tail + kNarrowest;
  else if (mark.kind == MarkKind::Tail)
    most -= std::max(m_marks.firstLine, m_marks.head) + kNarrowest;
  return std::clamp(length, 0.0, std::max(0.0, most));
}

void RulerEditor::chooseTabAt(double position) {
  refresh(m_viewLeft);
  for (int tab = 0; tab < m_marks.tabs.size(); ++tab) {
    if (std::abs(m_marks.tabs[tab].position - position) < 0.5)
      m_chosen = RulerMark{MarkKind::Tab, tab};
  }
}

void RulerEditor::setTab(RulerChange& change, const QTextOption::Tab& tab) {
  change.setTab(tab);
  chooseTabAt(tab.position);
}

void RulerEditor::set(RulerChange& change, const RulerMark& mark, double length) {
  const double value = clamped(mark, length);
  if (mark.kind == MarkKind::Tab) {
    m_draggedTab.position = value;
    setTab(change, m_draggedTab);
  } else {
    change.setIndent(mark.kind, value);
    refresh(m_viewLeft);
  }
}

void RulerEditor::beginDrag(QPointF place) {
  m_chosen = markAt(place);
  m_pressedAt = place;
  m_hasMoved = false;
  m_isNewTab = !m_chosen;
  m_dragged = m_chosen ? m_chosen->kind : MarkKind::Tab;
  if (!m_isNewTab) {
    m_grip =
        place.x() - m_span.place(positionOf(m_marks, *m_chosen), m_chosen->kind == MarkKind::Tail);
    m_draggedTab = chosenTab().value_or(QTextOption::Tab());
    m_change.emplace(m_view->textCursor(), chosenTab());
    return;
  }
  m_grip = 0;
  if (place.x() < m_span.left || place.x() > m_span.left + m_span.width)
    return;
  m_change.emplace(m_view->textCursor());
  m_draggedTab = {0, newTabType()};
  set(*m_change, {MarkKind::Tab}, m_scale.snapped(m_span.length(place.x())));
}

void RulerEditor::drag(QPointF place, bool isFree) {
  if (!m_change || (!m_hasMoved && (place - m_pressedAt).manhattanLength() < kStill))
    return;
  m_hasMoved = true;
  const bool isTab = m_dragged == MarkKind::Tab;
  if (isTab && (place.y() < -kOff || place.y() > kRulerHeight + kOff)) {
    m_change->setTab(std::nullopt);
    m_chosen.reset();
    refresh(m_viewLeft);
    return;
  }
  const RulerMark mark{m_dragged};
  const double length = m_span.length(place.x() - m_grip, mark.kind == MarkKind::Tail);
  set(*m_change, mark, isFree ? length : m_scale.snapped(length));
}

void RulerEditor::endDrag() {
  m_change.reset();
  m_draggedTab = {};
}

void RulerEditor::nudge(double pixels, bool isFree) {
  if (!m_chosen)
    return;
  const bool isTail = m_chosen->kind == MarkKind::Tail;
  const double now = positionOf(m_marks, *m_chosen);
  const double place = m_span.place(now, isTail) + pixels;
  double length = m_span.length(place, isTail);
  if (!isFree)
    length = m_scale.snapped(length);
  if (clamped(*m_chosen, length) == now)
    return;
  m_draggedTab = chosenTab().value_or(QTextOption::Tab());
  RulerChange change(m_view->textCursor(), chosenTab());
  set(change, *m_chosen, length);
  m_draggedTab = {};
}

void RulerEditor::addTab() {
  const double last = m_marks.tabs.isEmpty() ? m_marks.firstLine : m_marks.tabs.last().position;
  const double next = (std::floor(last / m_scale.unit + 0.01) + 1) * m_scale.unit;
  if (next > m_span.width)
    return;
  RulerChange change(m_view->textCursor());
  setTab(change, {next, newTabType()});
}

void RulerEditor::removeTab() {
  const auto tab = chosenTab();
  if (!tab)
    return;
  RulerChange change(m_view->textCursor(), tab);
  change.setTab(std::nullopt);
  const int index = m_chosen->tab;
  refresh(m_viewLeft);
  m_chosen = m_marks.tabs.isEmpty()
                 ? RulerMark{MarkKind::FirstLine}
                 : RulerMark{MarkKind::Tab, std::min(index, int(m_marks.tabs.size()) - 1)};
}

void RulerEditor::setTabType(QTextOption::TabType type) {
  const auto tab = chosenTab();
  if (!tab || tab->type == type)
    return;
  RulerChange change(m_view->textCursor(), tab);
  setTab(change, {tab->position, type});
}

void RulerEditor::turnTabType() {
  const auto tab = chosenTab();
  if (!tab)
    return;
  setTabType(tab->type == QTextOption::LeftTab     ? QTextOption::CenterTab
             : tab->type == QTextOption::CenterTab ? QTextOption::RightTab
                                                   : QTextOption::LeftTab);
}

QString RulerEditor::text(const RulerMark& mark, const QLocale& locale) const {
  return rulerText("%1: %2").arg(nameOf(m_marks, mark),
                                 m_scale.text(positionOf(m_marks, mark), locale));
}

} // namespace tockwise
