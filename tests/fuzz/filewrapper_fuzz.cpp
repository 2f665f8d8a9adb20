// Containers of attached files: what was read can be written and reads the same.
#include "store/archive/file_wrapper.h"

#include <cstdint>
#include <cstdlib>

using namespace tockwise;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto wrapper = readFileWrapper({reinterpret_cast<const char*>(data), qsizetype(size)});
  if (!wrapper)
    return 0;
  if (wrapper->type == FileWrapper::Type::Folder)
    wrapper->name.clear(); // it has no place of its own
  const auto again = readFileWrapper(writeFileWrapper(*wrapper));
  if (!again || *again != *wrapper)
    std::abort();
  return 0;
}
