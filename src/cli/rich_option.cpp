#include "cli/rich_option.h"

#include "richtext/picture_scaling.h"
#include "richtext/text_formats.h"
#include "store/archive/text_archive.h"

namespace tockwise {

Result<void> readRichOption(QVariantMap& options) {
  const auto option = options.find(QStringLiteral("rich"));
  if (option == options.end())
    return {};
  const QString path = option->toString();
  auto text = readRichFile(path);
  if (!text)
    return text.error();
  if (text->isEmpty())
    return Error{Error::Kind::Refused, QStringLiteral("%1: there is no text in it").arg(path)};
  scaleAttachments(*text); // a message on the bus need not carry what is then thrown away
  *option = archiveText(*text);
  return {};
}

} // namespace tockwise
