// Containers of attached files: what was read can be written and reads the same.
#include "fuzz_target.h"
#include "store/archive/file_wrapper.h"

#include <cstdlib>

using namespace tockwise;

void tockwise::fuzz(const QByteArray& bytes) {
  auto wrapper = readFileWrapper(bytes);
  if (!wrapper)
    return;
  if (wrapper->type == FileWrapper::Type::Folder)
    wrapper->name.clear(); // it has no place of its own
  const auto again = readFileWrapper(writeFileWrapper(*wrapper));
  if (!again || *again != *wrapper)
    std::abort();
}
