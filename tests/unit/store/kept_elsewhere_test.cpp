// A setting whose value stands somewhere else than in the store's file.
#include "store/kept_elsewhere.h"
#include "store/preferences_store.h"
#include "store/root_dictionary.h"
#include "store/store_backups.h"
#include "support/no_section.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <memory>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

const QString kKey = text("passwordAD");
const QString kSecret = text("s3cret-Grüße");

// Looks at the bytes: as ASCII, UTF-8 and UTF-16 of either order.
bool holdsSecret(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    return false;
  const QByteArray bytes = file.readAll();
  QByteArray big;
  for (const QChar unit : kSecret) {
    big += char(unit.unicode() >> 8);
    big += char(unit.unicode() & 0xff);
  }
  return bytes.contains("s3cret") || bytes.contains(kSecret.toUtf8()) || bytes.contains(big);
}

} // namespace

class KeptElsewhereTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};
  PreferencesStore::Paths m_paths;
  NoSection m_section;
  std::unique_ptr<PreferencesStore> m_store;

  void open() {
    m_store.reset();
    auto store = PreferencesStore::open(m_paths, m_clock);
    QVERIFY(store.ok());
    m_store = std::move(*store);
    m_store->attach(m_section);
    m_store->registerDefaults({{kKey, Value(QString())}});
  }
  void writeByOthers(const Value::Dictionary& dictionary) {
    plist::Writer writer;
    QFile file(m_paths.file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(writer.finish(writer.value(Value(dictionary))));
  }
  QStringList copies() const { return StoreBackups(m_paths.backups).newestFirst(); }
  /// A store whose file does not hold the secret that its memory has.
  void keepSecretElsewhere() {
    m_store->setValue(kKey, kSecret);
    m_store->keepElsewhere(kKey);
    m_store->synchronize();
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_paths = PreferencesStore::Paths::ofUser();
    m_clock.set(Date::fromUnixSeconds(1741079742));
    open();
  }
  void cleanup() { m_store.reset(); }

  void theFileNamesTheKeyInPlaceOfItsValue() {
    keepSecretElsewhere();
    QCOMPARE(m_store->string(kKey), kSecret);
    QVERIFY(m_store->isSaved());
    QVERIFY(!holdsSecret(m_paths.file));
    const auto reader = plist::readRootDictionary(m_paths.file);
    QVERIFY(reader.ok());
    QCOMPARE(keptElsewhere(*reader), std::set<QString>{kKey});
    QVERIFY(!reader->find(reader->root(), kKey));
  }

  void afterAStartItIsUnreadUntilItIsProvided() {
    keepSecretElsewhere();
    open();
    QVERIFY(m_store->isKeptElsewhere(kKey));
    QVERIFY(m_store->isUnread(kKey));
    QVERIFY(m_store->isSet(kKey));
    QCOMPARE(m_store->string(kKey), QString());
    m_store->provide(kKey, kSecret);
    QCOMPARE(m_store->string(kKey), kSecret);
    QVERIFY(!m_store->isUnread(kKey));
    QVERIFY(m_store->isSaved()); // nothing to write
    m_store->synchronize();
    QVERIFY(!holdsSecret(m_paths.file));
  }

  void savingOtherSettingsKeepsItOut() {
    keepSecretElsewhere();
    m_store->setValue(text("email"), text("me@example.org"));
    m_store->synchronize();
    QVERIFY(!holdsSecret(m_paths.file));
    QCOMPARE(m_store->string(kKey), kSecret);
    open();
    QVERIFY(m_store->isKeptElsewhere(kKey));
    QCOMPARE(m_store->string(text("email")), text("me@example.org"));
  }

  void settingItIsAnnouncedAndNotWritten() {
    keepSecretElsewhere();
    QStringList announced;
    m_store->onValueSet = [&](const QString& key) { announced += key; };
    m_store->setValue(kKey, text("s3cret two"));
    QCOMPARE(announced, QStringList{kKey});
    QCOMPARE(m_store->string(kKey), text("s3cret two"));
    QVERIFY(m_store->isSaved());
    m_store->setValue(kKey, text("s3cret two")); // no news
    m_store->provide(kKey, text("s3cret three"));
    QCOMPARE(announced, QStringList{kKey});
    m_store->setValue(text("email"), text("x"));
    QCOMPARE(announced, (QStringList{kKey, text("email")}));
  }

  void keptHereAgainItIsWritten() {
    keepSecretElsewhere();
    m_store->keepHere(kKey);
    m_store->synchronize();
    QVERIFY(holdsSecret(m_paths.file));
    open();
    QVERIFY(!m_store->isKeptElsewhere(kKey));
    QCOMPARE(m_store->string(kKey), kSecret);
  }

  void anothersChangesLeaveItWhereItIs() {
    keepSecretElsewhere();
    writeByOthers({{text("email"), Value(text("other@example.org"))},
                   {kKeptElsewhere, keptElsewhereValue({kKey})}});
    m_store->synchronize();
    QCOMPARE(m_store->string(text("email")), text("other@example.org"));
    QCOMPARE(m_store->string(kKey), kSecret);
    writeByOthers({{text("email"), Value(text("third@example.org"))}}); // which forgot to name it
    m_store->synchronize();
    QCOMPARE(m_store->string(kKey), kSecret);
    m_store->setValue(text("sms"), text("1"));
    m_store->synchronize();
    open();
    QVERIFY(m_store->isKeptElsewhere(kKey));
  }
  void aValueThatAnotherWroteIsTheFilesAgain() {
    keepSecretElsewhere();
    writeByOthers({{kKey, Value(text("theirs"))}, {kKeptElsewhere, keptElsewhereValue({kKey})}});
    m_store->synchronize();
    QVERIFY(!m_store->isKeptElsewhere(kKey));
    QCOMPARE(m_store->string(kKey), text("theirs"));
  }
  void aMoveUnderWayIsNotUndoneByAnothersChange() {
    m_store->setValue(kKey, kSecret);
    m_store->synchronize();
    m_store->keepElsewhere(kKey);
    writeByOthers({{kKey, Value(kSecret)}, {text("email"), Value(text("other@example.org"))}});
    m_store->synchronize();
    QVERIFY(m_store->isKeptElsewhere(kKey));
    QVERIFY(!holdsSecret(m_paths.file));
    QCOMPARE(m_store->string(text("email")), text("other@example.org"));
  }

  void copiesDoNotHoldWhatMoved() {
    m_store->setValue(kKey, kSecret);
    m_store->setValue(text("unknownToUs"), Value(Value::Array{Value(1.5), Value(QByteArray("x"))}));
    m_store->setValue(text("email"), text("me@example.org"));
    m_store->synchronize();
    m_clock.advance(86400);
    m_store->setValue(text("email"), text("you@example.org"));
    m_store->synchronize();
    QCOMPARE(copies().size(), 1);
    QVERIFY(holdsSecret(copies().front()));
    m_clock.advance(86400); // the next write keeps a copy of the file, which still has it
    m_store->keepElsewhere(kKey);
    m_store->cleanCopies();
    m_store->synchronize();
    QCOMPARE(copies().size(), 2);
    for (const QString& copy : copies()) {
      QVERIFY2(!holdsSecret(copy), qPrintable(copy));
      const auto reader = plist::readRootDictionary(copy);
      QVERIFY(reader.ok());
      QCOMPARE(keptElsewhere(*reader), std::set<QString>{kKey});
      const auto other = reader->find(reader->root(), u"unknownToUs");
      QVERIFY(other);
      QCOMPARE(reader->value(*other), Value(Value::Array{Value(1.5), Value(QByteArray("x"))}));
      QVERIFY(reader->find(reader->root(), u"email"));
      QCOMPARE(QFile::permissions(copy) & 0x77, QFile::Permissions());
    }
  }
  void aCopyThatIsRestoredStillSaysWhereItIs() {
    m_store->setValue(kKey, kSecret);
    m_store->synchronize();
    m_clock.advance(86400);
    m_store->setValue(text("email"), text("x"));
    m_store->synchronize();
    m_store->keepElsewhere(kKey);
    m_store->cleanCopies();
    m_store->synchronize();
    m_store.reset();
    QFile file(m_paths.file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("damaged");
    file.close();
    open();
    QVERIFY(!m_store->notice().restoredFrom.isEmpty());
    QVERIFY(m_store->isKeptElsewhere(kKey));
  }

  void bytesWithoutTheValueStayAsTheyAre() {
    plist::Writer writer;
    const QByteArray other =
        writer.finish(writer.value(Value(Value::Dictionary{{text("email"), Value(text("x"))}})));
    QCOMPARE(withoutValues(other, {kKey}), other);
    QCOMPARE(withoutValues("no property list", {kKey}), QByteArray("no property list"));
    QCOMPARE(withoutValues({}, {kKey}), QByteArray());
  }
  void copiesInTheXmlFormAreCleanedToo() {
    const QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                           "<plist version=\"1.0\"><dict><key>passwordAD</key>"
                           "<string>s3cret</string><key>email</key><string>x</string></dict>"
                           "</plist>";
    const QByteArray cleaned = withoutValues(xml, {kKey});
    QVERIFY(!cleaned.contains("s3cret"));
    const auto reader = plist::openRootDictionary(cleaned);
    QVERIFY(reader.ok());
    QVERIFY(reader->find(reader->root(), u"email"));
  }
};

QTEST_GUILESS_MAIN(KeptElsewhereTest)
#include "kept_elsewhere_test.moc"
