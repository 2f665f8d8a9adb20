// RTF taken apart: groups, control words, texts. Never fails and never allocates.
#pragma once

#include <QByteArrayView>

#include <optional>

namespace tockwise {

struct RtfToken {
  enum class Kind {
    GroupStart,
    GroupEnd,
    Word,   // \word or \word-12
    Symbol, // \ and a character that is no letter
    Byte,   // \'hh
    Text,   // bytes as they stand
    Binary, // what follows \binN
    Finished
  };
  Kind kind = Kind::Finished;
  QByteArrayView bytes;         // of a word its name, of a symbol its character, else the contents
  std::optional<int> parameter; // of a word; of Byte its value
};

/// The value of a hexadecimal digit, or -1.
int hexDigit(char byte);

/// bytes must outlive the tokens.
class RtfTokens {
 public:
  explicit RtfTokens(QByteArrayView bytes) : m_bytes(bytes) {}
  RtfToken next();

 private:
  RtfToken control();
  RtfToken word();
  RtfToken text();

  QByteArrayView m_bytes;
  qsizetype m_at = 0;
  qsizetype m_binary = 0; // bytes that come next, as they are
};

} // namespace tockwise
