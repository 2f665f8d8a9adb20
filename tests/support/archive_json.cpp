#include "support/archive_json.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <optional>

namespace tockwise {
namespace {

constexpr qsizetype kLongData = 256;

// A parser of JSON that keeps integers and reals apart. The fixtures are trusted: what is no JSON
// gives an error, and nesting is not limited.
class JsonParser {
 public:
  explicit JsonParser(const QString& text) : m_text(text) {}

  Result<Value> parse() {
    auto value = parseValue();
    skipSpace();
    if (!value || m_at != m_text.size())
      return Error{Error::Kind::Damaged, QStringLiteral("no JSON at %1").arg(m_at)};
    return std::move(*value);
  }

 private:
  void skipSpace() {
    while (m_at < m_text.size() && m_text[m_at].isSpace())
      ++m_at;
  }

  bool take(QStringView word) {
    skipSpace();
    if (!QStringView(m_text).mid(m_at).startsWith(word))
      return false;
    m_at += word.size();
    return true;
  }

  std::optional<Value> parseValue() {
    if (take(u"{"))
      return parseDictionary();
    if (take(u"["))
      return parseArray();
    if (take(u"\"")) {
      auto text = parseString();
      return text ? std::optional<Value>(std::move(*text)) : std::nullopt;
    }
    if (take(u"null"))
      return Value();
    if (take(u"true"))
      return Value(true);
    if (take(u"false"))
      return Value(false);
    return parseNumber();
  }

  std::optional<Value> parseArray() {
    Value::Array array;
    if (take(u"]"))
      return Value(std::move(array));
    do {
      auto element = parseValue();
      if (!element)
        return std::nullopt;
      array.push_back(std::move(*element));
    } while (take(u","));
    return take(u"]") ? std::optional<Value>(std::move(array)) : std::nullopt;
  }

  std::optional<Value> parseDictionary() {
    Value::Dictionary dictionary;
    if (take(u"}"))
      return Value(std::move(dictionary));
    do {
      auto key = take(u"\"") ? parseString() : std::nullopt;
      auto element = key && take(u":") ? parseValue() : std::nullopt;
      if (!element)
        return std::nullopt;
      dictionary.emplace_back(std::move(*key), std::move(*element));
    } while (take(u","));
    return take(u"}") ? std::optional<Value>(std::move(dictionary)) : std::nullopt;
  }

  // Behind the opening quote.
  std::optional<QString> parseString() {
    static const QString escapes = QStringLiteral("\"\\/bfnrt");
    static const QString meanings = QStringLiteral("\"\\/\b\f\n\r\t");
    QString text;
    for (; m_at < m_text.size() && m_text[m_at] != u'"'; ++m_at) {
      if (m_text[m_at] != u'\\') {
        text += m_text[m_at];
        continue;
      }
      ++m_at;
      if (m_at >= m_text.size())
        return std::nullopt;
      if (m_text[m_at] == u'u') {
        text += QChar(char16_t(m_text.mid(m_at + 1, 4).toUShort(nullptr, 16)));
        m_at += 4;
      } else if (const qsizetype place = escapes.indexOf(m_text[m_at]); place >= 0) {
        text += meanings[place];
      } else {
        return std::nullopt;
      }
    }
    return take(u"\"") ? std::optional(text) : std::nullopt;
  }

  std::optional<Value> parseNumber() {
    qsizetype end = m_at;
    while (end < m_text.size() && QStringView(u"+-.0123456789eE").contains(m_text[end]))
      ++end;
    const QString number = m_text.mid(m_at, end - m_at);
    m_at = end;
    bool valid = false;
    const bool isReal = number.contains(u'.') || number.contains(u'e', Qt::CaseInsensitive);
    const Value value = isReal ? Value(number.toDouble(&valid)) : Value(number.toLongLong(&valid));
    return valid ? std::optional(value) : std::nullopt;
  }

