// What the context menu of a text has beside the usual.
#pragma once

#include <QUrl>

#include <functional>

class QMenu;
class QTextEdit;

namespace tockwise {

/// Adds the link, where there is one, and the writing direction of the paragraph. Main thread.
void addToMenu(QMenu& menu, QTextEdit& view, const QUrl& link,
               const std::function<void()>& openLink);

} // namespace tockwise
