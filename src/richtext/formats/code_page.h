// Text in the character sets of other systems.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <memory>

namespace tockwise {

/// Decodes bytes of one character set after the other. What cannot be decoded becomes U+FFFD.
/// Any one thread at a time.
class CodePages {
 public:
  CodePages();
  ~CodePages();
  CodePages(const CodePages&) = delete;
  CodePages& operator=(const CodePages&) = delete;

  /// A number as Windows and Mac OS give them: 1252, 932, 10000, 65001. 1252 for an unknown one.
  QString decode(QByteArrayView bytes, int codePage);
  /// A name as the World Wide Web gives them: "iso-8859-1". windows-1252 for an unknown one.
  QString decode(QByteArrayView bytes, const QByteArray& name);

 private:
  struct Converter;
  Converter* converter(const QByteArray& name);

  QHash<QByteArray, std::shared_ptr<Converter>> m_converters; // null where there is none
};

} // namespace tockwise
