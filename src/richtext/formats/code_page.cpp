#include "richtext/formats/code_page.h"

#include <unicode/ucnv.h>

#include <algorithm>

namespace tockwise {
namespace {

const QByteArray kWestern("windows-1252");
constexpr qsizetype kMostConverters = 64;

QByteArray nameOf(int codePage) {
  switch (codePage) {
  case 10000:
    return "macintosh";
  case 10001:
    return "cp932";
  case 10007:
    return "x-mac-cyrillic";
  case 10029:
    return "x-mac-centraleurroman";
  case 65001:
    return "UTF-8";
  case 28591:
    return kWestern;
  default:
    break;
  }
  const bool isWindows = codePage == 874 || (codePage >= 1250 && codePage <= 1258);
  return (isWindows ? "windows-" : "cp") + QByteArray::number(codePage);
}

bool isAscii(QByteArrayView bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return uchar(byte) < 0x80; });
}

} // namespace

struct CodePages::Converter {
  explicit Converter(UConverter* open) : handle(open) {}
  ~Converter() { ucnv_close(handle); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  QString decode(QByteArrayView bytes) {
    QString text;
    const char* source = bytes.data();
    const char* const end = source + bytes.size();
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    ucnv_reset(handle);
    while (status == U_BUFFER_OVERFLOW_ERROR) {
      char16_t piece[512];
      char16_t* target = piece;
      status = U_ZERO_ERROR;
      ucnv_toUnicode(handle, &target, std::end(piece), &source, end, nullptr, true, &status);
      text.append(reinterpret_cast<const QChar*>(piece), target - piece);
    }
    return text;
  }

  UConverter* handle;
};

CodePages::CodePages() = default;
CodePages::~CodePages() = default;

CodePages::Converter* CodePages::converter(const QByteArray& name) {
  const auto known = m_converters.constFind(name);
  if (known != m_converters.constEnd())
    return known->get();
  if (m_converters.size() >= kMostConverters) // whoever names that many means no good
    return nullptr;
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const open = ucnv_open(name.constData(), &status);
  std::shared_ptr<Converter> made;
  if (U_SUCCESS(status) && open)
    made = std::make_shared<Converter>(open);
  return m_converters.insert(name, made)->get();
}

QString CodePages::decode(QByteArrayView bytes, int codePage) {
  if (isAscii(bytes))
    return QString::fromLatin1(bytes);
  return decode(bytes, nameOf(codePage));
}

QString CodePages::decode(QByteArrayView bytes, const QByteArray& name) {
  Converter* found = converter(name);
  if (!found)
    found = converter(kWestern);
  return found ? found->decode(bytes) : QString::fromLatin1(bytes);
}

} // namespace tockwise
