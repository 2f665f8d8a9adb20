// Attributes as control words of RTF, with the tables of fonts and colours that they refer to.
#pragma once

#include "store/archive/attributed_text.h"

#include <QHash>

#include <vector>

namespace tockwise {

class RtfFormatText {
 public:
  /// The words that state all of the character attributes, after a reset.
  QByteArray characterWords(const TextAttributes& attributes);
  /// Likewise of a paragraph; style may be null.
  static QByteArray paragraphWords(const ParagraphStyle* style);
  /// The tables, of what was asked for so far.
  QByteArray tables() const;

 private:
  int fontIndex(const QString& name);
  int colorIndex(quint32 argb);
  QByteArray fontTable() const;
  QByteArray colorTable() const;

  std::vector<QString> m_fonts;
  QHash<QString, int> m_fontIndexes;
  std::vector<quint32> m_colors; // from index 1; 0 is the reader's own colour
  QHash<quint32, int> m_colorIndexes;
};

} // namespace tockwise
