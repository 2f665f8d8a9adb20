// Opening things with a desktop's applications: entries of our own, which start real programs.
#include "platform/desktop_workspace.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <memory>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

} // namespace

class DesktopWorkspaceTest : public QObject {
  Q_OBJECT

  // GLib reads the environment once: all tests share one, in which every entry stands from the
  // beginning.
  std::unique_ptr<TestEnvironment> m_environment;
  DesktopWorkspace m_workspace;

  QString home(const QString& name = {}) const { return m_environment->path(text("home/") + name); }
  void write(const QString& path, const QByteArray& content, bool executable = false) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
      qFatal("%s can't be written", qPrintable(path));
    file.write(content);
    if (executable)
      file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
  }
  void entry(const char* identity, const QByteArray& keys) {
    write(home(text(".local/share/applications/%1.desktop").arg(text(identity))),
          "[Desktop Entry]\nType=Application\n" + keys);
  }
  QByteArray recorder() const { return home(text("bin/the recorder")).toUtf8(); }

  /// What the recorder wrote: its folder, then an argument a line. Waits for it.
  QStringList record(const char* name) {
    const QString path = home(text("record-") + text(name));
    const bool written = QTest::qWaitFor([&] { return QFile::exists(path); }, 10000);
    if (!written)
      return {text("nothing was started")};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
      return {text("can't be read")};
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    lines.removeLast();
    return lines;
  }
  QStringList inHome(const QStringList& arguments) const {
    return QStringList{QFileInfo(home()).canonicalFilePath()} + arguments;
  }
  static QStringList inFolder(const QString& folder, const QStringList& arguments) {
    return QStringList{QFileInfo(folder).canonicalFilePath()} + arguments;
  }

 private Q_SLOTS:
  void initTestCase() {
    m_environment = std::make_unique<TestEnvironment>();
    qputenv("XDG_DATA_DIRS", m_environment->path(text("share")).toUtf8() + ":/usr/share/none");
    qputenv("XDG_CONFIG_DIRS", m_environment->path(text("etc")).toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    qputenv("PATH", home(text("bin")).toUtf8() + ":/usr/bin:/bin");
    qunsetenv("DISPLAY");
    // The types themselves are the system's.
    QFile::link(text("/usr/share/mime"), home(text(".local/share/mime")));
    const QByteArray program = "#!/bin/sh\nout=\"$HOME/record-$1\"\n[ $# -eq 0 ] || shift\n"
                               "{ pwd -P; for a; do printf '%s\\n' \"$a\"; done; } > \"$out.new\"\n"
                               "mv \"$out.new\" \"$out\"\n";
    write(home(text("bin/the recorder")), program, true);
    write(home(text("bin/tea-program")), program + "mv \"$out\" \"$HOME/record-program\"\n", true);
    write(home(text("bin/not executable")), program);
    const QByteArray exec = "Exec=\"" + recorder() + "\" ";
    entry("org.example.Editor", "Name=Plain Editor\nMimeType=text/plain;\n" + exec + "edit %f\n");
    entry("org.example.Other", "Name=Other\nMimeType=text/plain;\n" + exec + "other %f\n");
    entry("org.example.Web", "Name=Web\nMimeType=x-scheme-handler/http;\n" + exec + "web %u\n");
    entry("org.example.Folders", "Name=Folders\nMimeType=inode/directory;\n" + exec + "dir %f\n");
    entry("org.example.Films",
          "Name=Films\nCategories=AudioVideo;Player;\nMimeType=video/mp4;\n" + exec + "film %F\n");
    entry("org.example.Songs", "Name=Songs\nCategories=Audio;AudioVideo;Player;\n"
                               "MimeType=audio/mpeg;audio/x-vorbis+ogg;\n" +
                                   exec + "song %U\n");
    entry("org.example.Codes", "Name=Tea & Codes\nIcon=tea\n" + exec +
                                   "codes \"two words\" \"\\\\$HOME\" %% %c %i %k\n");
    entry("org.example.Place",
          "Name=Place\nPath=" + home(text("bin")).toUtf8() + "\n" + exec + "place\n");
    entry("org.example.Menuless", "Name=Menuless\nNoDisplay=true\n" + exec + "menuless\n");
    entry("org.example.Gone", "Name=Gone\nTryExec=/no/such/program\n" + exec + "gone\n");
    entry("org.example.Broken", "Name=Broken\nExec=/no/such/program %u\n");
    // What update-desktop-database makes of the entries' types.
    write(home(text(".local/share/applications/mimeinfo.cache")),
          "[MIME Cache]\n"
          "text/plain=org.example.Other.desktop;org.example.Editor.desktop;\n"
          "x-scheme-handler/http=org.example.Web.desktop;\n"
          "inode/directory=org.example.Folders.desktop;\n"
          "video/mp4=org.example.Films.desktop;\n"
          "audio/mpeg=org.example.Songs.desktop;\n"
          "audio/x-vorbis+ogg=org.example.Songs.desktop;\n");
    write(home(text(".config/mimeapps.list")),
          "[Default Applications]\ntext/plain=org.example.Editor.desktop\n");
  }
  void cleanupTestCase() { m_environment.reset(); }
  void cleanup() {
    const QDir folder(home());
    for (const QString& name : folder.entryList({text("record-*")}))
      QFile::remove(folder.filePath(name));
  }

  void anAddressOpensInItsSchemesApplication_data() {
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("opened");
    QTest::newRow("plain") << text("http://example.org/a?b=c&d#e")
                           << text("http://example.org/a?b=c&d#e");
    QTest::newRow("two schemes") << text("http://https://example.org")
                                 << text("http://https://example.org");
    QTest::newRow("blanks and quotes") << text("http://example.org/a b\"c'd;$(e)`f`")
                                       << text("http://example.org/a%20b%22c'd;$(e)%60f%60");
    QTest::newRow("already encoded")
        << text("HTTP://Example.org/%20%C3%A9") << text("HTTP://Example.org/%20%C3%A9");
    QTest::newRow("line feed") << text("http://example.org/a\n--b")
                               << text("http://example.org/a%0A--b");
    QTest::newRow("letters") << text("http://example.org/tée")
                             << text("http://example.org/t%C3%A9e");
  }
  void anAddressOpensInItsSchemesApplication() {
    QFETCH(QString, address);
    QFETCH(QString, opened);
    QVERIFY(m_workspace.openURL(address));
    QCOMPARE(record("web"), inHome({opened}));
  }

  void whatIsNoAddressOpensNothing_data() {
    QTest::addColumn<QString>("address");
    for (const char* address : {"", "http://", "http:///path", "example.org", "http://[",
                                "tockwise-unknown://example.org"})
      QTest::newRow(address) << text(address);
  }
  void whatIsNoAddressOpensNothing() {
    QFETCH(QString, address);
    QVERIFY(!m_workspace.openURL(address));
  }

  void aDocumentOpensInItsTypesApplication() {
    const QString path = home(text("a 'list' of $(things) & more.txt"));
    write(path, "tea\n");
    QVERIFY(m_workspace.openFile(path));
    QCOMPARE(record("edit"), inHome({path}));
  }

  void aKindOfTextOpensWhereTextDoes() {
    write(home(text("program.py")), "#!/usr/bin/env python3\nprint(1)\n");
    QVERIFY(m_workspace.openFile(text("program.py"))); // counted from HOME
    QCOMPARE(record("edit"), inHome({home(text("program.py"))}));
  }

  void aFolderAndALocalFilesAddressAreDocumentsToo() {
    QVERIFY(m_workspace.openFile(home(text("bin"))));
    QCOMPARE(record("dir"), inHome({home(text("bin"))}));
    write(home(text("list.txt")), "tea\n");
    QVERIFY(m_workspace.openURL(text("file://") + home(text("list.txt"))));
    QCOMPARE(record("edit"), inHome({home(text("list.txt"))}));
  }

  void aDocumentThatNothingOpensIsNotOpened() {
    write(home(text("data.bin")), QByteArray("\x00\x01\x02\xff", 4));
    QVERIFY(!m_workspace.openFile(home(text("data.bin"))));
    QVERIFY(!m_workspace.openFile(home(text("missing.txt"))));
    QVERIFY(!m_workspace.openFile({}));
  }

  void mediaOpenInTheApplicationForTheirType() {
    write(home(text("a song.mp3")), "ID3");
    QVERIFY(m_workspace.openMediaFile(home(text("a song.mp3"))));
    QCOMPARE(record("song"), inHome({home(text("a song.mp3"))}));
    write(home(text("film.mp4")), {});
    QVERIFY(m_workspace.openMediaFile(home(text("film.mp4"))));
    QCOMPARE(record("film"), inHome({home(text("film.mp4"))}));
  }

  void mediaThatNothingIsForOpenInAPlayer_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("film") << text("film.webm");
    QTest::newRow("no medium at all") << text("words.txt");
  }
  void mediaThatNothingIsForOpenInAPlayer() {
    QFETCH(QString, name);
    write(home(name), "words\n");
    QVERIFY(m_workspace.openMediaFile(home(name)));
    QTRY_VERIFY(QFile::exists(home(text("record-song"))) ||
                QFile::exists(home(text("record-film"))));
    QVERIFY(!QFile::exists(home(text("record-edit"))));
    QVERIFY(!m_workspace.openMediaFile(home(text("missing.mp3"))));
  }

  void anApplicationIsFoundByWhatIsKnownOfIt_data() {
    QTest::addColumn<QString>("application");
    QTest::addColumn<QString>("name");
    QTest::newRow("identity") << text("org.example.Editor") << text("edit");
    QTest::newRow("file name") << text("org.example.Editor.desktop") << text("edit");
    QTest::newRow("name") << text("Plain Editor") << text("edit");
    QTest::newRow("name in other letters") << text("plain EDITOR") << text("edit");
    QTest::newRow("not in menus") << text("Menuless") << text("menuless");
    QTest::newRow("program in PATH") << text("tea-program") << text("program");
  }
  void anApplicationIsFoundByWhatIsKnownOfIt() {
    QFETCH(QString, application);
    QFETCH(QString, name);
    QVERIFY(m_workspace.launchApplication(application));
    QCOMPARE(record(qPrintable(name)), inHome({}));
  }

  void anApplicationIsFoundByItsPath() {
    QVERIFY(m_workspace.launchApplication(
        home(text(".local/share/applications/org.example.Editor.desktop"))));
    QCOMPARE(record("edit"), inHome({}));
    QVERIFY(m_workspace.launchApplication(home(text("bin/tea-program"))));
    QCOMPARE(record("program"), inHome({}));
  }

  void anEntryOutsideTheMenusFoldersIsStartedByItsPath() {
    write(home(text("Desktop/My entry.desktop")),
          "[Desktop Entry]\nType=Application\nName=Mine\nExec=\"" + recorder() + "\" mine\n");
    QVERIFY(m_workspace.launchApplication(home(text("Desktop/My entry.desktop"))));
    QCOMPARE(record("mine"), inHome({}));
  }

  void anEntrysExecLineIsReadByItsOwnRules() {
    QVERIFY(m_workspace.launchApplication(text("Tea & Codes")));
    QCOMPARE(
        record("codes"),
        inHome({text("two words"), text("$HOME"), text("%"), text("Tea & Codes"), text("--icon"),
                text("tea"), home(text(".local/share/applications/org.example.Codes.desktop"))}));
  }

  void anEntryMaySayWhereItRuns() {
    QVERIFY(m_workspace.launchApplication(text("Place")));
    QCOMPARE(record("place"), inFolder(home(text("bin")), {}));
  }

  void whatIsNoApplicationIsNotStarted_data() {
    QTest::addColumn<QString>("application");
    for (const char* application :
         {"", "no such thing", "Gone", "org.example.Gone", "Broken", "/no/such/program", "/usr",
          "/no/such.desktop", "bin/not executable", "tea-program; touch made", "tea-program made"})
      QTest::newRow(application) << text(application);
    QTest::newRow("zero") << QString(QChar(u'\0'));
  }
  void whatIsNoApplicationIsNotStarted() {
    QFETCH(QString, application);
    QVERIFY(!m_workspace.launchApplication(application));
    QVERIFY(!QFile::exists(home(text("made"))));
  }
};

QTEST_MAIN(DesktopWorkspaceTest)
#include "desktop_workspace_test.moc"
