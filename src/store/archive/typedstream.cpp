#include "store/archive/typedstream.h"

#include "store/archive/typedstream_translation.h"

namespace tockwise {

bool looksLikeTypedstream(const QByteArray& bytes) {
  return bytes.startsWith("\x04\x0bstreamtyped") || bytes.startsWith("\x04\x0btypedstream");
}

Result<UnarchivedText> readTypedstreamText(const QByteArray& archive) {
  const auto tree = typedstream::Tree::read(archive);
  if (!tree)
    return tree.error();
  const auto translation = typedstream::translateText(*tree);
  if (!translation)
    return Error{Error::Kind::Damaged, QStringLiteral("the old archive holds no rich text")};
  auto text = unarchiveText(translation->archive);
  if (text)
    text->notes = translation->notes + text->notes;
  return text;
}

} // namespace tockwise
