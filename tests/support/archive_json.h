// Archive fixtures: files with their expected contents beside them as JSON, in a vocabulary of its
// own. Plain JSON stands for itself; dictionaries with one key that starts with "$" stand for what
// JSON lacks: {"$date": seconds}, {"$data": hex} (or "$data_length" and "$data_sha256"),
// {"$dict": {}}, {"$set": []}, {"$attributed": {}}, {"$font": {}}, {"$object": {}}, and so on.
// {"error": why} marks a file that is to be refused or repaired.
#pragma once

#include "base/result.h"
#include "store/archive/keyed_archive.h"
#include "store/archive/text_archive.h"
#include "store/value.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tockwise {

/// The paths of the files in tests/data/archives/<folder>, and in the same folder of the genuine
/// fixtures where there are such (TOCKWISE_GENUINE_FIXTURES), whose JSON stands beside them.
QStringList archiveFixtures(const QString& folder, const QString& pattern);
/// Fails the program when there is no such file.
QByteArray readFixture(const QString& path);
/// The JSON beside the fixture.
Value expectedOf(const QString& path);

/// Numbers with a point or an exponent are reals, others integers.
Result<Value> parseJson(const QByteArray& text);

/// Where actual is not what was expected, with the path to it; empty when they are equal. The order
/// of dictionaries does not count.
QString difference(const Value& expected, const Value& actual);

/// What a keyed archive holds, in the vocabulary, read without the text codecs.
Value jsonOf(const KeyedArchive& archive, KeyedArchive::Uid uid);
/// bytes as {"$data": …}.
Value dataJson(const QByteArray& bytes);

/// What of an {"$attributed": {}} an AttributedText can tell: for each run its length and the
/// values of its attributes, made comparable (colours as 0xAARRGGBB, defaults filled in).
Value describeExpected(const Value& attributed);
/// Whether attributes that are only carried count.
enum class Others { Described, LeftOut };
/// The same of a text that was read.
Value describe(const AttributedText& text, Others others = Others::Described);

/// text without the objects that its values were read from; attributes that are only carried go.
AttributedText withoutOriginals(AttributedText text);

} // namespace tockwise
