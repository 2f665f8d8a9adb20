// Plain values as keyed archives.
#include "store/archive/keyed_archive.h"
#include "store/archive/keyed_value.h"
#include "support/archive_builder.h"

#include <QTest>

#include <limits>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

Value::Dictionary sampleDictionary() {
  return {{text("dates"), Value::Array{Date{0}, Date{700000000.5}, kDistantPast}},
          {text("strings"), QStringList{text("one"), text("zwei é"), text("$null"), text("")}},
          {text("numbers"), Value::Array{qint64(1), 1.0, true, std::numeric_limits<qint64>::min(),
                                         std::numeric_limits<qint64>::max(), -0.1}},
          {text("data"), Value::Array{QByteArray("abc"), QByteArray(), QByteArray(500, 'x')}},
          {text("nothing"), Value()},
          {text("nested"), Value::Array{Value::Array(), Value::Dictionary()}}};
}

} // namespace

class KeyedValueTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aValueReadsBackAsItWasWritten() {
    const Value value(sampleDictionary());
    const auto again = unarchiveValue(archiveValue(value));
    QVERIFY2(again.ok(), qPrintable(again.ok() ? QString() : again.error().message));
    QVERIFY(*again == value);
  }

  void equalScalarsAreWrittenOnceAndUnequalTypesApart() {
    const Value value(Value::Array{text("a"), text("a"), qint64(1), qint64(1), 1.0, 1.0, true, true,
                                   Date{5}, Date{5}});
    const auto archive = KeyedArchive::open(archiveValue(value));
    QVERIFY(archive.ok());
    // $null, the array and its class, a text, an integer, a real, a boolean, a date and its class
    QCOMPARE(archive.value()->count(), 9U);
  }

  void theTextThatNamesNothingIsAText() {
    QVERIFY(*unarchiveValue(archiveValue(text("$null"))) == Value(text("$null")));
  }

  void aNestedArchiveIsPlainData() {
    const QByteArray inner = archiveValue(text("inner"));
    const auto outer = unarchiveValue(archiveValue(Value::Array{inner}));
    QVERIFY(outer.ok());
    QVERIFY(*outer == Value(Value::Array{inner}));
  }

  void mutableAndWrappedFormsReadLikeTheOthers() {
    ArchiveBuilder builder;
    const auto record = [&builder](const char* field, Value value, const QStringList& chain) {
      return Value(builder.record({{text(field), std::move(value)}}, chain));
    };
    const Value::Array elements{
        record("NS.string", text("a"), {text("NSMutableString"), text("NSString")}),
        record("NS.bytes", QByteArray("b\xc3\xa9"), {text("NSString")}),
        record("NS.data", QByteArray("c"), {text("NSMutableData"), text("NSData")}),
        record("NS.intval", qint64(4), {text("NSNumber"), text("NSValue")}),
        record("NS.dblval", 5.0, {text("NSNumber"), text("NSValue")}),
        record("NS.boolval", true, {text("NSNumber"), text("NSValue")}),
        record("NS.time", 7.5, {text("SomeOwnDate"), text("NSDate")}),
        Value(builder.add(Date{8})),
    };
    const auto value = unarchiveValue(builder.finish(builder.array(elements)));
    QVERIFY2(value.ok(), qPrintable(value.ok() ? QString() : value.error().message));
    QVERIFY(*value == Value(Value::Array{text("a"), text("bé"), QByteArray("c"), qint64(4), 5.0,
                                         true, Date{7.5}, Date{8}}));
  }

  void datesAreKeptWithinTheCalendar_data() {
    QTest::addColumn<double>("stored");
    QTest::addColumn<double>("read");
    QTest::newRow("another calendar's distant past") << -63114076800.0 << kDistantPast.seconds;
    QTest::newRow("beyond year 9999") << 1e15 << 252423993599.0;
    QTest::newRow("ordinary") << 12.25 << 12.25;
  }
  void datesAreKeptWithinTheCalendar() {
    QFETCH(double, stored);
    QFETCH(double, read);
    const auto value = unarchiveValue(archiveValue(Date{stored}));
    QVERIFY(value.ok());
    QCOMPARE(value->get<Date>()->seconds, read);
  }

  void aDateThatIsNoNumberIsRefused() {
    for (const double seconds :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
      QCOMPARE(unarchiveValue(archiveValue(Date{seconds})).error().kind, Error::Kind::Damaged);
  }

  void anUnknownClassIsNamedInTheRefusal() {
    ArchiveBuilder builder;
    const auto thing = builder.record({}, {text("XYZThing")});
    const auto value = unarchiveValue(builder.finish(builder.array({thing})));
    QVERIFY(!value.ok());
    QVERIFY2(value.error().message.contains(text("XYZThing")), qPrintable(value.error().message));
  }

  void aKeyThatIsNoTextIsRefused() {
    ArchiveBuilder builder;
    const auto key = builder.add(qint64(5));
    QVERIFY(!unarchiveValue(builder.finish(builder.dictionary({{key, key}}))).ok());
  }

  void ofEqualKeysTheFirstOneHolds() {
    ArchiveBuilder builder;
    const auto dictionary = builder.dictionary(
        {{builder.text("k"), builder.add(qint64(1))}, {builder.text("k"), builder.add(qint64(2))}});
    const auto value = unarchiveValue(builder.finish(dictionary));
    QVERIFY(value.ok());
    QVERIFY(*value == Value(Value::Dictionary{{text("k"), qint64(1)}}));
  }

  void theOnlyNameInTopServesAsRoot() {
    QByteArray archive = archiveValue(text("here"));
    archive.replace("Troot", "TRoot"); // a name of four letters
    QVERIFY(*unarchiveValue(archive) == Value(text("here")));
  }

  void somethingElseIsDamaged_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("reminders");
    plist::Writer writer;
    QTest::newRow("a list without objects") << writer.finish(writer.array({}));
    QTest::newRow("XML of another kind")
        << QByteArray("<?xml version=\"1.0\"?><plist version=\"1.0\"><array/></plist>");
    QTest::newRow("unfinished XML") << QByteArray("<?xml version=\"1.0\"?><plist><dict>");
  }
  void somethingElseIsDamaged() {
    QFETCH(QByteArray, bytes);
    const auto value = unarchiveValue(bytes);
    QVERIFY(!value.ok());
    QCOMPARE(value.error().kind, Error::Kind::Damaged);
    QVERIFY(!value.error().message.isEmpty());
  }
};

QTEST_GUILESS_MAIN(KeyedValueTest)
#include "keyed_value_test.moc"
