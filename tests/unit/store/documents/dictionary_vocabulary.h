// What the tests of data dictionaries have in common.
#pragma once

#include "store/documents/data_dictionary.h"
#include "support/document_builder.h"
#include "support/same_columns.h"

#include <QFile>

namespace tockwise {

inline constexpr ReminderQueue::Pads kPads{DocumentBuilder::kNow, true, false};

inline QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

inline DataDictionary readFor(DictionaryUse use, const QByteArray& archive) {
  auto dictionary = unarchivedDataDictionary(archive, kPads, use);
  if (!dictionary)
    qFatal("%s", qPrintable(dictionary.error().message));
  return std::move(dictionary).value();
}

inline DataDictionary toReplace(const QByteArray& archive) {
  return readFor(DictionaryUse::Replace, archive);
}

inline DataDictionary toMerge(const QByteArray& archive) {
  return readFor(DictionaryUse::Merge, archive);
}

/// A document of tests/data/documents.
inline QByteArray recorded(const char* name) {
  QFile file(QStringLiteral(TOCKWISE_TEST_DATA "/documents/%1").arg(text(name)));
  if (!file.open(QIODevice::ReadOnly))
    qFatal("%s", qPrintable(file.errorString()));
  return file.readAll();
}

/// A document of that many reminders, named A, B, C and so on.
inline DocumentBuilder documentOf(int reminders) {
  DocumentBuilder builder;
  for (int i = 0; i < reminders; ++i)
    builder.addReminder(QString(QChar(u'A' + i)));
  return builder;
}

} // namespace tockwise
