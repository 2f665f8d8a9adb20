#include "platform/hotkeys/x11_hot_keys.h"

#include <QCoreApplication>

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace tockwise {
namespace {

constexpr std::chrono::milliseconds kSettle{50};
constexpr uint8_t kSent = 0x80; // of an event's code: another program sent it

// The events of the keyboard extension, whose own header is no C++.
constexpr size_t kKindOffset = 1;
constexpr uint8_t kNewKeyboard = 0;
constexpr uint8_t kNewMap = 1;
constexpr uint8_t kNewState = 2;
constexpr size_t kGroupOffset = 13; // of a state event: the effective layout

} // namespace

X11HotKeys::X11HotKeys(xcb_connection_t* connection)
    : m_connection(connection),
      m_root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {
  m_keyboardChanges.setSingleShot(true);
  m_keyboardChanges.setInterval(kSettle);
  connect(&m_keyboardChanges, &QTimer::timeout, this, [this] {
    keyboard().read();
    followKeyboard();
  });
}

X11HotKeys::~X11HotKeys() {
  ungrabAll();
  xcb_flush(m_connection);
}

X11Keyboard& X11HotKeys::keyboard() const {
  return m_keyboard ? *m_keyboard : m_keyboard.emplace(m_connection);
}

HotKeys::State X11HotKeys::state(HotKey key) const {
  return isAvailable() ? m_states[size_t(key) - 1] : State::NotAvailable;
}

QString X11HotKeys::detail() const {
  return isAvailable() ? QStringLiteral("X11")
                       : QStringLiteral("the X server does not tell of its keyboard");
}

void X11HotKeys::registerHotKeys() {
  if (!m_isWanted)
    m_keyboard.reset(); // it may have changed since somebody asked
  if (!isAvailable())
    return;
  if (!std::exchange(m_isWanted, true)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
    m_grabs = keyboard().grabs();
  }
  grabMissing();
}

void X11HotKeys::unregisterHotKeys() {
  if (!std::exchange(m_isWanted, false))
    return;
  QCoreApplication::instance()->removeNativeEventFilter(this);
  m_keyboardChanges.stop();
  const States before = m_states;
  ungrabAll();
  xcb_flush(m_connection);
  tellChange(before);
}

void X11HotKeys::grabMissing() {
  const States before = m_states;
  for (size_t i = 0; i < m_states.size(); ++i) {
    if (m_states[i] == State::Registered)
      continue;
    if (m_grabs.codes[i].empty())
      m_states[i] = State::NotAvailable;
    else
      m_states[i] = grab(m_grabs.codes[i]) ? State::Registered : State::Taken;
  }
  tellChange(before);
}

void X11HotKeys::ungrabAll() {
  for (size_t i = 0; i < m_states.size(); ++i) {
    if (m_states[i] == State::Registered)
      ungrab(m_grabs.codes[i]);
    m_states[i] = State::Off;
  }
}

void X11HotKeys::tellChange(const States& before) {
  if (m_states != before)
    Q_EMIT stateChanged();
}

bool X11HotKeys::grab(const std::vector<uint8_t>& codes) {
  std::vector<xcb_void_cookie_t> requests;
  for (const uint8_t code : codes) {
    for (const uint16_t locks : m_grabs.locks) {
      // Not by "owner events": a window of our own would be given the key in our place.
      requests.push_back(xcb_grab_key_checked(m_connection, 0, m_root, m_grabs.modifiers | locks,
                                              code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
  }
  bool isOurs = true;
  for (const xcb_void_cookie_t& request : requests) {
    if (xcb_generic_error_t* error = xcb_request_check(m_connection, request)) {
      isOurs = false;
      std::free(error);
    }
  }
  if (!isOurs)
    ungrab(codes);
  return isOurs;
}

void X11HotKeys::ungrab(const std::vector<uint8_t>& codes) {
  for (const uint8_t code : codes) {
    for (const uint16_t locks : m_grabs.locks)
      xcb_ungrab_key(m_connection, code, m_root, m_grabs.modifiers | locks);
  }
}

void X11HotKeys::followKeyboard() {
  if (!m_isWanted)
    return;
  KeyGrabs wanted = keyboard().grabs();
  if (wanted == m_grabs)
    return;
  const States before = m_states;
  ungrabAll();
  m_grabs = std::move(wanted);
  {
    const QSignalBlocker quietly(this);
    grabMissing();
  }
  tellChange(before);
}

bool X11HotKeys::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
  if (eventType != "xcb_generic_event_t")
    return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  const uint8_t code = event->response_type & uint8_t(~kSent);
  if (code == XCB_KEY_PRESS || code == XCB_KEY_RELEASE)
    keyEvent(message, code == XCB_KEY_PRESS);
  else if (code == keyboard().eventCode())
    keyboardEvent(static_cast<const uint8_t*>(message));
  else if (code == XCB_MAPPING_NOTIFY)
    m_keyboardChanges.start();
  // Qt must see a pressed key: windows that open now are opened by the user at its time.
  return false;
}

void X11HotKeys::keyboardEvent(const uint8_t* event) {
  switch (event[kKindOffset]) {
  case kNewKeyboard:
  case kNewMap:
    m_keyboardChanges.start();
    break;
  case kNewState:
    if (event[kGroupOffset] != keyboard().layout()) {
      keyboard().setLayout(event[kGroupOffset]);
      followKeyboard();
    }
    break;
  default:
    break;
  }
}

void X11HotKeys::keyEvent(const void* event, bool isPress) {
  xcb_key_press_event_t key; // a release has the same form
  std::memcpy(&key, event, sizeof key);
  // Only the server sends what a grab caught; another program could send whatever it likes.
  if (key.event != m_root || (key.response_type & kSent) != 0)
    return;
  if (!isPress) {
    m_repeat.release(key.detail, key.time);
    return;
  }
  for (size_t i = 0; i < m_states.size(); ++i) {
    const auto& codes = m_grabs.codes[i];
    if (m_states[i] != State::Registered ||
        std::find(codes.begin(), codes.end(), key.detail) == codes.end() ||
        !m_repeat.isNewPress(key.detail, key.time))
      continue;
    // Later: what a key does may run an event loop, and Qt has to see the event first.
    QMetaObject::invokeMethod(
        this, [this, number = int(i) + 1] { Q_EMIT pressed(number); }, Qt::QueuedConnection);
  }
}

} // namespace tockwise
