#include "store/plist_reader.h"
#include "store/plist_writer.h"

#include <QRandomGenerator>
#include <QTest>

using namespace tockwise;

namespace {

void append64(QByteArray& to, quint64 value) {
  for (int shift = 56; shift >= 0; shift -= 8)
    to += char(value >> shift & 0xFF);
}

// A list of the given objects (each as bytes), with four-byte offsets and references of that size.
QByteArray listOf(const std::vector<QByteArray>& objects, int referenceSize = 1, quint64 top = 0) {
  QByteArray file("bplist00");
  QByteArray table;
  for (const QByteArray& object : objects) {
    for (int shift = 24; shift >= 0; shift -= 8)
      table += char(quint32(file.size()) >> shift & 0xFF);
    file += object;
  }
  const auto tableAt = quint64(file.size());
  file += table + QByteArray(6, '\0');
  file += char(4);
  file += char(referenceSize);
  append64(file, objects.size());
  append64(file, top);
  append64(file, tableAt);
  return file;
}

QByteArray hex(const char* digits) {
  return QByteArray::fromHex(digits);
}

} // namespace

class PlistHostileTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void unsoundListsAreRefused_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray(100, 'x');
    QTest::newRow("only the header") << QByteArray("bplist00");
    const QByteArray sound = listOf({hex("a101"), hex("5161")});
    QVERIFY(plist::Reader::open(sound).ok());
    QTest::newRow("cut") << sound.left(sound.size() - 1);
    QTest::newRow("a reference outside") << listOf({hex("a105")});
    QTest::newRow("holds itself") << listOf({hex("a100")});
    QTest::newRow("holds itself in a circle") << listOf({hex("a101"), hex("a102"), hex("a100")});
    QTest::newRow("top outside") << listOf({hex("08")}, 1, 7);
    QTest::newRow("unknown marker") << listOf({hex("f0")});
    QTest::newRow("wrong boolean") << listOf({hex("05")});
    QTest::newRow("huge integer") << listOf({hex("17")});
    QTest::newRow("string beyond the file") << listOf({hex("5f1200ffffff")});
    QTest::newRow("wide string beyond the file") << listOf({hex("6f137fffffffffffffff")});
    QTest::newRow("array of two thousand million") << listOf({hex("af127fffffff")});
    QTest::newRow("count of a wrong kind") << listOf({hex("af5161")});
    QTest::newRow("count without bytes") << listOf({hex("af")});
    QTest::newRow("count of sixteen bytes")
        << listOf({hex("af1400000000000000000000000000000001")});
    for (const int at : {6, 7, 8, 15, 24, 31}) { // trailer fields
      QByteArray file = sound;
      file[file.size() - 32 + at] = char(0xFF);
      QTest::addRow("trailer byte %d", at) << file;
    }
    QByteArray offsetOutside = sound;
    offsetOutside[sound.size() - 32 - 8] = char(0x7F);
    QTest::newRow("offset outside") << offsetOutside;
  }
  void unsoundListsAreRefused() {
    QFETCH(QByteArray, file);
    const auto reader = plist::Reader::open(file);
    QVERIFY(!reader);
    QCOMPARE(reader.error().kind, Error::Kind::Damaged);
  }

  void sharingBeyondReasonIsRefused() {
    std::vector<QByteArray> objects;
    for (int i = 0; i < 40; ++i)
      objects.push_back(hex("a2") + QByteArray(2, char(i + 1)));
    objects.push_back(hex("a0"));
    QVERIFY(!plist::Reader::open(listOf(objects)));
  }

  void nestingBeyondReasonIsRefusedWithoutRecursion() {
    std::vector<QByteArray> objects;
    for (quint32 i = 1; i <= 200000; ++i) {
      QByteArray object = hex("a1");
      for (int shift = 24; shift >= 0; shift -= 8)
        object += char(i >> shift & 0xFF);
      objects.push_back(object);
    }
    objects.push_back(hex("a0"));
    QVERIFY(!plist::Reader::open(listOf(objects, 4)));
  }

  void aNulAndALoneSurrogateAreCharacters() {
    const auto reader =
        plist::Reader::open(listOf({hex("a20102"), hex("53610062"), hex("61d800")}));
    QVERIFY(reader.ok());
    QCOMPARE(reader->string(reader->element(reader->root(), 0)), QStringLiteral("a\0b"));
    QCOMPARE(reader->string(reader->element(reader->root(), 1)), QString(1, QChar(0xD800)));
  }

  void randomDamageNeverGoesOutOfBounds() {
    plist::Writer writer;
    const QByteArray sound = writer.finish(writer.value(Value(Value::Dictionary{
        {QStringLiteral("a"), Value::Array{Value(1), Value(2.5), Value(QStringLiteral("text"))}},
        {QStringLiteral("b"), Value::Dictionary{{QStringLiteral("c"), Value(QByteArray("data"))}}},
        {QStringLiteral("d"), Value(Date{1})}})));
    QRandomGenerator random(20);
    int sounds = 0;
    for (int i = 0; i < 20000; ++i) {
      QByteArray damaged = sound;
      for (int k = random.bounded(1, 4); k > 0; --k)
        damaged[random.bounded(int(damaged.size()))] = char(random.bounded(256));
      if (const auto reader = plist::Reader::open(damaged)) {
        (void)reader->value(reader->root());
        ++sounds;
      }
    }
    QVERIFY(sounds > 0);
  }
};

QTEST_GUILESS_MAIN(PlistHostileTest)
#include "plist_hostile_test.moc"
