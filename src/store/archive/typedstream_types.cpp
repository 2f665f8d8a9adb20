#include "store/archive/typedstream_types.h"

#include <charconv>

namespace tockwise::typedstream {
namespace {

constexpr int kMostNesting = 16;
constexpr std::string_view kCodes = "cCBsSiIlLqQfd*:%+#@!";

class TypeParser {
 public:
  explicit TypeParser(QByteArrayView text) : m_rest(text.data(), size_t(text.size())) {}

  bool atEnd() const { return m_rest.empty(); }
  std::optional<Type> type(int nesting) {
    if (m_rest.empty() || nesting > kMostNesting)
      return std::nullopt;
    const char code = m_rest.front();
    m_rest.remove_prefix(1);
    if (code == '[')
      return array(nesting);
    if (code == '{')
      return structure(nesting);
    if (kCodes.find(code) == std::string_view::npos)
      return std::nullopt;
    return Type{code, 0, {}};
  }

 private:
  bool take(char expected) {
    if (m_rest.empty() || m_rest.front() != expected)
      return false;
    m_rest.remove_prefix(1);
    return true;
  }

  std::optional<Type> array(int nesting) {
    Type array{'[', 0, {}};
    const char* end = m_rest.data() + m_rest.size();
    const auto [stop, failure] = std::from_chars(m_rest.data(), end, array.count);
    if (failure != std::errc())
      return std::nullopt;
    m_rest.remove_prefix(size_t(stop - m_rest.data()));
    auto element = type(nesting + 1);
    if (!element || !take(']'))
      return std::nullopt;
    array.parts.push_back(std::move(*element));
    return array;
  }

  // Fields may be preceded by a name and "=".
  std::optional<Type> structure(int nesting) {
    Type structure{'{', 0, {}};
    const size_t named = m_rest.find_first_of("=[]{}");
    if (named != std::string_view::npos && m_rest[named] == '=')
      m_rest.remove_prefix(named + 1);
    while (!take('}')) {
      auto field = type(nesting + 1);
      if (!field)
        return std::nullopt;
      structure.parts.push_back(std::move(*field));
    }
    return structure;
  }

  std::string_view m_rest;
};

} // namespace

std::optional<std::vector<Type>> parseTypes(QByteArrayView text) {
  TypeParser parser(text);
  std::vector<Type> types;
  do {
    auto type = parser.type(0);
    if (!type)
      return std::nullopt;
    types.push_back(std::move(*type));
  } while (!parser.atEnd());
  return types;
}

} // namespace tockwise::typedstream
