// The container of attached files: reading, writing, and what is wrong with some.
#include "store/archive/file_wrapper.h"
#include "store/archive/legacy_text.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace tockwise;

namespace {

const QString kRegularFile = QStringLiteral("rtfd-synthetic/filewrapper_regular_png.bin");
const QString kFlatRtfd = QStringLiteral("rtfd-synthetic/flat_rtfd_image_padded.bin");

QByteArray fixture(const QString& name) {
  QFile file(QStringLiteral(TOCKWISE_TEST_DATA "/archives/") + name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject expectedOf(const QString& name) {
  return QJsonDocument::fromJson(fixture(name + QStringLiteral(".json"))).object();
}

QByteArray dataOf(const QJsonValue& value) {
  return QByteArray::fromHex(value[QLatin1String("$data")].toString().toLatin1());
}

QByteArray number(quint32 value) {
  QByteArray bytes;
  for (int shift = 0; shift < 32; shift += 8)
    bytes += char(value >> shift & 0xFF);
  return bytes;
}

QByteArray sized(const QByteArray& bytes) {
  return number(quint32(bytes.size())) + bytes;
}

QByteArray bytesNode(const QByteArray& bytes) {
  return number(1) + sized(bytes);
}

QByteArray folderNode(const std::vector<std::pair<QByteArray, QByteArray>>& entries) {
  QByteArray node = number(3) + number(quint32(entries.size()));
  for (const auto& [name, child] : entries)
    node += sized(name);
  for (const auto& [name, child] : entries)
    node += number(quint32(child.size()));
  for (const auto& [name, child] : entries)
    node += child;
  return node;
}

QByteArray container(const QByteArray& node) {
  return QByteArray("rtfd\0\0\0\0", 8) + node;
}

FileWrapper file(const QString& name, const QByteArray& contents) {
  return {FileWrapper::Type::RegularFile, name, contents, {}};
}

} // namespace

class FileWrapperTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aRegularFileIsReadWithItsNameAndContents() {
    const auto wrapper = readFileWrapper(fixture(kRegularFile));
    QVERIFY(wrapper.ok());
    const QJsonObject expected = expectedOf(kRegularFile);
    QVERIFY(wrapper->type == FileWrapper::Type::RegularFile);
    QCOMPARE(wrapper->name, expected[QLatin1String("preferred_name")].toString());
    QCOMPARE(wrapper->contents, dataOf(expected[QLatin1String("data")]));
    QVERIFY(wrapper->contents.startsWith("\x89PNG"));
  }

  void aWrittenRegularFileHasTheBytesOfTheSample() {
    const auto wrapper = readFileWrapper(fixture(kRegularFile));
    QVERIFY(wrapper.ok());
    QCOMPARE(writeFileWrapper(*wrapper), fixture(kRegularFile));
  }

  void aFolderIsReadWithPaddedBlocks() {
    const auto wrapper = readFileWrapper(fixture(kFlatRtfd));
    QVERIFY(wrapper.ok());
    const QJsonObject children = expectedOf(kFlatRtfd)[QLatin1String("children")].toObject();
    QVERIFY(wrapper->type == FileWrapper::Type::Folder);
    QCOMPARE(wrapper->name, QString());
    QCOMPARE(wrapper->children.size(), size_t(2));
    QCOMPARE(wrapper->children[0].name, QStringLiteral("TXT.rtf"));
    for (const FileWrapper& child : wrapper->children)
      QCOMPARE(child.contents, dataOf(children[child.name]));
  }

  void aWrittenFolderHasTheSamplesAttributeBlockAndReadsTheSame() {
    const auto wrapper = readFileWrapper(fixture(kFlatRtfd));
    QVERIFY(wrapper.ok());
    const QByteArray written = writeFileWrapper(*wrapper);
    const auto again = readFileWrapper(written);
    QVERIFY(again.ok());
    QCOMPARE(*again, *wrapper);
    const QByteArray sample = fixture(kFlatRtfd);
    constexpr qsizetype attributes = 0x4A; // the last node of the sample
    QCOMPARE(written.right(attributes), sample.right(attributes));
  }

  void whatIsWrittenIsReadBack_data() {
    QTest::addColumn<FileWrapper>("wrapper");
    QTest::newRow("empty file") << file(QStringLiteral("empty"), {});
    QTest::newRow("no name") << file({}, "contents");
    QTest::newRow("unicode name") << file(QStringLiteral("Übersicht 日本 😀.png"), "x");
    QTest::newRow("empty folder") << FileWrapper{FileWrapper::Type::Folder, {}, {}, {}};
    const FileWrapper inner{FileWrapper::Type::Folder,
                            QStringLiteral("inner"),
                            {},
                            {file(QStringLiteral("a"), "1"), file(QStringLiteral("b"), "2")}};
    QTest::newRow("nested folders")
        << FileWrapper{FileWrapper::Type::Folder, {}, {}, {inner, file(QStringLiteral("c"), "3")}};
  }
  void whatIsWrittenIsReadBack() {
    QFETCH(FileWrapper, wrapper);
    const auto read = readFileWrapper(writeFileWrapper(wrapper));
    QVERIFY(read.ok());
    QCOMPARE(*read, wrapper);
  }

  void theTimeOfChangeIsWritten() {
    const QByteArray written = writeFileWrapper(file(QStringLiteral("a"), "1"), 0x12345678);
    QVERIFY(written.endsWith(sized(QByteArrayLiteral("..")) + number(16) + number(0x12345678) +
                             number(0666) + number(2) + number(1)));
  }

  void aLegacyNameIsReadWhereThereIsNoOther() {
    const QByteArray node = folderNode({{"..", bytesNode("x")},
                                        {"__@PreferredName@__", bytesNode("Gr\x9f\xa7"
                                                                          "e.txt")}});
    const auto wrapper = readFileWrapper(container(node));
    QVERIFY(wrapper.ok());
    QCOMPARE(wrapper->name, QStringLiteral("Grüße.txt"));
    const FileWrapper written = file(QStringLiteral("Grüße 日.txt"), "x");
    QVERIFY(writeFileWrapper(written).contains("Gr\x9f\xa7"
                                               "e _.txt"));
  }

  void aPathBecomesItsLastComponent() {
    const auto wrapper =
        readFileWrapper(fixture(QStringLiteral("hostile/rtfd_traversal_name.bin")));
    QVERIFY(wrapper.ok());
    QCOMPARE(wrapper->children[0].name, QStringLiteral("evil"));
    QCOMPARE(wrapper->children[1].name, QStringLiteral("TXT.rtf"));
  }

  void aNameNeverBecomesASpecialEntry() {
    const FileWrapper folder{
        FileWrapper::Type::Folder,
        {},
        {},
        {file(QStringLiteral(".."), "1"), file(QStringLiteral("a/__@PreferredName@__"), "2")}};
    const auto read = readFileWrapper(writeFileWrapper(folder));
    QVERIFY(read.ok());
    QVERIFY(read->type == FileWrapper::Type::Folder);
    QCOMPARE(read->children.size(), size_t(2));
    QCOMPARE(read->children[0].name, QStringLiteral("unnamed"));
    QCOMPARE(read->children[1].contents, QByteArray("2"));
    const auto hidden = readFileWrapper(container(
        folderNode({{"x/..", bytesNode("3")}, {"x/__@PreferredName@__", bytesNode("4")}})));
    QVERIFY(hidden.ok());
    for (const FileWrapper& child : hidden->children)
      QCOMPARE(child.name, QStringLiteral("unnamed"));
  }

  void damageIsRefused_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("only the header") << container({});
    QTest::newRow("another format") << QByteArray("GNUstep archive00002ae8");
    QTest::newRow("huge count") << fixture(QStringLiteral("hostile/rtfd_huge_count.bin"));
    QTest::newRow("huge size") << fixture(QStringLiteral("hostile/rtfd_bad_size.bin"));
    QTest::newRow("bytes as the outermost") << container(bytesNode("x"));
    QTest::newRow("unknown kind") << container(folderNode({{"a", number(5) + sized("target")}}));
    QTest::newRow("node larger than its size")
        << container(folderNode({{"a", number(1) + number(5) + "1234"}, {"b", bytesNode("1")}}));
    QTest::newRow("contents are a folder") << container(folderNode({{"..", folderNode({})}}));
    QTest::newRow("endless padding") << container(
        folderNode({{"a", number(1) + number(0x80000000) + number(1) + number(9) + "1"}}));
  }
  void damageIsRefused() {
    QFETCH(QByteArray, bytes);
    const auto wrapper = readFileWrapper(bytes);
    QVERIFY(!wrapper.ok());
    QVERIFY(wrapper.error().kind == Error::Kind::Damaged);
    QVERIFY(wrapper.error().message.startsWith(QStringLiteral("not a sound file wrapper: ")));
  }

