// The plain values in a keyed archive, in each of the forms that writers give them: inline, or in
// a record of their own, mutable or not. Nothing where an object is of another kind. Any thread.
#pragma once

#include "base/date.h"
#include "store/archive/keyed_archive.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace tockwise {

// Of the object with that uid.
std::optional<QString> stringAt(const KeyedArchive& archive, KeyedArchive::Uid uid);
std::optional<QByteArray> dataAt(const KeyedArchive& archive, KeyedArchive::Uid uid);
/// Integers, booleans as 0 and 1, and reals without a fraction.
std::optional<qint64> integerAt(const KeyedArchive& archive, KeyedArchive::Uid uid);
/// Finite numbers of any kind.
std::optional<double> realAt(const KeyedArchive& archive, KeyedArchive::Uid uid);
std::optional<bool> booleanAt(const KeyedArchive& archive, KeyedArchive::Uid uid);
/// Kept within the years 1 to 9999; the distant past of other calendars becomes ours.
std::optional<Date> dateAt(const KeyedArchive& archive, KeyedArchive::Uid uid);
/// The absolute form of a URL, or what there is of it.
std::optional<QString> urlAt(const KeyedArchive& archive, KeyedArchive::Uid uid);
/// The elements of an array, or of a set. An element may be no index.
std::optional<std::vector<KeyedArchive::Uid>> elementsAt(const KeyedArchive& archive,
                                                         KeyedArchive::Uid uid);
/// The keys and values of a dictionary; nothing when their numbers differ.
std::optional<std::vector<std::pair<KeyedArchive::Uid, KeyedArchive::Uid>>>
pairsAt(const KeyedArchive& archive, KeyedArchive::Uid uid);

// Of a field of a record, which holds the value itself or names the object.
std::optional<QString> stringField(const KeyedArchive& archive, KeyedArchive::Uid record,
                                   QStringView name);
std::optional<QByteArray> dataField(const KeyedArchive& archive, KeyedArchive::Uid record,
                                    QStringView name);
std::optional<qint64> integerField(const KeyedArchive& archive, KeyedArchive::Uid record,
                                   QStringView name);
std::optional<double> realField(const KeyedArchive& archive, KeyedArchive::Uid record,
                                QStringView name);

/// A name out of an archive as it may stand in a message: short, in one line.
QString inMessage(const QString& name);

} // namespace tockwise
