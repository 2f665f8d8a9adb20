#include "richtext/copy_text.h"

#include "base/log.h"
#include "ports/pasteboard.h"
#include "richtext/text_formats.h"
#include "store/archive/text_archive.h"

namespace tockwise {
namespace {

void logError(const Error& error) {
  logLine(QStringLiteral("Error: %1").arg(error.message));
}

} // namespace

void copyMenuItem(const Result<QByteArray>& archivedText, Pasteboard& pasteboard) {
  if (!archivedText)
    return logError(archivedText.error());
  if (archivedText->isEmpty())
    return;
  const auto text = unarchiveTextStorage(*archivedText);
  if (text)
    pasteboard.setContents(mimeDataOf(*text));
  else if (text.error().kind != Error::Kind::NotFound)
    logError(text.error());
}

} // namespace tockwise
