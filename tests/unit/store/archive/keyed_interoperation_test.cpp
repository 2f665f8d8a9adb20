// Python's plistlib reads what we write, and finds the archive whole.
#include "store/archive/keyed_value.h"
#include "store/archive/text_archive.h"
#include "support/archive_json.h"
#include "support/test_environment.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

using namespace tockwise;

namespace {

// Checks each archive named: the envelope, the class records, every reference in range, and no
// object that nothing leads to.
constexpr char kCheck[] = R"(
import plistlib, sys

def references(value):
    if isinstance(value, plistlib.UID):
        yield value.data
    elif isinstance(value, list):
        for each in value:
            yield from references(each)
    elif isinstance(value, dict):
        for each in value.values():
            yield from references(each)

def check(archive):
    assert set(archive) == {'$version', '$archiver', '$top', '$objects'}, set(archive)
    assert archive['$version'] == 100000 and archive['$archiver'] == 'NSKeyedArchiver'
    assert list(archive['$top']) == ['root'], archive['$top']
    objects = archive['$objects']
    assert objects[0] == '$null'
    seen, waiting = set(), [archive['$top']['root'].data]
    while waiting:
        uid = waiting.pop()
        assert 0 <= uid < len(objects), uid
        if uid in seen:
            continue
        seen.add(uid)
        value = objects[uid]
        assert not isinstance(value, (list, plistlib.UID)), value
        if isinstance(value, dict) and '$classname' in value:
            assert value['$classes'][0] == value['$classname'], value
            assert value['$classes'][-1] == 'NSObject', value
            continue
        if isinstance(value, dict):
            assert '$classname' in objects[value['$class'].data], value
            if 'NS.keys' in value:
                assert len(value['NS.keys']) == len(value['NS.objects'])
        waiting.extend(references(value))
    assert seen | {0} == set(range(len(objects))), set(range(len(objects))) - seen
    names = [o['$classname'] for o in objects if isinstance(o, dict) and '$classname' in o]
    assert len(names) == len(set(names)), names

for path in sys.argv[1:]:
    with open(path, 'rb') as file:
        try:
            check(plistlib.load(file))
        except Exception as error:
            sys.exit(f'{path}: {error!r}')
print(len(sys.argv) - 1, 'whole')
)";

QByteArray runPython(const char* program, const QStringList& arguments) {
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(QStringLiteral("/usr/bin/python3"),
                QStringList{QStringLiteral("-c"), QString::fromUtf8(program)} + arguments);
  process.waitForFinished(30000);
  return process.readAll();
}

void write(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
    qFatal("cannot write %s", qPrintable(path));
}

} // namespace

class KeyedInteroperationTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void everyFixtureThatWeWriteAgainIsWhole() {
    const TestEnvironment environment;
    QStringList written;
    for (const char* folder : {"keyed-gnustep", "keyed-synthetic", "keyed-genuine"}) {
      for (const QString& path :
           archiveFixtures(QString::fromLatin1(folder), QStringLiteral("*.plist"))) {
        const QByteArray bytes = readFixture(path);
        const QString to = environment.path(QFileInfo(path).fileName());
        if (const auto text = unarchiveText(bytes))
          write(to, archiveText(text->text));
        else if (const auto value = unarchiveValue(bytes))
          write(to, archiveValue(*value));
        else
          continue;
        written.append(to);
      }
    }
    QVERIFY(written.size() >= 16);
    QCOMPARE(runPython(kCheck, written), QByteArray::number(written.size()) + " whole\n");
  }

  void pythonReadsTheValuesThatWeWrite() {
    constexpr char kRead[] = "import plistlib, sys\n"
                             "o = plistlib.load(open(sys.argv[1], 'rb'))['$objects']\n"
                             "d = o[1]\n"
                             "keys = [o[u.data] for u in d['NS.keys']]\n"
                             "values = [o[u.data] for u in d['NS.objects']]\n"
                             "print(dict(zip(keys, values)))\n";
    const TestEnvironment environment;
    const QString path = environment.path(QStringLiteral("values.plist"));
    write(path, archiveValue(Value::Dictionary{{QStringLiteral("text"), QStringLiteral("é 😀")},
                                               {QStringLiteral("one"), qint64(1)},
                                               {QStringLiteral("real"), 1.0},
                                               {QStringLiteral("yes"), true},
                                               {QStringLiteral("low"), qint64(-5000000000)},
                                               {QStringLiteral("data"), QByteArray("ab")}}));
    QCOMPARE(QString::fromUtf8(runPython(kRead, {path})),
             QStringLiteral("{'text': 'é 😀', 'one': 1, 'real': 1.0, 'yes': True, "
                            "'low': -5000000000, 'data': b'ab'}\n"));
  }

  void theCheckSeesWhatIsWrong() {
    const TestEnvironment environment;
    const QString path = environment.path(QStringLiteral("broken.plist"));
    for (const char* name : {"uid_out_of_range.plist", "class_self.plist", "no_top.plist",
                             "keys_objects_mismatch.plist", "wrong_archiver.plist"}) {
      const auto paths = archiveFixtures(QStringLiteral("hostile"), QString::fromLatin1(name));
      write(path, readFixture(paths.value(0)));
      QVERIFY2(!runPython(kCheck, {path}).contains("whole"), name);
    }
  }
};

QTEST_GUILESS_MAIN(KeyedInteroperationTest)
#include "keyed_interoperation_test.moc"
