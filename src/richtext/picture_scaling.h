// Pictures in reminders, kept small enough for editor, menu and alert.
#pragma once

#include "store/archive/attributed_text.h"

#include <QImage>
#include <QSizeF>

#include <optional>

namespace tockwise {

/// No picture in a text is wider than the lesser of this and 95 % of the frame (pixels).
inline constexpr double kWidestPicture = 300.0;
/// What is read into memory to be scaled: more is not decoded whole.
inline constexpr qint64 kMostPicturePixels = 128LL * 1024 * 1024;
inline constexpr qint64 kMostPictureBytes = qint64(64) * 1024 * 1024;

/// Draws image into a new one of size, scaled by the smaller of the two ratios and centred; what
/// it leaves free is transparent. An image of that size is returned as it is.
QImage imageByScalingProportionallyToSize(const QImage& image, QSize size);

/// The attachment with its picture scaled to that frame (pixels) as "image.jpg", a JPEG of full
/// quality; nothing when it is narrow enough. A picture that cannot be read stands as the
/// placeholder. Any one thread.
std::optional<TextAttachment> resizedAttachmentImage(const TextAttachment& attachment,
                                                     QSizeF frame);

/// A picture that is already decoded, for a text in that frame: as "image.jpg" where it must be
/// scaled, else as the lossless "image.png". Nothing for an empty image. Any one thread.
std::optional<TextAttachment> attachmentFor(const QImage& image, QSizeF frame);

/// Whether resizedAttachmentImage() would give another; reads the header only. Any one thread.
bool isTooWide(const TextAttachment& attachment, QSizeF frame);

/// Scales every picture of the text that is too wide for that frame (pixels), and returns how many
/// it replaced. Any one thread.
int scaleAttachments(AttributedText& text, QSizeF frame);

/// Scales every picture of the text that is too wide for a frame of 300 by 300, and returns how
/// many it replaced. Any one thread.
int scaleAttachments(AttributedText& text);

} // namespace tockwise
