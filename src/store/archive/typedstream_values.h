// What the objects of an older archive stand for. Nothing where an object is of another kind, or
// is damaged. Any one thread.
#pragma once

#include "store/archive/typedstream_tree.h"

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace tockwise::typedstream {

struct Font {
  QString name;
  double size = 0; // points
};

struct Color {
  /// 1, 2: red, green, blue, alpha; 3, 4: white, alpha; 5: CMYK, alpha; 6: named.
  qint64 space = 0;
  std::vector<double> components;
  Item catalog;  // of a named colour, strings
  Item name;     //
  Item fallback; // a colour
};

struct Link {
  Item base; // an address, or nil
  Item relative;
};

struct AttributeRun {
  qsizetype length = 0;           // UTF-16 units
  std::optional<Item> attributes; // a dictionary
};

struct AttributedString {
  Item text; // a string
  /// Damaged ones are left out: then the runs do not cover the text.
  std::vector<AttributeRun> runs;
};

std::optional<QString> stringOf(const Tree& tree, const Item& item);
std::optional<QByteArray> dataOf(const Tree& tree, const Item& item);
/// Integer, Unsigned or Real; a number of type c is a boolean when it is 0 or 1.
std::optional<Item> numberOf(const Tree& tree, const Item& item);
bool isBoolean(const Item& number);
/// Seconds since 2001-01-01 00:00 UTC.
std::optional<double> dateOf(const Tree& tree, const Item& item);
/// Of an array or a set.
std::optional<std::vector<Item>> elementsOf(const Tree& tree, const Item& item);
std::optional<std::vector<std::pair<Item, Item>>> pairsOf(const Tree& tree, const Item& item);
std::optional<Link> linkOf(const Tree& tree, const Item& item);
std::optional<Font> fontOf(const Tree& tree, const Item& item);
std::optional<Color> colorOf(const Tree& tree, const Item& item);
/// The container of an attached file: of an attachment, or of its file wrapper.
std::optional<QByteArray> fileContainerOf(const Tree& tree, const Item& item);
std::optional<AttributedString> attributedStringOf(const Tree& tree, const Item& item);

} // namespace tockwise::typedstream
