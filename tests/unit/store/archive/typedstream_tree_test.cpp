// Older archives as trees: every sample reads as its JSON says, and what is damaged is refused.
#include "support/archive_json.h"
#include "support/typedstream_json.h"

#include <QFileInfo>
#include <QTest>

using namespace tockwise;
using namespace tockwise::typedstream;

namespace {

void addSamples(const QString& folder, const QString& pattern) {
  for (const QString& path : archiveFixtures(folder, pattern))
    QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
}

// An archive of one object, which the given bytes describe.
QByteArray archiveOf(const QByteArray& object) {
  return QByteArray("\x04\x0bstreamtyped\x81\xe8\x03\x84\x01@", 19) + object;
}

QByteArray hex(const char* digits) {
  return QByteArray::fromHex(digits);
}

// The head of a new object of a class of that name, which has no superclass and version 0.
QByteArray objectOf(const QByteArray& className, const QByteArray& groups) {
  return hex("848484") + char(className.size()) + className + hex("0085") + groups + hex("86");
}

// A group of those types, which were not used before.
QByteArray group(const QByteArray& types, const QByteArray& values) {
  return hex("84") + char(types.size()) + types + values;
}

Result<Tree> readOne(const QByteArray& types, const QByteArray& values) {
  return Tree::read(archiveOf(objectOf("Thing", group(types, values))));
}

} // namespace

class TypedstreamTreeTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aSampleReadsAsItsJsonSays_data() {
    QTest::addColumn<QString>("path");
    addSamples(QStringLiteral("typedstream-synthetic"), QStringLiteral("*.bin"));
    addSamples(QStringLiteral("typedstream-genuine"), QStringLiteral("*.bin"));
  }
  void aSampleReadsAsItsJsonSays() {
    QFETCH(QString, path);
    const auto tree = Tree::read(readFixture(path));
    QVERIFY2(tree.ok(), tree ? "" : qPrintable(tree.error().message));
    const QString expected = QString::fromUtf8(readFixture(path + QStringLiteral(".json")));
    QVERIFY(!expected.isEmpty());
    QCOMPARE(typedstreamJson(*tree), comparableTypedstreamJson(expected));
  }

  void hostileSamplesAreRefused_data() {
    QTest::addColumn<QString>("path");
    addSamples(QStringLiteral("hostile"), QStringLiteral("ts_*.bin"));
  }
  void hostileSamplesAreRefused() {
    QFETCH(QString, path);
    const QByteArray archive = readFixture(path);
    QVERIFY(!archive.isEmpty());
    const auto tree = Tree::read(archive);
    QVERIFY(!tree.ok());
    QVERIFY(tree.error().kind == Error::Kind::Damaged);
    QVERIFY(tree.error().message.contains(QStringLiteral(" at byte ")));
  }

  void everyCutOfASampleIsRefused() {
    const QByteArray whole = readFixture(
        archiveFixtures(QStringLiteral("typedstream-synthetic"), QStringLiteral("*storage_le.bin"))
            .value(0));
    QVERIFY(Tree::read(whole).ok());
    constexpr qsizetype header = 16; // alone it is an archive of nothing
    for (qsizetype size = 0; size < whole.size(); ++size)
      QVERIFY2(size == header || !Tree::read(whole.left(size)).ok(),
               qPrintable(QString::number(size)));
  }

  void integersAreSignExtendedAndCutToTheirType_data() {
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<quint64>("expected");
    const auto row = [](const char* tag, const char* type, const char* bytes, quint64 expected) {
      QTest::newRow(tag) << QByteArray(type) << hex(bytes) << expected;
    };
    row("itself", "i", "7f", 127);
    row("least of itself", "i", "92", quint64(-110));
    row("two bytes", "i", "8191ff", quint64(-111));
    row("four bytes", "i", "82409c0000", 40000);
    row("eight bytes", "q", "8700e68ee7fdffffff", quint64(-9000000000));
    row("unsigned of one byte", "Q", "fd", 18446744073709551613U);
    row("unsigned of 32 bits", "I", "ff", 0xFFFFFFFF);
    row("unsigned of 16 bits", "S", "ff", 0xFFFF);
    row("long of 32 bits", "L", "ff", 0xFFFFFFFF);
    row("short", "s", "8291ff0000", quint64(qint16(0xFF91)));
    row("raw byte", "c", "84", quint64(qint8(0x84)));
    row("unsigned raw byte", "C", "84", 0x84);
  }
  void integersAreSignExtendedAndCutToTheirType() {
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, bytes);
    QFETCH(quint64, expected);
    const auto tree = readOne(type, bytes);
    QVERIFY2(tree.ok(), tree ? "" : qPrintable(tree.error().message));
    QCOMPARE(tree->object(tree->root()).groups[0].items[0].payload, expected);
  }

  void arraysAndStructuresKeepTheirElements() {
    const auto tree = readOne("[3s]{_Point=f{d}}[2C]", hex("010281e803") + hex("0183") +
                                                           hex("000000000000e03f") + hex("8485"));
    QVERIFY2(tree.ok(), tree ? "" : qPrintable(tree.error().message));
    const std::vector<Item>& items = tree->object(tree->root()).groups[0].items;
    QCOMPARE(items.size(), size_t(3));
    QCOMPARE(tree->list(items[0])[2].integer(), qint64(1000));
    QCOMPARE(tree->list(items[1])[0].real(), 1.0);
    QCOMPARE(tree->list(tree->list(items[1])[1])[0].real(), 0.5);
    QCOMPARE(tree->bytes(items[2]), hex("8485"));
  }

  void anObjectMayReferToItself() {
    const auto tree = readOne("@", hex("92"));
    QVERIFY2(tree.ok(), tree ? "" : qPrintable(tree.error().message));
    QVERIFY(tree->object(tree->root()).groups[0].items[0].payload == tree->root().payload);
    QCOMPARE(typedstreamJson(*tree).count(QStringLiteral("$cycle")), 1);
  }

  void damageIsRefused_data() {
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QString>("reason");
    const auto whole = [](const char* tag, const QByteArray& archive, const char* reason) {
      QTest::newRow(tag) << archive << QString::fromLatin1(reason);
    };
    const auto row = [whole](const char* tag, const QByteArray& types, const QByteArray& values,
                             const char* reason) {
      whole(tag, archiveOf(objectOf("Thing", group(types, values))), reason);
    };
    whole("another format", "GNUstep archive00002ae8", "no header");
    whole("an older version", QByteArray("\x03\x0bstreamtyped\x81\xe8\x03", 16), "no header");
    whole("no class", archiveOf(hex("848586")), "without a class");
    whole("class below itself", archiveOf(hex("8484840141009386")), "reference to no class");
    whole("class of an object", archiveOf(hex("849286")), "reference to no class");
    row("reserved head", "i", hex("88"), "no number");
    row("no types", "", {}, "types that");
    row("unknown type", "x", hex("01"), "types that");
    row("array without a count", "[i]", hex("01"), "types that");
    row("array of two types", "[1ii]", hex("0101"), "types that");
    row("open array", "[1i", hex("01"), "types that");
    row("stray bracket", "i]", hex("01"), "types that");
    row("nested types", QByteArray(18, '{') + "i" + QByteArray(18, '}'), hex("01"), "types that");
    row("reference to a class", "@", hex("93"), "reference to no object");
    row("object where a class is", "#", hex("92"), "reference to no class");
    row("object where a string is", "*", hex("92"), "reference to no string");
    row("string beyond the data", "+", hex("7f"), "string beyond");
    row("array of nothings", "[120!]", {}, "array beyond");
    row("cut real", "d", hex("83000000"), "ends in a number");
  }
  void damageIsRefused() {
    QFETCH(QByteArray, archive);
    QFETCH(QString, reason);
    const auto tree = Tree::read(archive);
    QVERIFY(!tree.ok());
    QVERIFY2(tree.error().message.contains(reason), qPrintable(tree.error().message));
  }

  void nestingIsLimited() {
    const auto nested = [](int depth) {
      QByteArray archive = archiveOf(hex("8484840141008592"));
      for (int i = 1; i < depth; ++i)
        archive += hex("849392");
      return archive + hex("85") + QByteArray(depth, char(0x86));
    };
    QVERIFY(Tree::read(nested(Tree::kMostDepth)).ok());
    QVERIFY(!Tree::read(nested(Tree::kMostDepth + 1)).ok());
  }

  void aSmallArchiveMayNotGrowWithoutBounds() {
    // Each group of one byte stands for thousands of values that take no room.
    const QByteArray types(30000, '!');
    QByteArray groups = hex("84") + hex("813075") + types;
    groups += QByteArray(100000, char(0x94));
    const auto tree = Tree::read(archiveOf(hex("84848401410085") + groups + hex("86")));
    QVERIFY(!tree.ok());
    QVERIFY(tree.error().message.contains(QStringLiteral("more values")));
  }
};

QTEST_GUILESS_MAIN(TypedstreamTreeTest)
#include "typedstream_tree_test.moc"
