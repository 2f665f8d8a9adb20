// Which of the program's sounds is chosen.
#include "prefs/sound_choice.h"

#include <QTest>

using namespace tockwise;

namespace {

const QString kName = QStringLiteral("selectedSoundFilename");
const QString kPosition = QStringLiteral("reminderSoundPopUpButtonSelectedIndex");
const QString kPop = QStringLiteral("pop.wav");
const QStringList kSounds{QStringLiteral("bell.wav"), QStringLiteral("chime.wav"), kPop};

} // namespace

class SoundChoiceTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theNameCountsAndThePositionWhereItAgrees_data() {
    QTest::addColumn<Value>("name");
    QTest::addColumn<Value>("position");
    QTest::addColumn<qsizetype>("chosen");
    const Value none;
    const Value chime(QStringLiteral("chime.wav"));
    QTest::newRow("nothing is stored: the fallback") << none << none << qsizetype(2);
    QTest::newRow("a name") << chime << none << qsizetype(1);
    QTest::newRow("a name and its position") << chime << Value(1) << qsizetype(1);
    QTest::newRow("a name and another one's position") << chime << Value(0) << qsizetype(1);
    QTest::newRow("a name and no position of the list") << chime << Value(7) << qsizetype(1);
    QTest::newRow("a position alone") << none << Value(0) << qsizetype(0);
    QTest::newRow("a position alone, beyond the list") << none << Value(3) << qsizetype(2);
    QTest::newRow("a position alone, before the list") << none << Value(-1) << qsizetype(2);
    QTest::newRow("a name that is not there")
        << Value(QStringLiteral("gong.wav")) << none << qsizetype(-1);
    QTest::newRow("a name that is not there, with a position")
        << Value(QStringLiteral("gong.wav")) << Value(1) << qsizetype(-1);
    QTest::newRow("an empty name") << Value(QString()) << none << qsizetype(-1);
  }
  void theNameCountsAndThePositionWhereItAgrees() {
    QFETCH(Value, name);
    QFETCH(Value, position);
    MemorySettings settings;
    settings.setValue(kName, name);
    settings.setValue(kPosition, position);
    QTEST(chosenSound(settings, kSounds, kPop), "chosen");
  }

  void oneOfTwoOfTheSameNameIsKeptByItsPosition() {
    const QStringList sounds{kPop, kPop};
    MemorySettings settings;
    chooseSound(settings, kPop, 1);
    QCOMPARE(chosenSound(settings, sounds, kPop), qsizetype(1));
  }

  void withoutSoundsNoneIsChosen() {
    MemorySettings settings;
    QCOMPARE(chosenSound(settings, {}, kPop), qsizetype(-1));
    settings.setValue(kPosition, 0);
    QCOMPARE(chosenSound(settings, {}, kPop), qsizetype(-1));
  }

  void choosingStoresNameAndPositionAndSynchronises() {
    MemorySettings settings;
    chooseSound(settings, kSounds[1], 1);
    QCOMPARE(settings.string(kName), kSounds[1]);
    QCOMPARE(settings.integer(kPosition), qint64(1));
    QCOMPARE(settings.synchronizations(), 1);
  }
};

Q_DECLARE_METATYPE(tockwise::Value)
QTEST_GUILESS_MAIN(SoundChoiceTest)
#include "sound_choice_test.moc"
