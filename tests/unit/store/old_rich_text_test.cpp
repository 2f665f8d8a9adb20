// The conversion of old rich text: of the array, and at the first start with an old store.
#include "store/archive/old_rich_text.h"
#include "store/archive/text_archive.h"
#include "store/archive/typedstream.h"
#include "store/reminder_store.h"
#include "store/store_backups.h"
#include "support/fakes.h"
#include "support/log_lines.h"
#include "support/old_archives.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace tockwise;
namespace old = tockwise::old_archive;

namespace {

const QString kNullData = QStringLiteral("We have our representation of null RTF data");

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

QByteArray oldText(const QByteArray& utf8, const QByteArray& attributes = old::dictionary({})) {
  return old::archive(
      old::attributed(old::kTextStorage, utf8, old::run(1, qint32(utf8.size()), attributes)));
}

QString plainTextOf(const QByteArray& keyed) {
  const auto read = unarchiveTextStorage(keyed);
  return read ? read->text : QStringLiteral("(none)");
}

int scaleNothing(AttributedText&) {
  return 0;
}

QStringList g_lines;

// Collects what is logged while it lives.
class LogCollector {
 public:
  LogCollector() {
    enableLogLines();
    g_lines.clear();
    m_before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& line) { g_lines.append(line); });
  }
  ~LogCollector() { qInstallMessageHandler(m_before); }
  QStringList take() const { return std::exchange(g_lines, {}); }

 private:
  QtMessageHandler m_before;
};

Value::Array elementsOf(const Value& value) {
  const auto* array = value.get<Value::Array>();
  return array ? *array : Value::Array();
}

} // namespace

class OldRichTextTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};

  static OldTextConversion conversion() {
    return [](const Value& rtfs) { return convertOldRichText(rtfs, scaleNothing); };
  }

  std::unique_ptr<ReminderStore> open(const OldTextConversion& convert) {
    auto store = ReminderStore::open(PreferencesStore::Paths::ofUser(), m_clock, convert);
    return store ? std::move(*store) : nullptr;
  }

  static QString file() { return PreferencesStore::Paths::ofUser().file; }

  static QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  static Value storedValue(QStringView key) {
    const auto reader = plist::Reader::open(contents(file()));
    if (!reader)
      return {};
    const auto found = reader->find(reader->root(), key);
    return found ? reader->value(*found) : Value();
  }

  // A store without a dataVersion that holds those texts.
  static void writeOldStore(const Value& rtfs) {
    const size_t count = elementsOf(rtfs).size();
    const Value::Dictionary dictionary{
        {text("reminderQueue"), Value::Array(count, Value(Date{800000000.25}))},
        {text("reminderDescriptions"), Value::Array(count, Value(text("plain")))},
        {text("reminderRTFs"), rtfs}};
    plist::Writer writer;
    const QByteArray bytes = writer.finish(writer.value(Value(dictionary)));
    QDir().mkpath(QFileInfo(file()).path());
    QFile written(file());
    QVERIFY(written.open(QIODevice::WriteOnly));
    written.write(bytes);
  }

 private Q_SLOTS:
  void init() { m_environment = std::make_unique<TestEnvironment>(); }

  void textStoragesBecomeKeyedArchives() {
    const LogCollector log;
    const auto converted = convertOldRichText(
        Value(Value::Array{Value(oldText("one")), Value(oldText("two"))}), scaleNothing);
    QVERIFY(converted.has_value());
    const Value::Array elements = elementsOf(*converted);
    QCOMPARE(elements.size(), size_t(2));
    QCOMPARE(plainTextOf(*elements[0].get<QByteArray>()), text("one"));
    QCOMPARE(plainTextOf(*elements[1].get<QByteArray>()), text("two"));
    QCOMPARE(log.take(), QStringList());
  }

  void otherDataStayAsTheyAre_data() {
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QStringList>("lines");
    const auto about = [](const char* what) {
      return QStringList{text("reminderRTFs: element 0: ") + text(what), kNullData};
    };
    QTest::newRow("empty") << QByteArray() << QStringList{kNullData};
    QTest::newRow("keyed") << archiveText({}) << QStringList{kNullData};
    QTest::newRow("something") << QByteArray("{\\rtf1}") << QStringList{kNullData};
    QTest::newRow("another attributed string")
        << old::archive(old::attributed({"NSAttributedString", "NSObject"}, "", {}))
        << about("the old archive holds no text storage");
    QTest::newRow("another object")
        << old::archive(old::string("x")) << about("the old archive holds no rich text");
    QTest::newRow("damaged") << oldText("one").left(30)
                             << about(
                                    "not a sound old archive: a string beyond the data at byte 23");
  }
  void otherDataStayAsTheyAre() {
    QFETCH(QByteArray, data);
    QFETCH(QStringList, lines);
    const LogCollector log;
    const Value stored(Value::Array{Value(data)});
    const auto converted = convertOldRichText(stored, scaleNothing);
    QVERIFY(converted.has_value());
    QCOMPARE(*converted, stored);
    QCOMPARE(log.take(), lines);
  }

  void anElementThatIsNoDataStopsTheConversion() {
    const LogCollector log;
    int asked = 0;
    const auto count = [&asked](AttributedText&) {
      ++asked;
      return 0;
    };
    const auto converted = convertOldRichText(
        Value(Value::Array{Value(oldText("one")), Value(7), Value(oldText("two"))}), count);
    QVERIFY(!converted.has_value());
    QCOMPARE(asked, 1);
    QCOMPARE(log.take(),
             QStringList{text("Uh Oh - unarchiveObjectWithData - there was a problem converting "
                              "the RTF data! Index: 1")});
  }

  void aTextThatCannotBeWrittenFailsTheWholeButTheOthersAreTried() {
    const LogCollector log;
    QStringList seen;
    const auto failAtTwo = [&seen](const AttributedText& of) {
      seen.append(of.text);
      return of.text == u"two" ? QByteArray() : archiveText(of);
    };
    const auto converted = convertOldRichText(
        Value(Value::Array{Value(oldText("one")), Value(oldText("two")), Value(oldText("three"))}),
        scaleNothing, failAtTwo);
    QVERIFY(!converted.has_value());
    QCOMPARE(seen, (QStringList{text("one"), text("two"), text("three")}));
    QCOMPARE(log.take(),
             QStringList{text("Uh Oh - archivedDataWithRootObject - there was a problem "
                              "converting the RTF data! Index: 1")});
  }

  void scaledPicturesAreCountedAndStored() {
    const LogCollector log;
    const auto scale = [](AttributedText& of) {
      of.append(QStringLiteral(" scaled"), {});
      return of.text.startsWith(u"one") ? 3 : 0;
    };
    const auto converted = convertOldRichText(
        Value(Value::Array{Value(oldText("one")), Value(oldText("two"))}), scale);
    QVERIFY(converted.has_value());
    QCOMPARE(plainTextOf(*elementsOf(*converted)[1].get<QByteArray>()), text("two scaled"));
    QCOMPARE(log.take(), QStringList{text("3 Scaled")});
  }

  void whatIsLeftOutIsLoggedWithItsIndex() {
    const LogCollector log;
    const QByteArray style = old::object({"NSParagraphStyle", "NSObject"}, old::group("c", "\x04"));
    const auto converted = convertOldRichText(
        Value(Value::Array{Value(oldText("one")),
                           Value(oldText("two", old::dictionary({{"NSParagraphStyle", style}})))}),
        scaleNothing);
    QVERIFY(converted.has_value());
    QCOMPARE(log.take(), QStringList{text("reminderRTFs: element 1: paragraph formatting of this "
                                          "old note was not converted")});
  }

  void whatIsNoArrayIsLeftAlone() {
    QVERIFY(!convertOldRichText(Value(text("x")), scaleNothing).has_value());
    QVERIFY(!convertOldRichText(Value(), scaleNothing).has_value());
  }

  void anOldStoreIsConvertedOnceAndRewritten() {
    writeOldStore(Value::Array{Value(oldText("one")), Value(QByteArray()), Value(oldText("two"))});
    QByteArray convertedFirst;
    {
      const LogCollector log;
      const auto store = open(conversion());
      QCOMPARE(log.take(), QStringList{kNullData});
      convertedFirst = store->queue()->reminderRTFs.values()[0];
      QCOMPARE(plainTextOf(convertedFirst), text("one"));
      QVERIFY(store->queue()->reminderRTFs.values()[1].isEmpty());
      QVERIFY(store->preferences().isSaved());
      QCOMPARE(store->loadReport().foreignElements, 0);
    }
    const Value::Array stored = elementsOf(storedValue(u"reminderRTFs"));
    QCOMPARE(*stored[0].get<QByteArray>(), convertedFirst);
    QCOMPARE(plainTextOf(*stored[2].get<QByteArray>()), text("two"));
    QCOMPARE(storedValue(u"dataVersion"), Value(text(TOCKWISE_VERSION)));
    int calls = 0;
    const LogCollector log;
    const auto store = open([&calls](const Value& rtfs) {
      ++calls;
      return std::optional(rtfs);
    });
    QCOMPARE(calls, 0);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(store->queue()->reminderRTFs.values()[0], convertedFirst);
  }

  void theOldStoreIsKeptAmongTheCopies() {
    writeOldStore(Value::Array{Value(oldText("one"))});
    const QByteArray before = contents(file());
    QVERIFY(open(conversion()));
    const QStringList copies =
        StoreBackups(PreferencesStore::Paths::ofUser().backups).newestFirst();
    QCOMPARE(copies.size(), qsizetype(1));
    QCOMPARE(contents(copies[0]), before);
    QVERIFY(contents(file()) != before);
  }

  void aFailedConversionLeavesTheTextsAndIsNotTriedAgain() {
    const QByteArray archive = oldText("one");
    writeOldStore(Value::Array{Value(archive), Value(oldText("two"))});
    const auto fail = [](const Value& rtfs) {
      return convertOldRichText(rtfs, scaleNothing, [](const AttributedText& of) {
        return of.text == u"two" ? QByteArray() : archiveText(of);
      });
    };
    {
      const LogCollector log;
      const auto store = open(fail);
      QCOMPARE(log.take().size(), qsizetype(1));
      QCOMPARE(store->queue()->reminderRTFs.values()[0], archive);
    }
    QCOMPARE(*elementsOf(storedValue(u"reminderRTFs"))[0].get<QByteArray>(), archive);
    QCOMPARE(storedValue(u"dataVersion"), Value(text(TOCKWISE_VERSION)));
    const LogCollector log;
    const auto store = open(conversion());
    QCOMPARE(store->queue()->reminderRTFs.values()[0], archive);
    QCOMPARE(log.take(), QStringList());
  }

  void aStoreWithADataVersionIsNotConverted() {
    const QByteArray archive = oldText("one");
    writeOldStore(Value::Array{Value(archive)});
    { QVERIFY(open({})); } // without a conversion, which sets the version all the same
    const LogCollector log;
    QCOMPARE(open(conversion())->queue()->reminderRTFs.values()[0], archive);
    QCOMPARE(log.take(), QStringList());
  }

  void whatAnotherProgramWritesLaterIsNotConverted() {
    int calls = 0;
    const auto store = open([&calls](const Value& rtfs) {
      ++calls;
      return convertOldRichText(rtfs, scaleNothing);
    });
    const QByteArray archive = oldText("one");
    writeOldStore(Value::Array{Value(archive)});
    store->saveDefaults();
    QCOMPARE(store->queue()->reminderRTFs.values()[0], archive);
    QCOMPARE(calls, 0);
  }

  void aFirstStartLogsNothing() {
    const LogCollector log;
    const auto store = open(conversion());
    QVERIFY(store->queue().isEmpty());
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(storedValue(u"dataVersion"), Value(text(TOCKWISE_VERSION)));
  }

  void aFileWithoutRemindersLogsNothing() {
    writeOldStore(Value::Array{});
    const LogCollector log;
    QVERIFY(open(conversion()));
    QCOMPARE(log.take(), QStringList());
  }

  void aForeignElementStopsTheConversionAndTheStartGoesOn() {
    const QByteArray archive = oldText("one");
    writeOldStore(Value::Array{Value(archive), Value(text("x"))});
    const LogCollector log;
    const auto store = open(conversion());
    QCOMPARE(log.take(),
             (QStringList{text("Uh Oh - unarchiveObjectWithData - there was a problem converting "
                               "the RTF data! Index: 1"),
                          text("reminderRTFs: element 1 is of a foreign kind")}));
    QCOMPARE(store->queue()->reminderRTFs.values()[0], archive);
    QCOMPARE(store->loadReport().foreignElements, 1);
  }
};

QTEST_GUILESS_MAIN(OldRichTextTest)
#include "old_rich_text_test.moc"
