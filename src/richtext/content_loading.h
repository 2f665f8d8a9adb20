// What is pasted, dropped or chosen from the disk, made ready to stand in a text. It may be large
// and is of unknown origin, so the work is fit for a thread of its own.
#pragma once

#include "store/archive/attributed_text.h"

#include <QByteArray>
#include <QImage>
#include <QMimeData>
#include <QSizeF>
#include <QStringList>

#include <memory>
#include <variant>

namespace tockwise {

/// An image as decoded by the clipboard; the bytes of a picture; rich text; the formats of a
/// clipboard, copied; paths of files.
using IncomingContent =
    std::variant<QImage, QByteArray, AttributedText, std::shared_ptr<const QMimeData>, QStringList>;

struct LoadedContent {
  AttributedText text;
  QStringList refused; // what could not be taken, in words for the user
};

/// Reads content and scales its pictures for a frame (pixels). Any one thread.
LoadedContent loadContent(const IncomingContent& content, QSizeF frame);

} // namespace tockwise
