// What there is on the screen when a window is to be placed. Main thread.
#pragma once

#include <QList>
#include <QRect>

#include <functional>

class QScreen;
class QWidget;

namespace tockwise {

/// The screen that the user looks at: the one with the pointer.
QScreen* screenWithPointer();

/// The frames of our visible dialogs (questions, editors, alerts, panels) that are not left out.
QList<QRect> visibleDialogs(const std::function<bool(const QWidget&)>& isLeftOut);

} // namespace tockwise
