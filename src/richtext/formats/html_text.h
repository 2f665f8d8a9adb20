// The text that grows while HTML is read: spaces collapse, blocks become paragraphs, cells of a
// table are kept apart by tabs.
#pragma once

#include "richtext/formats/html_style.h"

#include <QHash>

namespace tockwise {

class HtmlText {
 public:
  /// Whether a page of ours is read, whose colours are meant. In those of others black on white is
  /// how a page looks, not what was chosen for a passage.
  void setColorsAreMeant(bool areMeant) { m_colorsAreMeant = areMeant; }

  void addText(QStringView text, const HtmlStyle& style);
  void addPicture(const TextAttachment& picture, const HtmlStyle& style);
  /// A break that ends the paragraph, and one within it.
  void addLineBreak(const HtmlStyle& style);
  void addLineSeparator(const HtmlStyle& style);
  /// The start or the end of an element that stands in lines of its own.
  void addBoundary();
  void startRow();
  void startCell();
  void endTable() { m_isInRow = false; }
  /// What stands before the next text: the marker of a list's item.
  void setMarker(const QString& marker) { m_marker = marker; }

  /// Forgets what was read so far.
  void clear();
  /// All that was read.
  AttributedText finish();

 private:
  enum class Pending { Nothing, Tab, LineFeed };

  void addCollapsed(QStringView text, const HtmlStyle& style);
  void put(const QString& text, const TextAttributes& attributes, const HtmlStyle& style);
  void flushPending();
  TextAttributes attributesOf(const HtmlStyle& style);
  QString fontName(const HtmlStyle& style);

  AttributedText m_text;
  Pending m_pending = Pending::Nothing;
  bool m_lineHasContent = false;
  bool m_cellHasContent = false;
  bool m_isInRow = false;
  bool m_rowHasCell = false;
  bool m_rowHasContent = false;
  bool m_hasSpace = false; // a space that shows if text follows in the line
  bool m_colorsAreMeant = false;
  TextAttributes m_spaceAttributes;
  TextAttributes m_lineAttributes; // of what ends the line
  std::optional<ParagraphStyle> m_lineStyle;
  QString m_marker;
  QHash<QString, QString> m_fontNames;
};

} // namespace tockwise
