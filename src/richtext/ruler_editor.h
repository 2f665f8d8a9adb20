// The state of a ruler over a view: its marks, the chosen one, and what is being dragged.
#pragma once

#include "richtext/ruler_marks.h"
#include "richtext/ruler_painting.h"

#include <QPointF>
#include <QString>

#include <optional>
#include <vector>

class QTextEdit;

namespace tockwise {

/// Main thread. All places are in the ruler's pixels.
class RulerEditor {
 public:
  void setView(QTextEdit* view);
  void setScale(const RulerScale& scale) { m_scale = scale; }

  /// Looks at the paragraph of the cursor again; left: where the view's viewport begins. Whether
  /// anything changed.
  bool refresh(double left);
  const RulerMarks& marks() const { return m_marks; }
  const RulerSpan& span() const { return m_span; }
  /// In the order in which the keyboard goes through them.
  std::vector<RulerMark> allMarks() const;
  std::optional<RulerMark> markAt(QPointF place) const;

  const std::optional<RulerMark>& chosen() const { return m_chosen; }
  void choose(const std::optional<RulerMark>& mark) { m_chosen = mark; }
  void chooseNext(int steps);

  /// Takes the mark there, or makes a tab stop where there is none.
  void beginDrag(QPointF place);
  bool isDragging() const { return m_change.has_value(); }
  /// Whether the drag began by making a tab stop.
  bool isNewTab() const { return m_isNewTab; }
  /// isFree: not snapped to the scale.
  void drag(QPointF place, bool isFree);
  void endDrag();

  /// Moves the chosen mark; pixels to the right.
  void nudge(double pixels, bool isFree);
  void addTab();
  void removeTab();
  void setTabType(QTextOption::TabType type);
  void turnTabType();

  /// "First line: 1.5 cm".
  QString text(const RulerMark& mark, const QLocale& locale) const;

 private:
  double clamped(const RulerMark& mark, double length) const;
  void set(RulerChange& change, const RulerMark& mark, double length);
  void setTab(RulerChange& change, const QTextOption::Tab& tab);
  void chooseTabAt(double position);
  std::optional<QTextOption::Tab> chosenTab() const;
  QTextOption::TabType newTabType() const;

  QTextEdit* m_view = nullptr;
  RulerScale m_scale;
  RulerMarks m_marks;
  RulerSpan m_span;
  double m_viewLeft = 0;
  std::optional<RulerMark> m_chosen;
  std::optional<RulerChange> m_change;
  double m_grip = 0; // from the taken mark to the mouse
  QPointF m_pressedAt;
  bool m_hasMoved = false;
  bool m_isNewTab = false;
  RulerMark::Kind m_dragged = RulerMark::Kind::Tab;
  QTextOption::Tab m_draggedTab;
};

} // namespace tockwise
