// The small picture that keeps the place of content that is still being read.
#pragma once

#include <QPalette>
#include <QSizeF>
#include <QString>

class QTextDocument;

namespace tockwise {

/// The name of the document's resource.
QString placePictureName();

/// Adds the picture, in colours of the palette, to the document's resources; returns its size in
/// pixels. Main thread.
QSizeF addPlacePicture(QTextDocument& document, const QPalette& palette);

} // namespace tockwise
