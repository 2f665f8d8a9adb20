#include "platform/clipboard_pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tockwise {

void ClipboardPasteboard::setContents(std::unique_ptr<QMimeData> contents) {
  QGuiApplication::clipboard()->setMimeData(contents.release()); // which takes it
}

const QMimeData* ClipboardPasteboard::contents() const {
  return QGuiApplication::clipboard()->mimeData();
}

} // namespace tockwise
