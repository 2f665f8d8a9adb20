// The tables of fonts and colours of an RTF while it is read.
#pragma once

#include "richtext/formats/rtf_state.h"

#include <QHash>
#include <QString>

#include <vector>

namespace tockwise {

struct RtfFont {
  QString name;
  QString alternate; // its other name
  int codePage = 0;  // 0: that of the document
  bool isSymbol = false;
};

class RtfFontTable {
 public:
  /// A control word within the table.
  void word(QByteArrayView word, std::optional<int> parameter);
  /// Text within the table, or of a font's other name.
  void text(const QString& text, RtfDestination destination);

  void setDefault(int index) { m_default = index; }
  /// Null for an index that the table does not have.
  const RtfFont* font(int index) const;
  /// The font of those characters; nothing when they state none.
  std::optional<TextFont> fontOf(const RtfCharacters& characters) const;

 private:
  QHash<int, RtfFont> m_fonts;
  int m_current = -1;
  int m_default = -1;
};

class RtfColorTable {
 public:
  void word(QByteArrayView word, std::optional<int> parameter);
  void text(QByteArrayView bytes);
  /// Of the extension, which says more of the same colours.
  void extensionWord(QByteArrayView word, std::optional<int> parameter);
  void extensionText(QByteArrayView bytes);

  /// Nothing for an index that the table does not have, and for the reader's own colour.
  std::optional<TextColor> color(int index) const;

 private:
  struct Entry {
    bool isStated = false;
    quint32 rgb = 0;
    quint32 alpha = 0xff;
    bool followsTheme = false;
  };
  std::vector<Entry> m_entries;
  Entry m_current;
  size_t m_extension = 0; // the entry that the extension is at
  int m_extensionParts = 0;
  QByteArray m_extensionName;
};

} // namespace tockwise