  void everyCutIsRefused() {
    for (const QString& name : {kRegularFile, kFlatRtfd}) {
      const QByteArray whole = fixture(name);
      QVERIFY(!whole.isEmpty());
      for (qsizetype size = 0; size < whole.size(); ++size)
        QVERIFY2(!readFileWrapper(whole.left(size)).ok(), qPrintable(QString::number(size)));
    }
  }

  void nestingIsLimited() {
    QByteArray node = folderNode({});
    for (int i = 0; i < 32; ++i)
      node = folderNode({{"f", node}});
    QVERIFY(readFileWrapper(container(node)).ok());
    QVERIFY(!readFileWrapper(container(folderNode({{"f", node}}))).ok());
  }

  void namesAreSanitised_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* tag, const QString& name, const QString& expected) {
      QTest::newRow(tag) << name << expected;
    };
    row("plain", QStringLiteral("dot.png"), QStringLiteral("dot.png"));
    row("path", QStringLiteral("/etc/passwd"), QStringLiteral("passwd"));
    row("trailing slash", QStringLiteral("folder/"), QStringLiteral("folder"));
    row("up", QStringLiteral("a/.."), QString());
    row("here", QStringLiteral("."), QString());
    row("control characters", QStringLiteral("a\n\x01\x7f.txt"), QStringLiteral("a.txt"));
    row("turned around", QStringLiteral("a\u202egpj.exe"), QStringLiteral("agpj.exe"));
    row("byte-order mark", QStringLiteral("\ufeffa.txt"), QStringLiteral("a.txt"));
    row("too long", QString(300, u'a'), QString(255, u'a'));
    row("too long in bytes", QString(200, QChar(u'日')), QString(85, QChar(u'日')));
    row("pair at the limit", QString(254, u'a') + QStringLiteral("😀"), QString(254, u'a'));
    row("hidden behind control characters", QStringLiteral(".\x01."), QString());
  }
  void namesAreSanitised() {
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(sanitisedFileName(name), expected);
    QCOMPARE(sanitisedFileName(expected), expected);
  }

  void legacyCharactersAreReadAndWritten() {
    for (const auto charset : {LegacyCharset::MacRoman, LegacyCharset::NextStep}) {
      QByteArray all;
      for (int code = 0; code < 0xFE; ++code)
        all += char(code);
      QCOMPARE(encodeLegacy(decodeLegacy(all, charset), charset), all);
    }
    QCOMPARE(decodeLegacy("\x80\x8a\xdb\xff", LegacyCharset::MacRoman), QStringLiteral("Ää€ˇ"));
    QCOMPARE(decodeLegacy("\x81\xd0\xfd\xfe", LegacyCharset::NextStep),
             QStringLiteral("À—ÿ\ufffd"));
    QCOMPARE(encodeLegacy(QStringLiteral("a€"), LegacyCharset::NextStep), QByteArray("a_"));
  }
};

QTEST_GUILESS_MAIN(FileWrapperTest)
#include "file_wrapper_test.moc"
