#include "fuzz_target.h"

#include <QLoggingCategory>

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  tockwise::fuzz(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}
