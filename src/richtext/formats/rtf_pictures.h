// Pictures and attached files of an RTF while it is read.
#pragma once

#include "store/archive/attributed_text.h"

#include <QByteArrayView>

#include <optional>

namespace tockwise {

/// A \pict group: hexadecimal digits or bytes, and what is said of them.
class RtfPicture {
 public:
  void addHex(QByteArrayView digits);
  void addBytes(QByteArrayView bytes);
  void addPropertyName(const QString& text) { m_propertyName += text.left(kLongestName); }
  void addPropertyValue(const QString& text) { m_propertyValue += text.left(kLongestName); }
  /// A property is complete.
  void endProperty();

  /// Nothing when the bytes are no picture that can be shown.
  std::optional<TextAttachment> finish() const;

 private:
  static constexpr qsizetype kLongestName = 1000;

  QByteArray m_contents;
  int m_halfByte = -1;
  QString m_propertyName;
  QString m_propertyValue;
  QString m_fileName;
};

/// The address of a field's instruction: HYPERLINK "https://example.org". Empty for other fields.
QString addressOfInstruction(const QString& instruction);

} // namespace tockwise
