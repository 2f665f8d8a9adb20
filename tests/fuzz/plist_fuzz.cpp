// Property lists of both forms, and the queue's columns in them.
#include "store/plist_reader.h"
#include "store/plist_writer.h"
#include "store/plist_xml.h"
#include "store/queue_codec.h"

#include <QLoggingCategory>

#include <cstdint>
#include <cstdlib>

using namespace tockwise;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
  if (plist::isXml(bytes)) {
    (void)plist::readXml(bytes);
    return 0;
  }
  const auto reader = plist::Reader::open(bytes);
  if (!reader)
    return 0;
  const Value value = reader->value(reader->root());
  plist::Writer writer;
  const auto again = plist::Reader::open(writer.finish(writer.value(value)));
  if (!again)
    std::abort(); // what was read can be written and read again
  if (reader->kind(reader->root()) == plist::Kind::Dictionary)
    (void)decodeColumns(*reader, reader->root(), {});
  return 0;
}
