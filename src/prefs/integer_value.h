// Reading a whole number from what was typed.
#pragma once

#include <QStringView>

namespace tockwise {

/// The whole number that text starts with, as a lenient reader takes it: blanks before it are
/// skipped and what follows it is ignored, so "12abc" is 12 and "x" is 0. Numbers that do not fit
/// are the largest or the smallest that does. Any thread.
qint64 integerValue(QStringView text);

} // namespace tockwise