  const QString& m_text;
  qsizetype m_at = 0;
};

QString shortText(const Value& value) {
  if (value.isNull())
    return QStringLiteral("null");
  if (const bool* flag = value.get<bool>())
    return *flag ? QStringLiteral("true") : QStringLiteral("false");
  if (const qint64* number = value.get<qint64>())
    return QStringLiteral("integer %1").arg(*number);
  if (const double* number = value.get<double>())
    return QStringLiteral("real %1").arg(*number, 0, 'g', 17);
  if (const QString* text = value.get<QString>())
    return QStringLiteral("\"%1\"").arg(text->left(80));
  if (const auto* array = value.get<Value::Array>())
    return QStringLiteral("an array of %1").arg(array->size());
  if (const auto* dictionary = value.get<Value::Dictionary>()) {
    QStringList keys;
    for (const auto& [key, element] : *dictionary)
      keys.append(key);
    keys.sort();
    return QStringLiteral("a dictionary of ") + keys.join(u", ");
  }
  return QStringLiteral("something else");
}

QString differenceAt(const QString& path, const Value& expected, const Value& actual) {
  const QString otherwise =
      QStringLiteral("%1: expected %2, got %3").arg(path, shortText(expected), shortText(actual));
  const auto* wantedArray = expected.get<Value::Array>();
  const auto* array = actual.get<Value::Array>();
  if (wantedArray && array && wantedArray->size() == array->size()) {
    for (size_t i = 0; i < array->size(); ++i) {
      const QString place = QStringLiteral("%1[%2]").arg(path).arg(i);
      if (const QString found = differenceAt(place, (*wantedArray)[i], (*array)[i]);
          !found.isEmpty())
        return found;
    }
    return {};
  }
  const auto* wantedPairs = expected.get<Value::Dictionary>();
  const auto* pairs = actual.get<Value::Dictionary>();
  if (wantedPairs && pairs && wantedPairs->size() == pairs->size()) {
    for (const auto& [key, wanted] : *wantedPairs) {
      const Value* found = actual.find(key);
      if (!found)
        return otherwise;
      if (const QString deeper = differenceAt(path + u'.' + key, wanted, *found); !deeper.isEmpty())
        return deeper;
    }
    return {};
  }
  return expected == actual ? QString() : otherwise;
}

} // namespace

QStringList archiveFixtures(const QString& folder, const QString& pattern) {
  QStringList paths;
  for (const char* root : {TOCKWISE_TEST_DATA "/archives", TOCKWISE_GENUINE_FIXTURES}) {
    const QDir there(QString::fromLocal8Bit(root) + u'/' + folder);
    if (!*root || !there.exists() || !paths.isEmpty())
      continue; // what the tree has itself is not taken twice
    for (const QString& name : there.entryList({pattern}, QDir::Files, QDir::Name)) {
      if (there.exists(name + QStringLiteral(".json")))
        paths.append(there.filePath(name));
    }
  }
  return paths;
}

QByteArray readFixture(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    qFatal("no fixture %s", qPrintable(path));
  return file.readAll();
}

Value expectedOf(const QString& path) {
  auto value = parseJson(readFixture(path + QStringLiteral(".json")));
  if (!value)
    qFatal("%s: %s", qPrintable(path), qPrintable(value.error().message));
  return std::move(value).value();
}

Result<Value> parseJson(const QByteArray& text) {
  const QString decoded = QString::fromUtf8(text);
  return JsonParser(decoded).parse();
}

QString difference(const Value& expected, const Value& actual) {
  return differenceAt(QStringLiteral("root"), expected, actual);
}

Value dataJson(const QByteArray& bytes) {
  if (bytes.size() <= kLongData)
    return Value::Dictionary{{QStringLiteral("$data"), QString::fromLatin1(bytes.toHex())}};
  const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
  return Value::Dictionary{{QStringLiteral("$data_length"), qint64(bytes.size())},
                           {QStringLiteral("$data_sha256"), QString::fromLatin1(hash)}};
}

} // namespace tockwise
