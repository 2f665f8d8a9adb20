#include "alerts/post_alert.h"
#include "support/fakes.h"

#include <QTest>

using namespace tockwise;

class PostAlertTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void theNotificationIsScheduledASecondAheadWithItsTitleAndSound() {
    FakeNotificationCentre centre;
    FakeClock clock{Date{790000000}};
    PostAlert poster(centre, clock);
    poster.postAlert(QStringLiteral("<b>Tea</b> & cake"));
    QCOMPARE(centre.scheduled.size(), size_t(1));
    const UserNotification& posted = centre.scheduled.front();
    QCOMPARE(posted.title, QStringLiteral("Ftech Successful"));
    QCOMPARE(posted.informativeText, QStringLiteral("<b>Tea</b> & cake"));
    QCOMPARE(posted.deliveryDate.seconds, 790000001.0);
    QVERIFY(posted.defaultSound);
  }

  void clickingANotificationRemovesThatOneFromTheList() {
    FakeNotificationCentre centre;
    FakeClock clock;
    PostAlert poster(centre, clock);
    poster.postAlert(QStringLiteral("Tea"));
    poster.postAlert(QStringLiteral("Cake"));
    QVERIFY(centre.removed.empty());
    centre.click(2);
    QCOMPARE(centre.removed, std::vector<quint64>{2});
  }
};

QTEST_GUILESS_MAIN(PostAlertTest)
#include "post_alert_test.moc"
