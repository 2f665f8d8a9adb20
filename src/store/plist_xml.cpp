#include "store/plist_xml.h"

#include "store/plist_reader.h"

#include <QDateTime>
#include <QXmlStreamReader>

#include <cmath>
#include <limits>

namespace tockwise::plist {
namespace {

Error damaged(const QXmlStreamReader& xml, const QString& what) {
  return Error{
      Error::Kind::Damaged,
      QStringLiteral("not a sound property list, line %1: %2").arg(xml.lineNumber()).arg(what)};
}

std::optional<Value> parseInteger(const QString& text) {
  bool valid = false;
  const bool hexadecimal = text.startsWith(u"0x", Qt::CaseInsensitive);
  const qint64 number = hexadecimal ? text.mid(2).toLongLong(&valid, 16) : text.toLongLong(&valid);
  if (valid)
    return Value(number);
  text.toULongLong(&valid); // above what eight signed bytes hold: the largest
  return valid ? std::optional<Value>(std::numeric_limits<qint64>::max()) : std::nullopt;
}

// A leaf element by its name and text; nothing when the text is not of the kind.
std::optional<Value> parseLeaf(QStringView name, const QString& text) {
  if (name == u"string")
    return Value(text);
  if (name == u"true" || name == u"false")
    return Value(name == u"true");
  if (name == u"integer")
    return parseInteger(text.trimmed());
  if (name == u"real") {
    bool valid = false;
    const double number = text.trimmed().toDouble(&valid);
    return valid ? std::optional<Value>(number) : std::nullopt;
  }
  if (name == u"data") {
    const auto decoded = QByteArray::fromBase64Encoding(text.simplified().remove(u' ').toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional<Value>(*decoded) : std::nullopt;
  }
  if (name == u"date") {
    const QDateTime instant = QDateTime::fromString(text.trimmed(), Qt::ISODate);
    if (!instant.isValid())
      return std::nullopt;
    return Value(Date::fromUnixSeconds(double(instant.toMSecsSinceEpoch()) / 1000));
  }
  return std::nullopt;
}

struct Frame {
  bool isDictionary = false;
  QString key;
  bool hasKey = false;
  Value::Array array;
  Value::Dictionary dictionary;

  // False when a dictionary lacks a key for the value.
  bool put(Value value) {
    if (!isDictionary) {
      array.push_back(std::move(value));
      return true;
    }
    if (!hasKey)
      return false;
    hasKey = false;
    dictionary.emplace_back(std::move(key), std::move(value));
    return true;
  }

  Value finish() {
    if (!isDictionary)
      return Value(std::move(array));
    if (dictionary.size() == 1 && dictionary.front().first == u"CF$UID") {
      if (const qint64* index = dictionary.front().second.get<qint64>())
        return Value(Value::Uid{quint64(*index)});
    }
    return Value(std::move(dictionary));
  }
};

class XmlReader {
 public:
  explicit XmlReader(const QByteArray& bytes) : m_xml(bytes) {}

  Result<Value> read() {
    if (!m_xml.readNextStartElement() || m_xml.name() != u"plist")
      return damaged(m_xml, QStringLiteral("no property list"));
    while (!m_xml.atEnd() && !m_failure) {
      const auto token = m_xml.readNext();
      if (token == QXmlStreamReader::StartElement)
        start();
      else if (token == QXmlStreamReader::EndElement && m_xml.name() != u"plist")
        end();
    }
    if (m_xml.hasError())
      return damaged(m_xml, m_xml.errorString());
    if (m_failure)
      return *m_failure;
    if (!m_root)
      return damaged(m_xml, QStringLiteral("it is empty"));
    return std::move(*m_root);
  }

 private:
  void start() {
    const QString name = m_xml.name().toString();
    if (name == u"dict" || name == u"array") {
      m_stack.push_back({name == u"dict", {}, false, {}, {}});
      if (m_stack.size() > Reader::kMostDepth)
        m_failure = damaged(m_xml, QStringLiteral("nested beyond reason"));
      return;
    }
    const QString text = m_xml.readElementText();
    if (name == u"key") {
      if (m_stack.empty() || !m_stack.back().isDictionary || m_stack.back().hasKey) {
        m_failure = damaged(m_xml, QStringLiteral("a key in the wrong place"));
        return;
      }
      m_stack.back().key = text;
      m_stack.back().hasKey = true;
      return;
    }
    auto value = parseLeaf(name, text);
    if (value)
      put(std::move(*value));
    else
      m_failure = damaged(m_xml, QStringLiteral("a wrong <%1>").arg(name));
  }

  void end() {
    if (m_stack.empty())
      return;
    Value value = m_stack.back().finish();
    m_stack.pop_back();
    put(std::move(value));
  }

  void put(Value value) {
    if (m_stack.empty()) {
      if (m_root)
        m_failure = damaged(m_xml, QStringLiteral("more than one value"));
      m_root = std::move(value);
    } else if (!m_stack.back().put(std::move(value))) {
      m_failure = damaged(m_xml, QStringLiteral("a value without a key"));
    }
  }

  QXmlStreamReader m_xml;
  std::vector<Frame> m_stack;
  std::optional<Value> m_root;
  std::optional<Error> m_failure;
};

} // namespace

bool isXml(const QByteArray& bytes) {
  const QByteArray start = bytes.left(512).trimmed();
  return start.startsWith("<?xml") || start.startsWith("\xEF\xBB\xBF<?xml") ||
         start.startsWith("<!DOCTYPE plist") || start.startsWith("<plist");
}

Result<Value> readXml(const QByteArray& bytes) {
  return XmlReader(bytes).read();
}

} // namespace tockwise::plist
