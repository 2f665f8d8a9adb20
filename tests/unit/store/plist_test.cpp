#include "store/plist_reader.h"
#include "store/plist_writer.h"
#include "store/plist_xml.h"

#include <QTest>

#include <limits>

using namespace tockwise;

namespace {

QByteArray encoded(const Value& value) {
  plist::Writer writer;
  return writer.finish(writer.value(value));
}

Value decoded(const QByteArray& bytes) {
  const auto reader = plist::Reader::open(bytes);
  return reader ? reader->value(reader->root()) : Value();
}

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

} // namespace

class PlistTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void everyKindSurvives_data() {
    QTest::addColumn<int>("row");
    for (int i = 0; i < int(samples().size()); ++i)
      QTest::addRow("%d", i) << i;
  }
  void everyKindSurvives() {
    QFETCH(int, row);
    const Value value = samples()[size_t(row)];
    QCOMPARE(decoded(encoded(value)), value);
  }

  void equalObjectsAreWrittenOnce() {
    const QString longText(1000, u'x');
    QVERIFY(encoded(Value(QStringList(100, longText))).size() < 2000);
  }

  void manyObjectsNeedWiderReferences() {
    Value::Array array;
    for (int i = 0; i < 70000; ++i)
      array.push_back(QString::number(i));
    const Value value(array);
    QCOMPARE(decoded(encoded(value)), value);
  }

  void smallIntegersAreUnsignedAndLargeOnesSigned() {
    // One array of the bytes FF (1 byte), FFFF, FFFFFFFF and eight times FF.
    QByteArray file("bplist00");
    const qsizetype start = file.size();
    file += QByteArray::fromHex("10ff"
                                "11ffff"
                                "12ffffffff"
                                "13ffffffffffffffff"
                                "a400010203");
    QByteArray table;
    for (int offset : {0, 2, 5, 10, 19})
      table += char(start + offset);
    const auto tableAt = char(file.size());
    file += table + QByteArray::fromHex("000000000000"
                                        "01"
                                        "01"
                                        "0000000000000005"
                                        "0000000000000004"
                                        "00000000000000");
    file += tableAt;
    QCOMPARE(decoded(file), Value(Value::Array{Value(qint64(255)), Value(qint64(65535)),
                                               Value(qint64(4294967295)), Value(qint64(-1))}));
  }

  void aDictionaryIsSearchedByKey() {
    const QByteArray bytes =
        encoded(Value::Dictionary{{text("a"), Value(1)}, {text("é"), Value(2)}});
    const auto reader = plist::Reader::open(bytes);
    QVERIFY(reader.ok());
    QCOMPARE(reader->integer(*reader->find(reader->root(), u"é")), 2);
    QVERIFY(!reader->find(reader->root(), u"b"));
  }

  void theXmlFormIsRead() {
    const QByteArray xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\"><dict><key>a</key><array><integer>-5</integer><true/><false/>"
        "<real>1.5</real><string>x &amp; y</string><data>\n\tAAEC\n\t</data>"
        "<date>2001-01-01T00:00:10Z</date><dict/></array>"
        "<key>u</key><dict><key>CF$UID</key><integer>7</integer></dict></dict></plist>";
    QVERIFY(plist::isXml(xml));
    const auto value = plist::readXml(xml);
    QVERIFY(value.ok());
    QCOMPARE(*value,
             Value(Value::Dictionary{
                 {text("a"), Value::Array{Value(-5), Value(true), Value(false), Value(1.5),
                                          Value(text("x & y")), Value(QByteArray("\0\1\2", 3)),
                                          Value(Date{10}), Value(Value::Dictionary{})}},
                 {text("u"), Value(Value::Uid{7})}}));
  }

  void wrongXmlIsRefused_data() {
    QTest::addColumn<QByteArray>("xml");
    for (const char* body :
         {"", "<dict><string>x</string></dict>", "<dict><key>a</key></plist>",
          "<integer>x</integer>", "<data>***</data>", "<date>yesterday</date>", "<nonsense/>",
          "<string>a</string><string>b</string>", "<array><key>a</key></array>"})
      QTest::newRow(body) << QByteArray("<?xml version=\"1.0\"?><plist>") + body + "</plist>";
    QByteArray deep("<?xml version=\"1.0\"?><plist>");
    for (int i = 0; i < 100000; ++i)
      deep += "<array>";
    QTest::newRow("deep") << deep;
    QTest::newRow("entities") << QByteArray(
        "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaaaaaaaaaaaa\">"
        "<!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
        "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">"
        "]><plist><string>&c;&c;&c;&c;&c;</string></plist>");
  }
  void wrongXmlIsRefused() {
    QFETCH(QByteArray, xml);
    const auto value = plist::readXml(xml);
    QVERIFY(!value);
    QCOMPARE(value.error().kind, Error::Kind::Damaged);
  }

 private:
  static std::vector<Value> samples() {
    Value deep{Value::Array{}};
    for (int i = 0; i < 400; ++i)
      deep = Value(Value::Array{deep});
    return {Value(true),
            Value(false),
            Value(0),
            Value(255),
            Value(256),
            Value(65536),
            Value(qint64(1) << 32),
            Value(-1),
            Value(std::numeric_limits<qint64>::min()),
            Value(std::numeric_limits<qint64>::max()),
            Value(0.1),
            Value(-1e300),
            Value(Date{123456.789}),
            Value(kDistantPast),
            Value(QByteArray()),
            Value(QByteArray(100000, 'x')),
            Value(QString()),
            Value(text("plain")),
            Value(text("ünïcode 😀")),
            Value(QString(20, u'x')),
            Value(QString(1, QChar(0xD800))),
            Value(QStringLiteral("a\0b")),
            Value(Value::Uid{300}),
            Value(Value::Array{}),
            Value(Value::Dictionary{}),
            Value(Value::Array(20, Value(text("same")))),
            Value(Value::Dictionary{{text("k"), Value::Array{Value(1), Value(text("k"))}}}),
            deep};
  }
};

QTEST_GUILESS_MAIN(PlistTest)
#include "plist_test.moc"
