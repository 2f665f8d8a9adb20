#include "platform/loaded_library.h"

namespace tockwise {

LoadedLibrary::LoadedLibrary(const char* name, int version)
    : m_library(QString::fromLatin1(name), version) {
  m_library.setLoadHints(QLibrary::PreventUnloadHint);
  if (!m_library.load())
    m_problem = m_library.errorString();
}

LoadedLibrary::Function LoadedLibrary::operator[](const char* name) {
  const QFunctionPointer address = m_library.isLoaded() ? m_library.resolve(name) : nullptr;
  if (!address && m_problem.isEmpty())
    m_problem = QStringLiteral("%1 has no %2").arg(m_library.fileName(), QString::fromLatin1(name));
  return Function(address);
}

} // namespace tockwise
