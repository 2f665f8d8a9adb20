// One item of the status menu with its texts, as the command line and D-Bus give it.
#pragma once

#include "menu/rich_text.h"

#include <QJsonArray>

namespace tockwise {

struct MenuItem {
  QString title;  // empty for a separator
  QString action; // the operation's name without colons, empty for none
  qint64 tag = 0; // queue index or list position
  bool enabled = false;
  bool checkable = false;
  bool checked = false;
  QString toolTip;
  bool separator = false;
  std::optional<RichText> richTitle;
  std::vector<MenuItem> submenu;
  QString reminderUUID; // the reminder the item is about, or ""

  friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

/// The runs as `show --json` and `menu --json` print them.
QJsonArray richTextToJson(const RichText& text);
/// The items as `menu --json` prints them.
QJsonArray menuToJson(const std::vector<MenuItem>& items);

} // namespace tockwise
