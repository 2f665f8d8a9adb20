#include "prefs/setting_table.h"

#include <QTest>

#include <set>

using namespace tockwise;

class SettingTableTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void everyKeyStandsOnce() {
    std::set<QString> keys;
    for (const SettingRow& row : settingTable())
      QVERIFY(keys.insert(QString::fromUtf16(row.key)).second);
    QVERIFY(keys.contains(QStringLiteral("quickRemindMenuArray")));
    QVERIFY(!findSetting(u"reminderQueue"));
    QVERIFY(!findSetting(u"nonsense"));
  }

  void booleansTakeThreeSpellings_data() {
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("on");
    QTest::newRow("YES") << QStringLiteral("YES") << true << true;
    QTest::newRow("NO") << QStringLiteral("NO") << true << false;
    QTest::newRow("true") << QStringLiteral("true") << true << true;
    QTest::newRow("false") << QStringLiteral("false") << true << false;
    QTest::newRow("1") << QStringLiteral("1") << true << true;
    QTest::newRow("0") << QStringLiteral("0") << true << false;
    QTest::newRow("2") << QStringLiteral("2") << false << false;
    QTest::newRow("empty") << QString() << false << false;
    QTest::newRow("on") << QStringLiteral("on") << false << false;
  }
  void booleansTakeThreeSpellings() {
    QFETCH(QString, word);
    QFETCH(bool, valid);
    QFETCH(bool, on);
    const auto value = parseSetting(SettingType::Boolean, {word});
    QCOMPARE(value.ok(), valid);
    if (valid)
      QCOMPARE(*value, Value(on));
    else
      QCOMPARE(value.error().kind, Error::Kind::Usage);
  }

  void anIntegerMustBeOne() {
    QCOMPARE(*parseSetting(SettingType::Integer, {QStringLiteral("-3")}), Value(-3));
    QVERIFY(!parseSetting(SettingType::Integer, {QStringLiteral("3.5")}));
    QVERIFY(!parseSetting(SettingType::Integer, {QStringLiteral("three")}));
    QVERIFY(!parseSetting(SettingType::Integer, {QStringLiteral("1"), QStringLiteral("2")}));
  }

  void thePortMayBeEmptiedAgain() {
    const SettingRow* row = findSetting(u"serverPortAD");
    QVERIFY(row);
    QCOMPARE(*parseSetting(row->type, {QString()}), Value(QString()));
    QCOMPARE(*parseSetting(row->type, {QStringLiteral("25")}), Value(25));
    QVERIFY(!parseSetting(row->type, {QStringLiteral("x")}));
    QVERIFY(!parseSetting(row->type, {}));
    QVERIFY(!parseSetting(SettingType::Integer, {QString()}));
    QCOMPARE(formatSetting(row->type, Value(QString())), QString());
    QCOMPARE(formatSetting(row->type, Value(25)), QStringLiteral("25"));
  }

  void aStringIsTakenAsItIs() {
    QCOMPARE(*parseSetting(SettingType::String, {QString()}), Value(QString()));
    QVERIFY(!parseSetting(SettingType::String, {}));
  }

  void valuesArePrintedAsTheCommandLineDoes() {
    QCOMPARE(formatSetting(SettingType::Boolean, Value(true)), QStringLiteral("YES"));
    QCOMPARE(formatSetting(SettingType::Boolean, Value(qint64(0))), QStringLiteral("NO"));
    QCOMPARE(formatSetting(SettingType::Integer, Value(587)), QStringLiteral("587"));
    QCOMPARE(formatSetting(SettingType::Integer, Value(QString())), QString());
    QCOMPARE(formatSetting(SettingType::String, Value()), QString());
    QCOMPARE(formatSetting(SettingType::StringArray,
                           Value(QStringList{QStringLiteral("a"), QStringLiteral("b")})),
             QStringLiteral("a\nb"));
  }
};

QTEST_GUILESS_MAIN(SettingTableTest)
#include "setting_table_test.moc"
