#include "store/root_dictionary.h"

#include "store/plist_writer.h"
#include "store/plist_xml.h"
#include "store/store_file.h"

namespace tockwise::plist {

Result<Reader> openRootDictionary(QByteArray bytes) {
  if (isXml(bytes)) {
    const auto value = readXml(bytes);
    if (!value)
      return value.error();
    Writer writer;
    bytes = writer.finish(writer.value(*value));
  }
  auto reader = Reader::open(std::move(bytes));
  if (reader && reader->kind(reader->root()) != Kind::Dictionary)
    return Error{Error::Kind::Damaged, QStringLiteral("the property list is no dictionary")};
  return reader;
}

Result<Reader> readRootDictionary(const QString& path) {
  auto bytes = readWholeFile(path);
  if (!bytes)
    return bytes.error();
  return openRootDictionary(std::move(*bytes));
}

} // namespace tockwise::plist
