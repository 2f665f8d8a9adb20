// What a ruler shows of a paragraph, and how it is changed.
#pragma once

#include <QTextCursor>
#include <QTextOption>

#include <optional>
#include <vector>

namespace tockwise {

/// Lengths in pixels from the edge where lines begin: the left one, or the right one in
/// right-to-left paragraphs. tail is from the other edge.
struct RulerMarks {
  bool isRightToLeft = false;
  double firstLine = 0;
  double head = 0; // of the other lines
  double tail = 0;
  QList<QTextOption::Tab> tabs;
  friend bool operator==(const RulerMarks&, const RulerMarks&) = default;
};

/// The marks of the paragraph of the cursor.
RulerMarks marksOf(const QTextCursor& cursor);

/// One mark of a ruler; tab: the index into its tabs.
struct RulerMark {
  enum class Kind { FirstLine, Head, Tail, Tab };
  Kind kind = Kind::FirstLine;
  int tab = -1;
  friend bool operator==(const RulerMark&, const RulerMark&) = default;
};

double positionOf(const RulerMarks& marks, const RulerMark& mark);

/// A change of the paragraphs of a selection that may go through many values, as in a drag, and is
/// one step of undo. Main thread; the document must not be edited meanwhile.
class RulerChange {
 public:
  /// tab: the stop to be changed; nothing to add one.
  RulerChange(const QTextCursor& selection, std::optional<QTextOption::Tab> tab = std::nullopt);

  /// An indent; value as in RulerMarks.
  void setIndent(RulerMark::Kind kind, double value);
  /// The tab stop in its new place or kind; nothing removes it.
  void setTab(const std::optional<QTextOption::Tab>& tab);

 private:
  struct Paragraph {
    int position;
    QTextBlockFormat format;
    RulerMarks marks;
  };
  template <typename Change> void apply(const Change& change);

  QTextCursor m_cursor;
  std::optional<QTextOption::Tab> m_tab;
  std::vector<Paragraph> m_paragraphs; // as they were
  bool m_hasChanged = false;
};

} // namespace tockwise
