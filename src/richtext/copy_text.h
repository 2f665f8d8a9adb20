// "Copy" of a reminder.
#pragma once

#include "base/result.h"

#include <QByteArray>

namespace tockwise {

class Pasteboard;

/// Puts the rich text of a reminder on the pasteboard: as our own archive, RTFD, RTF, HTML and
/// plain text. archivedText is the reminder's reminderRTFs. Empty data and an archive of anything
/// but a text storage leave the pasteboard as it is; an error, handed in or met, is logged and
/// leaves it likewise. Main thread.
void copyMenuItem(const Result<QByteArray>& archivedText, Pasteboard& pasteboard);

} // namespace tockwise
