// Documents that are made to hurt: small ones that would unfold into gigabytes, or take for ever.
#include "store/documents/data_dictionary.h"
#include "support/document_builder.h"
#include "support/memory_guard.h"

#include <QTest>

#include <ctime>

using namespace tockwise;

namespace {

constexpr ReminderQueue::Pads kPads{DocumentBuilder::kNow, false, false};
constexpr double kMostSeconds = 20; // of the processor, with sanitizers

double processorSeconds() {
  return double(std::clock()) / CLOCKS_PER_SEC;
}

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

// A property list made object by object, shared as nobody's writer shares.
class ListBuilder {
 public:
  using Object = plist::Writer::Object;

  plist::Writer list;

  Object text(const char* utf8) { return list.string(QString::fromUtf8(utf8)); }
  Object dictionary(const std::vector<std::pair<const char*, Object>>& pairs) {
    std::vector<Object> keys;
    std::vector<Object> values;
    for (const auto& [key, value] : pairs) {
      keys.push_back(text(key));
      values.push_back(value);
    }
    return list.dictionary(keys, values);
  }
  QByteArray archive(const std::vector<Object>& objects, quint64 root) {
    return list.finish(dictionary({{"$version", list.integer(100000)},
                                   {"$archiver", text("NSKeyedArchiver")},
                                   {"$top", dictionary({{"root", list.uid(root)}})},
                                   {"$objects", list.array(objects)}}));
  }
};

// So many class records that share one chain of 64 ancestors, whose name has so many characters.
QByteArray classesOfOneChain(size_t classes, int nameLength) {
  ListBuilder builder;
  const auto name = builder.list.string(QString(nameLength, u'x'));
  const auto chain = builder.list.array(std::vector<ListBuilder::Object>(64, name));
  const auto record =
      builder.dictionary({{"$classname", name}, {"$classes", chain}, {"$classhints", chain}});
  std::vector<ListBuilder::Object> objects{builder.text("$null")};
  objects.resize(classes, record);
  return builder.archive(objects, 1);
}

} // namespace

class DocumentHostileTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void oneLargeObjectThatStandsForEveryElementIsRefused_data() {
    QTest::addColumn<int>("reminders");
    QTest::addColumn<int>("bytes");
    QTest::newRow("ten kilobytes") << 600 << 5000;
    QTest::newRow("a megabyte") << 100000 << 500000;
  }
  void oneLargeObjectThatStandsForEveryElementIsRefused() {
    QFETCH(int, reminders);
    QFETCH(int, bytes);
    DocumentBuilder builder;
    const auto large = builder.text(QString(bytes, u'x'));
    const auto data = builder.archive.add(QByteArray(bytes, 'x'));
    const auto all = builder.archive.array(Value::Array(size_t(reminders), Value(large)));
    const auto datas = builder.archive.array(Value::Array(size_t(reminders), Value(data)));
    for (const QString& key : dataDictionaryKeys())
      builder.setArray(key.toLatin1().constData(), key == u"reminderRTFs" ? datas : all);
    const QByteArray archive = builder.finish();
    const MemoryGuard guard;
    const double start = processorSeconds();
    const auto dictionary = unarchivedDataDictionary(archive, kPads);
    QVERIFY2(guard.isBounded(), qPrintable(QString::number(guard.grownMegabytes())));
    QVERIFY(processorSeconds() - start < kMostSeconds);
    QCOMPARE(dictionary.ok(), reminders == 600); // which takes no more than it may
  }

  void manyClassesThatShareOneLongChainTakeLittle() {
    const QByteArray archive = classesOfOneChain(2000, 4000);
    QVERIFY(archive.size() < 10000);
    const MemoryGuard guard;
    QVERIFY(!unarchivedDataDictionary(archive, kPads).ok());
    QVERIFY2(guard.isBounded(), qPrintable(QString::number(guard.grownMegabytes())));
  }

  void manyClassesThatShareOneChainOfShortNamesTakeLittle() {
    const QByteArray archive = classesOfOneChain(25000, 250);
    const MemoryGuard guard;
    QVERIFY(!unarchivedDataDictionary(archive, kPads).ok());
    QVERIFY2(guard.isBounded(), qPrintable(QString::number(guard.grownMegabytes())));
  }

  void aRecordOfManyFieldsIsNotSearchedForEveryElement() {
    constexpr size_t kFields = 100000;
    DocumentBuilder builder;
    Value::Dictionary fields;
    for (size_t i = 0; i < kFields; ++i)
      fields.emplace_back(QString::number(i), true);
    fields.emplace_back(text("NS.time"), 1.0);
    const auto date = builder.archive.record(std::move(fields), {text("NSDate")});
    builder.addReminder(text("A"));
    for (const QString& key : dataDictionaryKeys()) {
      auto& array = builder.array(key.toLatin1().constData());
      array.resize(50000, key == u"reminderQueue" ? Value(date) : array.front());
    }
    const double start = processorSeconds();
    const auto dictionary = unarchivedDataDictionary(builder.finish(), kPads);
    QVERIFY(processorSeconds() - start < kMostSeconds);
    QVERIFY(dictionary.ok());
    QCOMPARE(dictionary->rowsWithoutFireDate.size(), 49999U);
  }

  void aLargeDictionaryIsNotSearchedForEveryElement() {
    DocumentBuilder builder;
    const auto key = builder.text(text("key"));
    const auto large =
        builder.archive.record({{text("NS.keys"), Value::Array(50000, Value(key))},
                                {text("NS.objects"), Value::Array(50000, Value(key))}},
                               {text("NSDictionary")});
    builder.addReminder(text("A"));
    for (const QString& each : dataDictionaryKeys()) {
      auto& array = builder.array(each.toLatin1().constData());
      array.resize(50000, each == u"reminderTasks" || each == u"reminderExtras" ? Value(large)
                                                                                : array.front());
    }
    const double start = processorSeconds();
    const auto dictionary = unarchivedDataDictionary(builder.finish(), kPads);
    QVERIFY(processorSeconds() - start < kMostSeconds);
    QVERIFY(dictionary.ok());
    QCOMPARE(dictionary->foreignElements, 2 * 49999);
  }

  void whatHoldsItselfIsAForeignElement() {
    DocumentBuilder builder;
    builder.addReminder(text("A"));
    ArchiveBuilder& archive = builder.archive;
    const auto array = archive.add(Value());
    archive.set(array, {{text("NS.objects"), Value::Array(4, Value(array))}}, {text("NSArray")});
    const auto task = archive.add(Value());
    archive.set(task,
                {{text("NS.keys"), Value::Array{archive.text("type"), archive.text("path")}},
                 {text("NS.objects"), Value::Array{task, task}}},
                {text("NSDictionary")});
    const auto string = archive.add(Value());
    archive.set(string, {{text("NS.string"), string}}, {text("NSString")});
    builder.set("reminderIntervals", 0, array);
    builder.set("reminderTasks", 0, task);
    builder.set("reminderUUID", 0, string);
    const auto dictionary = unarchivedDataDictionary(builder.finish(), kPads);
    QVERIFY(dictionary.ok());
    QCOMPARE(dictionary->foreignElements, 3);
  }

  void anArrayThatHoldsItselfIsReadAsForeignElements() {
    DocumentBuilder builder;
    builder.addReminder(text("A"));
    const auto array = builder.archive.add(Value());
    builder.archive.set(array, {{text("NS.objects"), Value::Array{array}}}, {text("NSArray")});
    builder.setArray("reminderDescriptions", array);
    const auto dictionary = unarchivedDataDictionary(builder.finish(), kPads);
    QVERIFY(dictionary.ok());
    QCOMPARE(dictionary->foreignElements, 1);
  }

  void aDictionaryThatIsItsOwnArrayIsDamage() {
    ArchiveBuilder archive;
    const auto root = archive.add(Value());
    Value::Array keys;
    for (const QString& key : dataDictionaryKeys())
      keys.emplace_back(archive.add(key));
    archive.set(root,
                {{text("NS.keys"), keys}, {text("NS.objects"), Value::Array(16, Value(root))}},
                {text("NSDictionary")});
    QVERIFY(!unarchivedDataDictionary(archive.finish(root), kPads).ok());
  }

  void elementsThatNameNothingAreForeign() {
    DocumentBuilder builder;
    builder.addReminder(text("A"));
    builder.set("reminderDescriptions", 0, {4000000000});
    builder.set("reminderQueue", 0, {std::numeric_limits<quint64>::max()});
    const auto dictionary = unarchivedDataDictionary(builder.finish(), kPads);
    QVERIFY(dictionary.ok());
    QCOMPARE(dictionary->foreignElements, 1);
    QCOMPARE(dictionary->rowsWithoutFireDate.size(), 1U);
  }

  void moreRemindersThanAQueueHoldsAreRead() {
    // As many as the store can hold: a document that was saved can be opened.
    constexpr int kMany = 100000;
    ReminderQueue queue;
    Columns columns;
    std::apply(
        [&](const auto&... field) {
          (ReminderQueue::valuesOf(columns.*(field.first)).resize(kMany), ...);
        },
        kFields);
    for (int i = 0; i < kMany; ++i) {
      ReminderQueue::valuesOf(columns.reminderUUID)[size_t(i)] = QString::number(i);
      ReminderQueue::valuesOf(columns.reminderQueue)[size_t(i)] = {double(i)};
      ReminderQueue::valuesOf(columns.reminderDateTimeCreated)[size_t(i)] = {-double(i)};
      ReminderQueue::valuesOf(columns.reminderDescriptions)[size_t(i)] =
          QStringLiteral("Reminder %1").arg(i);
      ReminderQueue::valuesOf(columns.reminderIntervals)[size_t(i)] = {0, 0, i, 1};
      ReminderQueue::valuesOf(columns.reminderRTFs)[size_t(i)] = QByteArray::number(i);
    }
    queue.setColumns(std::move(columns));
    const auto dictionary = unarchivedDataDictionary(archivedDataDictionary(queue), kPads);
    QVERIFY2(dictionary.ok(), qPrintable(dictionary.ok() ? QString() : dictionary.error().message));
    QCOMPARE(dictionary->columns.reminderUUID.size(), kMany);
  }
};

QTEST_GUILESS_MAIN(DocumentHostileTest)
#include "document_hostile_test.moc"
