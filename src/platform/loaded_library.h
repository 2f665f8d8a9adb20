// A library that is loaded when it is first needed. What the program is linked with makes every
// start longer, also where no sound is played and nothing is opened for days.
#pragma once

#include <QLibrary>
#include <QString>

#include <type_traits>

namespace tockwise {

/// Stays loaded, since what it started may still run. Each object on one thread; the functions are
/// as free as the library says.
class LoadedLibrary {
 public:
  /// A function of the library: turns into a pointer of whatever type it is assigned to.
  class Function {
   public:
    explicit Function(QFunctionPointer address) : m_address(address) {}
    template <typename Type, typename = std::enable_if_t<std::is_function_v<Type>>>
    operator Type*() const {
      return reinterpret_cast<Type*>(m_address);
    }

   private:
    QFunctionPointer m_address;
  };

  /// Loads it. The name is the linker's ("canberra"), the version that of its interface.
  LoadedLibrary(const char* name, int version);

  /// The function of that name, or null: then problem() says so.
  Function operator[](const char* name);
  /// Why the library or a function that was asked for is not there, or "".
  const QString& problem() const { return m_problem; }

 private:
  QLibrary m_library;
  QString m_problem;
};

} // namespace tockwise
