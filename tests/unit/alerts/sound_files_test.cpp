#include "alerts/alert_sounds.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <cmath>

using namespace tockwise;

namespace {

QString folder() {
  return QStringLiteral(TOCKWISE_SOUNDS);
}

QByteArray contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

template <typename T> T number(const QByteArray& bytes, int at) {
  return qFromLittleEndian<T>(bytes.constData() + at);
}

std::vector<double> samples(const QByteArray& bytes) {
  std::vector<double> result;
  for (int at = 44; at + 1 < bytes.size(); at += 2)
    result.push_back(number<qint16>(bytes, at) / 32768.0);
  return result;
}

double loudest(auto begin, auto end) {
  double result = 0;
  for (auto each = begin; each != end; ++each)
    result = std::max(result, std::fabs(*each));
  return result;
}

} // namespace

class SoundFilesTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void thereAreAtLeastEightAndTheFallbackAmongThem() {
    const QStringList names = QDir(folder()).entryList({QStringLiteral("*.wav")}, QDir::Files);
    QVERIFY(names.size() >= 8);
    QVERIFY(names.contains(QString::fromUtf16(kFallbackSound)));
  }

  void eachIsAProperWaveFile_data() { eachSound(); }
  void eachIsAProperWaveFile() {
    QFETCH(QString, path);
    const QByteArray bytes = contents(path);
    QVERIFY(bytes.size() > 44);
    QCOMPARE(bytes.left(4), QByteArray("RIFF"));
    QCOMPARE(number<quint32>(bytes, 4), quint32(bytes.size() - 8));
    QCOMPARE(bytes.mid(8, 8), QByteArray("WAVEfmt "));
    QCOMPARE(number<quint32>(bytes, 16), 16u);
    QCOMPARE(number<quint16>(bytes, 20), quint16(1)); // PCM
    QCOMPARE(number<quint16>(bytes, 22), quint16(1)); // mono
    QCOMPARE(number<quint32>(bytes, 24), 44100u);
    QCOMPARE(number<quint32>(bytes, 28), 88200u);
    QCOMPARE(number<quint16>(bytes, 32), quint16(2));
    QCOMPARE(number<quint16>(bytes, 34), quint16(16));
    QCOMPARE(bytes.mid(36, 4), QByteArray("data"));
    QCOMPARE(number<quint32>(bytes, 40), quint32(bytes.size() - 44));
  }

  void eachIsShortAndNeitherSilentNorClipped_data() { eachSound(); }
  void eachIsShortAndNeitherSilentNorClipped() {
    QFETCH(QString, path);
    const auto wave = samples(contents(path));
    const double seconds = double(wave.size()) / 44100;
    QVERIFY(seconds >= 0.1 && seconds <= 1.5);
    const double peak = loudest(wave.begin(), wave.end());
    QVERIFY2(std::fabs(20 * std::log10(peak) + 3) < 0.2, qPrintable(QString::number(peak)));
  }

  void neitherEndOfAnyClicks_data() { eachSound(); }
  void neitherEndOfAnyClicks() {
    QFETCH(QString, path);
    const auto wave = samples(contents(path));
    QVERIFY(std::fabs(wave.front()) < 0.001);
    QVERIFY(loudest(wave.end() - 44, wave.end()) < 0.003); // the last millisecond
  }

  void noTwoAreAlike() {
    QSet<QByteArray> seen;
    const QStringList names = QDir(folder()).entryList({QStringLiteral("*.wav")}, QDir::Files);
    for (const QString& name : names)
      seen += contents(folder() + u'/' + name);
    QCOMPARE(seen.size(), names.size());
  }

  void makingThemAgainGivesTheSameBytes() {
    const QTemporaryDir again;
    QCOMPARE(QProcess::execute(QStringLiteral(TOCKWISE_MAKE_SOUNDS), {again.path()}), 0);
    const QStringList names = QDir(folder()).entryList({QStringLiteral("*.wav")}, QDir::Files);
    QCOMPARE(QDir(again.path()).entryList(QDir::Files), names);
    for (const QString& name : names)
      QCOMPARE(contents(again.filePath(name)), contents(folder() + u'/' + name));
  }

 private:
  static void eachSound() {
    QTest::addColumn<QString>("path");
    const QStringList names = QDir(folder()).entryList({QStringLiteral("*.wav")}, QDir::Files);
    for (const QString& name : names)
      QTest::newRow(qPrintable(name)) << folder() + u'/' + name;
  }
};

QTEST_GUILESS_MAIN(SoundFilesTest)
#include "sound_files_test.moc"
