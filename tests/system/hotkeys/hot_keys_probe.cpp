// The hot keys of a Wayland desktop on a line of their own: "on" and "off" come on stdin;
// every change of the states and every pressed key goes to stdout.
#include "platform/hotkeys/bus_hot_keys.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <unistd.h>

#include <algorithm>
#include <cstdio>

using namespace tockwise;

namespace {

const char* nameOf(HotKeys::State state) {
  switch (state) {
  case HotKeys::State::Off:
    return "off";
  case HotKeys::State::Pending:
    return "pending";
  case HotKeys::State::Registered:
    return "registered";
  case HotKeys::State::Taken:
    return "taken";
  case HotKeys::State::NotAvailable:
    return "unavailable";
  }
  return "?";
}

void printState(const HotKeys& keys) {
  for (const HotKey key : kHotKeys)
    std::printf("%s ", nameOf(keys.state(key)));
  std::printf("| %s | %s\n", keys.isAvailable() ? "available" : "none",
              qUtf8Printable(keys.detail()));
  std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  BusHotKeys keys;
  QObject::connect(&keys, &HotKeys::stateChanged, [&] { printState(keys); });
  QObject::connect(&keys, &HotKeys::pressed, [](int number) {
    std::printf("pressed %d %s\n", number, qgetenv("XDG_ACTIVATION_TOKEN").constData());
    std::fflush(stdout);
  });
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, [&] {
    char bytes[64]; // several words may come at once
    const ssize_t count = ::read(0, bytes, sizeof bytes);
    for (const QByteArray& word : QByteArray(bytes, std::max<ssize_t>(count, 0)).split('\n')) {
      if (word == "on")
        keys.registerHotKeys();
      else if (word == "off")
        keys.unregisterHotKeys();
    }
    if (count <= 0)
      QCoreApplication::quit();
  });
  printState(keys);
  return QCoreApplication::exec();
}
