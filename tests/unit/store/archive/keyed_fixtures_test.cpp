// Every archive of the fixtures, against the JSON beside it.
#include "store/archive/keyed_archive.h"
#include "store/archive/keyed_value.h"
#include "store/archive/text_archive.h"
#include "store/plist_reader.h"
#include "support/archive_json.h"

#include <QFileInfo>
#include <QTest>

#include <sys/resource.h>

using namespace tockwise;

namespace {

void addFixtures(const QStringList& folders) {
  QTest::addColumn<QString>("path");
  for (const QString& folder : folders) {
    for (const QString& path : archiveFixtures(folder, QStringLiteral("*.plist")))
      QTest::newRow(qPrintable(folder + u'/' + QFileInfo(path).fileName())) << path;
  }
}

const QStringList kKeyed{QStringLiteral("keyed-gnustep"), QStringLiteral("keyed-synthetic"),
                         QStringLiteral("keyed-genuine")};

// Whether key occurs anywhere in the value.
bool mentions(const Value& value, QStringView key) {
  if (const auto* array = value.get<Value::Array>())
    return std::any_of(array->begin(), array->end(),
                       [key](const Value& each) { return mentions(each, key); });
  const auto* pairs = value.get<Value::Dictionary>();
  return pairs && std::any_of(pairs->begin(), pairs->end(), [key](const auto& pair) {
           return pair.first == key || mentions(pair.second, key);
         });
}

// The vocabulary also says how a wrapper's attribute block reads, which nothing here needs.
Value withoutWrapperAttributes(const Value& value) {
  if (const auto* array = value.get<Value::Array>()) {
    Value::Array kept;
    for (const Value& each : *array)
      kept.push_back(withoutWrapperAttributes(each));
    return kept;
  }
  const auto* pairs = value.get<Value::Dictionary>();
  if (!pairs)
    return value;
  Value::Dictionary kept;
  for (const auto& [key, each] : *pairs) {
    if (key != u"attributes" || !value.find(u"kind"))
      kept.emplace_back(key, withoutWrapperAttributes(each));
  }
  return kept;
}

// A plain value in the fixtures' vocabulary.
Value jsonOf(const Value& value) {
  if (value.isNull())
    return Value::Dictionary{{QStringLiteral("$nsnull"), true}};
  if (const Date* date = value.get<Date>())
    return Value::Dictionary{{QStringLiteral("$date"), date->seconds}};
  if (const QByteArray* bytes = value.get<QByteArray>())
    return dataJson(*bytes);
  if (const auto* array = value.get<Value::Array>()) {
    Value::Array all;
    for (const Value& each : *array)
      all.push_back(jsonOf(each));
    return all;
  }
  if (const auto* pairs = value.get<Value::Dictionary>()) {
    Value::Dictionary all;
    for (const auto& [key, each] : *pairs)
      all.emplace_back(key, jsonOf(each));
    return Value::Dictionary{{QStringLiteral("$dict"), std::move(all)}};
  }
  return value;
}

long peakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

} // namespace

class KeyedFixturesTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void anArchiveHoldsWhatItsJsonSays_data() { addFixtures(kKeyed); }
  void anArchiveHoldsWhatItsJsonSays() {
    QFETCH(QString, path);
    const auto archive = KeyedArchive::open(readFixture(path));
    const Value expected = expectedOf(path);
    if (const Value* keys = expected.find(u"top_keys")) { // an interface, of which it only counts
      QVERIFY2(archive.ok(), qPrintable(*keys->strings()->begin()));
      QCOMPARE(qint64(archive.value()->count()), *expected.find(u"object_count")->get<qint64>());
      QCOMPARE(classesOf(*archive.value()), *expected.find(u"classes")->strings());
      return;
    }
    QVERIFY2(archive.ok(), qPrintable(archive.ok() ? QString() : archive.error().message));
    const Value actual = tockwise::jsonOf(*archive.value(), archive.value()->root());
    QCOMPARE(difference(withoutWrapperAttributes(expected), actual), QString());
    QVERIFY(archive.value()->isSound(archive.value()->root()));
  }

  void anArchivedTextReadsAsItsJsonSays_data() { addFixtures(kKeyed); }
  void anArchivedTextReadsAsItsJsonSays() {
    QFETCH(QString, path);
    const Value expected = expectedOf(path);
    const Value* attributed = expected.find(u"$attributed");
    const auto text = unarchiveText(readFixture(path));
    if (!attributed) {
      QVERIFY(!text.ok());
      QCOMPARE(text.error().kind, Error::Kind::Damaged);
      QCOMPARE(unarchiveTextStorage(readFixture(path)).error().kind, Error::Kind::NotFound);
      return;
    }
    QVERIFY2(text.ok(), qPrintable(text.ok() ? QString() : text.error().message));
    QCOMPARE(difference(describeExpected(*attributed), describe(text->text)), QString());
    QCOMPARE(text->notes, QStringList());
    const bool isStorage = *attributed->find(u"class")->get<QString>() == u"NSTextStorage";
    QCOMPARE(text->isTextStorage, isStorage);
    QCOMPARE(unarchiveTextStorage(readFixture(path)).ok(), isStorage);
  }

  void anArchivedTextSurvivesBeingWrittenAgain_data() { addFixtures(kKeyed); }
  void anArchivedTextSurvivesBeingWrittenAgain() {
    QFETCH(QString, path);
    const auto text = unarchiveText(readFixture(path));
    if (!text.ok()) {
      QVERIFY(!expectedOf(path).find(u"$attributed"));
      return;
    }
    const QByteArray once = archiveText(text->text);
    const auto again = unarchiveText(once);
    QVERIFY2(again.ok(), qPrintable(again.ok() ? QString() : again.error().message));
    QVERIFY(again->isTextStorage);
    QCOMPARE(difference(describe(text->text), describe(again->text)), QString());
    QCOMPARE(archiveText(again->text), once); // byte for byte
  }

  void anArchivedValueReadsAsItsJsonSays_data() { addFixtures(kKeyed); }
  void anArchivedValueReadsAsItsJsonSays() {
    QFETCH(QString, path);
    const Value expected = expectedOf(path);
    const auto value = unarchiveValue(readFixture(path));
    for (const QStringView key : {u"$color", u"$object", u"$cycle", u"$attributed", u"top_keys"}) {
      if (mentions(expected, key)) {
        QVERIFY(!value.ok());
        QCOMPARE(value.error().kind, Error::Kind::Damaged);
        return;
      }
    }
    QVERIFY2(value.ok(), qPrintable(value.ok() ? QString() : value.error().message));
    QCOMPARE(difference(expected, jsonOf(*value)), QString());
    const QByteArray once = archiveValue(*value);
    const auto again = unarchiveValue(once);
    QVERIFY(again.ok());
    QVERIFY(*again == *value);
    QCOMPARE(archiveValue(*again), once);
  }

  void aHostileFileIsRefusedOrRepaired_data() { addFixtures({QStringLiteral("hostile")}); }
  void aHostileFileIsRefusedOrRepaired() {
    QFETCH(QString, path);
    const long before = peakKilobytes();
    const QByteArray bytes = readFixture(path);
    const QString name = QFileInfo(path).baseName();
    const auto text = unarchiveText(bytes);
    if (name.startsWith(u"runs_")) { // the text is there, and the log is told what is not
      const QString whole = name == u"runs_short" ? QStringLiteral("abcd") : QStringLiteral("ab");
      QVERIFY(text.ok());
      QCOMPARE(text->text.text, whole);
      QVERIFY(!text->notes.isEmpty());
      qsizetype covered = 0;
      for (const TextRun& run : text->text.runs)
        covered += run.length;
      QCOMPARE(covered, whole.size());
    } else {
      QVERIFY(!text.ok());
      QCOMPARE(text.error().kind, Error::Kind::Damaged);
    }
    QVERIFY(!unarchiveValue(bytes).ok());
    QVERIFY(peakKilobytes() - before < 64 * 1024);
  }

  void aListWithNulsIsReadWhole() {
    const QString path =
        archiveFixtures(QStringLiteral("hostile"), QStringLiteral("bplist_nul_in_string.plist"))
            .value(0);
    const auto list = plist::Reader::open(readFixture(path));
    QVERIFY(list.ok());
    QCOMPARE(difference(expectedOf(path), list->value(list->root())), QString());
  }

 private:
  static QStringList classesOf(const KeyedArchive& archive) {
    QStringList names;
    for (quint64 uid = 1; uid < archive.count(); ++uid) {
      if (const auto* record = archive.classOf(uid))
        names.append(record->name);
    }
    names.removeDuplicates();
    names.sort();
    return names;
  }
};

QTEST_GUILESS_MAIN(KeyedFixturesTest)
#include "keyed_fixtures_test.moc"
