// Property lists of both forms, and the queue's columns in them.
#include "fuzz_target.h"
#include "store/plist_reader.h"
#include "store/plist_writer.h"
#include "store/plist_xml.h"
#include "store/queue_codec.h"

#include <cstdlib>

using namespace tockwise;

void tockwise::fuzz(const QByteArray& bytes) {
  if (plist::isXml(bytes)) {
    (void)plist::readXml(bytes);
    return;
  }
  const auto reader = plist::Reader::open(bytes);
  if (!reader)
    return;
  const Value value = reader->value(reader->root());
  plist::Writer writer;
  const auto again = plist::Reader::open(writer.finish(writer.value(value)));
  if (!again)
    std::abort(); // what was read can be written and read again
  if (reader->kind(reader->root()) == plist::Kind::Dictionary)
    (void)decodeColumns(*reader, reader->root(), {});
}
