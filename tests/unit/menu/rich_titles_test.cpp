#include "unit/menu/menu_fixture.h"

#include <QJsonObject>
#include <QLoggingCategory>
#include <QTest>

using namespace tockwise;

namespace {

RichText twoRuns(int first, int second) {
  RichAttributes bold;
  bold.font = QStringLiteral("Helvetica-Bold");
  return {{QString(first, u'a'), bold}, {QString(second, u'b'), {}}};
}

const QByteArray kArchive = QByteArrayLiteral("archive");

void addRich(MenuFixture& fixture, const QByteArray& archive = kArchive) {
  fixture.add(QStringLiteral("plain"), 3600,
              [&](Reminder& reminder) { reminder.reminderRTFs = archive; });
}

MenuItem titleItem(const MenuFixture& fixture) {
  const std::vector<MenuItem> menu = fixture.menu();
  return menu[menu.size() - 2];
}

} // namespace

class RichTitlesTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void sixtyCharactersAreCutToFiftyAndAnEllipsisWithoutAttributes() {
    MenuFixture fixture;
    RichTitles titles([](const QByteArray&) { return twoRuns(30, 30); });
    fixture.richTitles = &titles;
    addRich(fixture);
    RichText expected = twoRuns(30, 20);
    expected.push_back({QStringLiteral("\u2026"), {}});
    QVERIFY(titleItem(fixture).richTitle == expected);
    QCOMPARE(titleItem(fixture).title, QStringLiteral("plain"));

    fixture.settings.setValue(QStringLiteral("truncateReminders"), false);
    QVERIFY(titleItem(fixture).richTitle == twoRuns(30, 30));
  }

  void fiftyCharactersAreShownWhole() {
    QVERIFY(cutRichText(twoRuns(30, 20), 50) == twoRuns(30, 20));
    QCOMPARE(cutRichText(twoRuns(50, 1), 50).size(), size_t(2));
  }

  void aCutKeepsSurrogatePairsWhole() {
    const RichText text{{QString(49, u'a') + QStringLiteral("\U0001F600b"), {}}};
    QCOMPARE(cutRichText(text, 50).front().text, QString(49, u'a'));
  }

  void withRichTextOffTitlesArePlain() {
    MenuFixture fixture;
    RichTitles titles([](const QByteArray&) { return twoRuns(3, 3); });
    fixture.richTitles = &titles;
    fixture.settings.setValue(QStringLiteral("showRichText"), false);
    addRich(fixture);
    QVERIFY(!titleItem(fixture).richTitle);
  }

  void withoutDataTitlesArePlainAndNothingIsLogged() {
    MenuFixture fixture;
    int read = 0;
    RichTitles titles([&](const QByteArray&) -> std::optional<RichText> {
      ++read;
      return std::nullopt;
    });
    fixture.richTitles = &titles;
    addRich(fixture, {});
    QVERIFY(!titleItem(fixture).richTitle);
    QCOMPARE(read, 0);
  }

  void anUnreadableArchiveIsLoggedOnceAndShownPlain() {
    static int logged;
    logged = 0;
    const auto handler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) {
          logged += line.contains(u"No data to unarchive") ? 1 : 0;
        });
    const auto filter = QLoggingCategory::installFilter(
        [](QLoggingCategory* category) { category->setEnabled(QtInfoMsg, true); });
    MenuFixture fixture;
    RichTitles titles([](const QByteArray&) { return std::nullopt; });
    fixture.richTitles = &titles;
    addRich(fixture);
    for (int second = 0; second < 5; ++second)
      QVERIFY(!titleItem(fixture).richTitle);
    QCOMPARE(logged, 1);
    fixture.settings.setValue(QStringLiteral("truncateReminders"), false);
    QCOMPARE(titleItem(fixture).title, QStringLiteral("plain"));
    QCOMPARE(logged, 1);
    QVERIFY(fixture.queue.set<&Columns::reminderRTFs>(0, QByteArrayLiteral("another")));
    titleItem(fixture);
    QCOMPARE(logged, 2);
    QLoggingCategory::installFilter(filter);
    qInstallMessageHandler(handler);
  }

  void anArchiveIsReadOnceUntilItChanges() {
    MenuFixture fixture;
    int read = 0;
    RichTitles titles([&](const QByteArray&) {
      ++read;
      return twoRuns(3, 3);
    });
    fixture.richTitles = &titles;
    addRich(fixture);
    titleItem(fixture);
    titleItem(fixture);
    QCOMPARE(read, 1);
    QVERIFY(fixture.queue.set<&Columns::reminderRTFs>(0, QByteArrayLiteral("another")));
    titleItem(fixture);
    QCOMPARE(read, 2);
  }

  void runsAreWrittenWithTheAttributesThatAreSet() {
    RichAttributes attributes;
    attributes.font = QStringLiteral("Helvetica");
    attributes.size = 12.5;
    attributes.color = 0xff102030;
    attributes.background = 0x80ffee00;
    attributes.underline = 1;
    attributes.alignment = QStringLiteral("center");
    attributes.attachment =
        RichAttachment{QStringLiteral("a.png"), 5, 3, 4, QByteArrayLiteral("x")};
    attributes.other = {QStringLiteral("NSKern")};
    const QJsonArray json =
        richTextToJson({{QStringLiteral("x"), attributes}, {QStringLiteral("y"), {}}});
    QCOMPARE(json[0].toObject()[QStringLiteral("attributes")].toObject(),
             (QJsonObject{{QStringLiteral("font"), QStringLiteral("Helvetica")},
                          {QStringLiteral("size"), 12.5},
                          {QStringLiteral("color"), QStringLiteral("#102030")},
                          {QStringLiteral("background"), QStringLiteral("#80ffee00")},
                          {QStringLiteral("underline"), 1},
                          {QStringLiteral("alignment"), QStringLiteral("center")},
                          {QStringLiteral("attachment"),
                           QJsonObject{{QStringLiteral("name"), QStringLiteral("a.png")},
                                       {QStringLiteral("bytes"), 5},
                                       {QStringLiteral("width"), 3},
                                       {QStringLiteral("height"), 4}}},
                          {QStringLiteral("other"), QJsonArray{QStringLiteral("NSKern")}}}));
    QCOMPARE(json[1].toObject()[QStringLiteral("attributes")].toObject(), QJsonObject());
  }
};

QTEST_GUILESS_MAIN(RichTitlesTest)
#include "rich_titles_test.moc"
