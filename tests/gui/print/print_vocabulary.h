// What the tests of printed pages have in common.
#pragma once

#include "print/print_job.h"
#include "print/print_pages.h"
#include "store/archive/text_archive.h"

namespace tockwise {

inline QPageLayout a4() {
  return paperOfSize(QPageSize(QPageSize::A4));
}

inline PrintEntry entry(const QString& description, const QByteArray& RTFData = {}) {
  return {Calendar::current().dateWithYear(2025, 3, 4, 9, 5, 0), description, RTFData};
}

inline AttributedText rich(const QString& words, const TextAttributes& attributes = {}) {
  AttributedText text;
  text.append(words, attributes);
  return text;
}

inline TextAttributes coloured(quint32 argb) {
  TextAttributes attributes;
  attributes.color = TextColor{argb, false, {}};
  return attributes;
}

inline PrintContents plain(std::vector<PrintEntry> entries) {
  return {PrintForm::Plain, WithoutRichText::PlainText, std::move(entries)};
}

inline PrintContents richQueue(std::vector<PrintEntry> entries) {
  return {PrintForm::Rich, WithoutRichText::PlainText, std::move(entries)};
}

inline PrintContents alerts(std::vector<PrintEntry> entries) {
  return {PrintForm::Rich, WithoutRichText::Nothing, std::move(entries)};
}

} // namespace tockwise
