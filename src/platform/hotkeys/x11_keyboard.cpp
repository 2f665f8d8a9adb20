#include "platform/hotkeys/x11_keyboard.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <iterator>

namespace tockwise {
namespace {

struct Letter {
  xkb_keysym_t symbol;
  const char* place; // of the key on an American keyboard: row and column
};

// In the order of kHotKeys.
constexpr Letter kLetters[] = {
    {XKB_KEY_m, "AB07"}, {XKB_KEY_s, "AC02"}, {XKB_KEY_h, "AC06"}, {XKB_KEY_p, "AD10"}};

bool carries(xkb_keymap* keymap, xkb_keycode_t code, xkb_layout_index_t layout,
             xkb_keysym_t symbol) {
  const xkb_keysym_t* symbols = nullptr;
  const int count = xkb_keymap_key_get_syms_by_level(keymap, code, layout, 0, &symbols);
  return std::find(symbols, symbols + count, symbol) != symbols + count;
}

std::vector<uint8_t> codesIn(xkb_keymap* keymap, xkb_layout_index_t layout, xkb_keysym_t symbol) {
  std::vector<uint8_t> codes;
  for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap);
       code <= std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap), UINT8_MAX); ++code) {
    if (carries(keymap, code, layout, symbol))
      codes.push_back(uint8_t(code));
  }
  return codes;
}

std::vector<uint8_t> codesOf(xkb_keymap* keymap, xkb_layout_index_t active, const Letter& letter) {
  std::vector<uint8_t> codes = codesIn(keymap, active, letter.symbol);
  const xkb_layout_index_t layouts = xkb_keymap_num_layouts(keymap);
  for (xkb_layout_index_t layout = 0; layout < layouts && codes.empty(); ++layout)
    codes = codesIn(keymap, layout, letter.symbol);
  const xkb_keycode_t place = xkb_keymap_key_by_name(keymap, letter.place);
  if (codes.empty() && place != XKB_KEYCODE_INVALID && place <= UINT8_MAX)
    codes.push_back(uint8_t(place));
  return codes;
}

/// The modifiers that a key of one of those symbols sets, as a mask.
uint16_t modifierOf(xkb_keymap* keymap, const ModifierCodes& modifiers,
                    std::initializer_list<xkb_keysym_t> symbols) {
  uint16_t mask = 0;
  for (size_t modifier = 0; modifier < modifiers.size(); ++modifier) {
    for (const uint8_t code : modifiers[modifier]) {
      if (std::any_of(symbols.begin(), symbols.end(),
                      [&](xkb_keysym_t symbol) { return carries(keymap, code, 0, symbol); }))
        mask = uint16_t(mask | 1U << modifier);
    }
  }
  return mask;
}

/// One modifier of the mask: a key may stand under several.
uint16_t lowestOf(uint16_t mask) {
  return uint16_t(mask & -mask);
}

std::vector<uint16_t> combinationsOf(uint16_t mask) {
  std::vector<uint16_t> combinations;
  for (unsigned subset = 0; subset <= mask; ++subset) {
    if ((subset & ~unsigned(mask)) == 0)
      combinations.push_back(uint16_t(subset));
  }
  return combinations;
}

ModifierCodes readModifiers(xcb_connection_t* connection) {
  ModifierCodes modifiers;
  xcb_get_modifier_mapping_reply_t* reply =
      xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr);
  if (!reply)
    return modifiers;
  const xcb_keycode_t* code = xcb_get_modifier_mapping_keycodes(reply);
  for (auto& codes : modifiers) {
    for (int i = 0; i < reply->keycodes_per_modifier; ++i, ++code) {
      if (*code != 0)
        codes.push_back(*code);
    }
  }
  std::free(reply); // as xcb asks for
  return modifiers;
}

} // namespace

KeyGrabs keyGrabs(xkb_keymap* keymap, uint32_t layout, const ModifierCodes& modifiers) {
  KeyGrabs grabs;
  std::transform(std::begin(kLetters), std::end(kLetters), grabs.codes.begin(),
                 [&](const Letter& letter) { return codesOf(keymap, layout, letter); });
  uint16_t super = lowestOf(modifierOf(keymap, modifiers, {XKB_KEY_Super_L, XKB_KEY_Super_R}));
  if (super == 0)
    super = XCB_MOD_MASK_4;
  grabs.modifiers = uint16_t(XCB_MOD_MASK_CONTROL | super);
  const unsigned locks =
      XCB_MOD_MASK_LOCK | modifierOf(keymap, modifiers, {XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock});
  grabs.locks = combinationsOf(uint16_t(locks & ~unsigned(grabs.modifiers)));
  return grabs;
}

void X11Keyboard::Release::operator()(xkb_context* context) const {
  xkb_context_unref(context);
}

void X11Keyboard::Release::operator()(xkb_keymap* keymap) const {
  xkb_keymap_unref(keymap);
}

X11Keyboard::X11Keyboard(xcb_connection_t* connection)
    : m_connection(connection), m_context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES)) {
  const int set = xkb_x11_setup_xkb_extension(
      connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
      XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &m_eventCode, nullptr);
  if (set == 1)
    read();
}

void X11Keyboard::read() {
  const int32_t device = xkb_x11_get_core_keyboard_device_id(m_connection);
  if (device < 0 || !m_context)
    return;
  xkb_keymap* keymap = xkb_x11_keymap_new_from_device(m_context.get(), m_connection, device,
                                                      XKB_KEYMAP_COMPILE_NO_FLAGS);
  if (!keymap)
    return; // it changes at this moment: another event tells of that
  m_keymap.reset(keymap);
  m_modifiers = readModifiers(m_connection);
  if (xkb_state* state = xkb_x11_state_new_from_device(keymap, m_connection, device)) {
    m_layout = xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE);
    xkb_state_unref(state);
  }
}

} // namespace tockwise
