// What a fuzz target is: a function of bytes. fuzz_target.cpp makes a program of it.
#pragma once

#include <QByteArray>

namespace tockwise {

/// Reads the bytes, and aborts when what came of them does not hold together.
void fuzz(const QByteArray& bytes);

} // namespace tockwise
