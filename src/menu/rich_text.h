// Rich text as a list of runs: what the menu shows of an archived text and what the command line
// prints of it. No toolkit: whoever reads archives makes runs, whoever renders reads them.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace tockwise {

/// A picture or file in the text; its run's text is U+FFFC.
struct RichAttachment {
  QString name;
  qint64 bytes = 0;
  int width = 0;   // pixels, 0 when it is no picture
  int height = 0;  // pixels
  QByteArray data; // the picture as stored, for renderers; empty when they need not show it

  friend bool operator==(const RichAttachment& one, const RichAttachment& other) {
    // Mostly the very same bytes, perhaps many: then there is nothing to compare.
    const bool isSameData =
        one.data.size() == other.data.size() &&
        (one.data.constData() == other.data.constData() || one.data == other.data);
    return isSameData && one.name == other.name && one.bytes == other.bytes &&
           one.width == other.width && one.height == other.height;
  }
};

/// Each attribute only where it is set.
struct RichAttributes {
  std::optional<QString> font;       // PostScript name
  std::optional<double> size;        // points
  std::optional<quint32> color;      // 0xAARRGGBB
  std::optional<quint32> background; // 0xAARRGGBB
  std::optional<int> underline;
  std::optional<int> strikethrough;
  std::optional<int> superscript;
  std::optional<QString> link;
  std::optional<QString> alignment; // "left", "right", "center", "justified", "natural"
  std::optional<RichAttachment> attachment;
  QStringList other; // names of the attributes that are kept and not edited

  friend bool operator==(const RichAttributes&, const RichAttributes&) = default;
};

struct RichRun {
  QString text;
  RichAttributes attributes;

  friend bool operator==(const RichRun&, const RichRun&) = default;
};

using RichText = std::vector<RichRun>;

/// Number of characters (UTF-16 units).
qsizetype lengthOf(const RichText& text);

/// text when it has at most most characters, else its first most characters with their
/// attributes, then "…" without any. A surrogate pair at the cut is left out whole.
RichText cutRichText(const RichText& text, qsizetype most);

} // namespace tockwise
