// Result<T>: a value, or an Error that the caller can act on. Errors are returned, never
// thrown across folders; what is logged is logged once, where the error is handled.
#pragma once

#include <QString>

#include <utility>
#include <variant>

namespace tockwise {

struct Error {
  enum class Kind {
    NotFound,   // no such file, key, reminder
    OutOfRange, // an index that a column does not hold
    Damaged,    // data that cannot be read
    Refused,    // understood, and not allowed (permission, wrong type of value)
    Usage,      // the words of a request are wrong
    Busy,       // held by somebody else
    Storage,    // disk full, read-only, input/output error
    Unavailable // a service of the desktop that is not there
  };
  Kind kind = Kind::Refused;
  QString message; // one sentence for a person, no line feed
};

template <typename T> class [[nodiscard]] Result {
 public:
  Result(T value) : m_value(std::move(value)) {}
  Result(Error error) : m_value(std::move(error)) {}

  bool ok() const { return std::holds_alternative<T>(m_value); }
  explicit operator bool() const { return ok(); }

  /// Precondition: ok().
  T& value() & { return std::get<T>(m_value); }
  const T& value() const& { return std::get<T>(m_value); }
  T&& value() && { return std::get<T>(std::move(m_value)); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }
  T& operator*() & { return value(); }
  const T& operator*() const& { return value(); }

  /// Precondition: !ok().
  const Error& error() const { return std::get<Error>(m_value); }

 private:
  std::variant<T, Error> m_value;
};

template <> class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Error error) : m_error(std::move(error)), m_ok(false) {}

  bool ok() const { return m_ok; }
  explicit operator bool() const { return m_ok; }
  const Error& error() const { return m_error; }

 private:
  Error m_error;
  bool m_ok = true;
};

} // namespace tockwise
