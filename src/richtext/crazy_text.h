// The playful restyling of a selection.
#pragma once

#include <QFont>
#include <QList>
#include <QTextCursor>

#include <functional>

namespace tockwise {

/// Where the accidents come from.
struct CrazyChance {
  /// An integer from 0 to most, each as likely as the others.
  std::function<int(int most)> upTo;
  /// A number from 0 to below 1.
  std::function<double()> part;
};

/// The process's own source of chance.
CrazyChance systemChance();

/// Every style of every family that is installed. Main thread.
QList<QFont> installedFonts();

/// Gives each character of the selection a font of fonts (never the first), a size of 17 to 36
/// points and a colour by chance, in one step of undo; attachments stay as they are, with a line
/// in the log. What else a character carries stays too. Nothing selected: does nothing.
void makeCrazy(const QTextCursor& selection, const QList<QFont>& fonts, const CrazyChance& chance);

} // namespace tockwise
