#include "alerts/alert_sounds.h"
#include "support/fakes.h"
#include "support/log_lines.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace tockwise;

namespace {

const QString kRandomly = QStringLiteral("pickSoundRandomly");
const QString kSelected = QStringLiteral("selectedSoundFilename");

class SoundFolder {
 public:
  explicit SoundFolder(const QStringList& names) {
    for (const QString& name : names) {
      QFile file(m_folder.filePath(name));
      const bool opened = file.open(QIODevice::WriteOnly);
      Q_ASSERT(opened);
      file.write("RIFF");
    }
  }
  QString path() const { return m_folder.path(); }
  QString file(const QString& name) const { return m_folder.filePath(name); }

 private:
  QTemporaryDir m_folder;
};

struct Fixture {
  explicit Fixture(const QStringList& names = {QStringLiteral("b.wav"), QStringLiteral("a.wav"),
                                               QStringLiteral("round_pop_click.wav"),
                                               QStringLiteral("readme.txt")})
      : folder(names), sounds(settings, player, {folder.path()}, [this](qint64 count) {
          askedFor.push_back(count);
          return random;
        }) {}

  SoundFolder folder;
  MemorySettings settings;
  FakeSoundPlayer player;
  std::vector<qint64> askedFor;
  qint64 random = 0;
  AlertSounds sounds;

  std::vector<QString> expected(const char* name) const {
    return {folder.file(QString::fromLatin1(name))};
  }
};

void expectLine(const char* line) {
  QTest::ignoreMessage(QtInfoMsg, line);
}

} // namespace

class AlertSoundsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void initTestCase() { enableLogLines(); }

  void withoutAChoiceTheFallbackPlays() {
    Fixture f;
    QCOMPARE(f.sounds.selectedAlertSound(), QStringLiteral("round_pop_click.wav"));
    expectLine("0 - Sound = round_pop_click.wav");
    f.sounds.playAlertSound();
    QCOMPARE(f.player.played, f.expected("round_pop_click.wav"));
    QCOMPARE(f.settings.synchronizations(), 1);
  }

  void theChosenSoundPlays() {
    Fixture f;
    f.settings.setValue(kSelected, QStringLiteral("b.wav"));
    expectLine("0 - Sound = b.wav");
    f.sounds.playAlertSound();
    QCOMPARE(f.player.played, f.expected("b.wav"));
  }

  void aMissingSoundFallsBack() {
    Fixture f;
    f.settings.setValue(kSelected, QStringLiteral("gone.wav"));
    expectLine("0 - Sound = gone.wav");
    f.sounds.playAlertSound();
    QCOMPARE(f.player.played, f.expected("round_pop_click.wav"));
  }

  void withoutAnyFileNothingPlaysAndNothingElseIsLogged() {
    Fixture f(QStringList{});
    expectLine("0 - Sound = round_pop_click.wav");
    f.sounds.playAlertSound();
    QVERIFY(f.player.played.empty());
  }

  void theListIsInFileNameOrderAndHoldsSoundsOnly() {
    Fixture f;
    QVERIFY(f.sounds.sounds().isEmpty());
    f.sounds.buildSoundList();
    QCOMPARE(f.sounds.sounds(), (QStringList{QStringLiteral("a.wav"), QStringLiteral("b.wav"),
                                             QStringLiteral("round_pop_click.wav")}));
  }

  void aRandomSoundIsTheOneAtTheRandomIndex() {
    Fixture f;
    f.sounds.buildSoundList();
    f.settings.setValue(kRandomly, true);
    f.settings.setValue(kSelected, QStringLiteral("a.wav"));
    f.random = 1;
    expectLine("1 - Sound = b.wav");
    f.sounds.playAlertSound();
    QCOMPARE(f.askedFor, std::vector<qint64>{3});
    QCOMPARE(f.player.played, f.expected("b.wav"));
  }

  void aRandomNumberNotBelowTheCountIsTakenAsZero() {
    Fixture f;
    f.sounds.buildSoundList();
    f.settings.setValue(kRandomly, true);
    f.random = 3;
    expectLine("0 - Sound = a.wav");
    f.sounds.playAlertSound();
    QCOMPARE(f.player.played, f.expected("a.wav"));
  }

  void randomlyBeforeTheListIsBuiltPlaysTheFallback() {
    Fixture f;
    f.settings.setValue(kRandomly, true);
    expectLine("0 - Sound = ");
    f.sounds.playAlertSound();
    QCOMPARE(f.player.played, f.expected("round_pop_click.wav"));
  }

  void aNameWithAFolderInItNeverLeavesTheFolder() {
    Fixture f;
    QDir().mkpath(f.folder.file(QStringLiteral("inner")));
    QCOMPARE(f.sounds.pathOfSound(QStringLiteral("../") + QDir(f.folder.path()).dirName() +
                                  QStringLiteral("/a.wav")),
             f.folder.file(QStringLiteral("round_pop_click.wav")));
    QCOMPARE(f.sounds.pathOfSound(QStringLiteral("inner")),
             f.folder.file(QStringLiteral("round_pop_click.wav")));
  }

  void theSystemsRandomNumbersReachEveryIndexAndNoOther() {
    const auto random = AlertSounds::systemRandom();
    QCOMPARE(random(0), 0);
    std::array<int, 4> seen{};
    for (int i = 0; i < 4000; ++i) {
      const qint64 number = random(4);
      QVERIFY(number >= 0 && number < 4);
      ++seen[size_t(number)];
    }
    for (int count : seen)
      QVERIFY(count > 700); // 1000 expected; ten standard deviations
  }

  void theProgramAsBuiltFindsItsSounds() {
    QVERIFY(AlertSounds::standardFolders().constFirst().endsWith(
        QStringLiteral("/share/tockwise/sounds")));
  }
};

QTEST_GUILESS_MAIN(AlertSoundsTest)
#include "alert_sounds_test.moc"
