// HTML taken apart: tags, texts, comments. Never fails: what is no tag is text.
#pragma once

#include <QString>
#include <QStringView>

#include <utility>
#include <vector>

namespace tockwise {

struct HtmlToken {
  enum class Kind { Text, Start, End, Comment, Finished };
  Kind kind = Kind::Finished;
  QString name;        // of a tag, in lower case
  QStringView content; // of a text or comment, as it stands
  std::vector<std::pair<QString, QStringView>>
      attributes; // names in lower case, values as they stand

  /// The value with its references resolved; empty when it has none.
  QString attribute(QStringView attributeName) const;
  /// The value as it stands.
  QStringView rawAttribute(QStringView attributeName) const;
};

/// Reads on from tag to tag, in time linear in the length. The text must outlive the tokens.
class HtmlTokens {
 public:
  explicit HtmlTokens(QStringView html) : m_html(html) {}
  HtmlToken next();

 private:
  HtmlToken text(qsizetype end);
  HtmlToken comment();
  HtmlToken tag();
  void readAttributes(HtmlToken& token);
  QStringView readValue();
  void skipSpaces();

  QStringView m_html;
  qsizetype m_at = 0;
  QString m_rawElement; // a script, style or the like: all is text until its end tag
};

/// text with its character references ("&amp;", "&#8226;") resolved.
QString resolvedReferences(QStringView text);

/// The character of a named reference ("hellip"); 0 for none.
char32_t namedCharacter(QStringView name);

} // namespace tockwise
