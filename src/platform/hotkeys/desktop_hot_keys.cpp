#include "platform/hotkeys/desktop_hot_keys.h"

#include "platform/hotkeys/bus_hot_keys.h"
#include "platform/hotkeys/x11_hot_keys.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>

namespace tockwise {
namespace {

class NoHotKeys final : public HotKeys {
 public:
  bool isAvailable() const override { return false; }
  void registerHotKeys() override {}
  void unregisterHotKeys() override {}
  State state(HotKey) const override { return State::NotAvailable; }
  QString detail() const override {
    return QStringLiteral("this display gives programs no hot keys");
  }
};

xcb_connection_t* x11Connection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

// On Wayland's own X server, too: it is told of keys only while a window on it has the keyboard.
bool isOnWayland() {
  return QGuiApplication::platformName().startsWith(u"wayland") ||
         (QGuiApplication::platformName() == u"xcb" &&
          qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland");
}

} // namespace

std::unique_ptr<HotKeys> desktopHotKeys() {
  if (isOnWayland())
    return std::make_unique<BusHotKeys>();
  if (xcb_connection_t* connection = x11Connection())
    return std::make_unique<X11HotKeys>(connection);
  return std::make_unique<NoHotKeys>();
}

} // namespace tockwise
