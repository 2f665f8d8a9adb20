// Reminders documents dragged onto the menu's window.
#include "menu/ui/drop_frame.h"
#include "menu/ui/menu_window.h"
#include "support/test_environment.h"
#include "unit/menu/menu_fixture.h"

#include <QApplication>
#include <QDropEvent>
#include <QListView>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

QList<QUrl> files(const QStringList& paths) {
  QList<QUrl> urls;
  for (const QString& path : paths)
    urls += QUrl::fromLocalFile(path);
  return urls;
}

} // namespace

class MenuWindowDropTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  MenuFixture m_fixture;
  std::unique_ptr<MenuWindow> m_window;
  QMimeData m_dragged;

  /// To whatever lies under the pointer, as the desktop sends it.
  bool enter() {
    QDragEnterEvent event(QPoint(50, 50), Qt::CopyAction | Qt::MoveAction, &m_dragged,
                          Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(m_window.get(), &event);
    return event.isAccepted() && event.dropAction() == Qt::CopyAction;
  }
  bool drop() {
    QDropEvent event(QPointF(50, 50), Qt::CopyAction | Qt::MoveAction, &m_dragged, Qt::LeftButton,
                     Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(m_window.get(), &event);
    return event.isAccepted() && event.dropAction() == Qt::CopyAction;
  }
  void leave() {
    QDragLeaveEvent event;
    QCoreApplication::sendEvent(m_window.get(), &event);
  }
  DropFrame* frame() { return m_window->findChild<DropFrame*>(); }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_window = std::make_unique<MenuWindow>([this] { return m_fixture.input(); });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
  }
  void cleanup() {
    m_window.reset();
    m_environment.reset();
    m_dragged.clear();
  }

  void aDocumentIsTakenWhereverInTheWindowItFalls() {
    QVERIFY(m_window->acceptDrops());
    auto* list = m_window->findChild<QListView*>();
    QVERIFY(!list->acceptDrops() && !list->viewport()->acceptDrops());
  }

  void droppingADocumentTellsItsPath() {
    QSignalSpy dropped(m_window.get(), &MenuWindow::documentDropped);
    m_dragged.setUrls(files({text("/home/me/my 100%.tockwise")}));
    QVERIFY(enter());
    QVERIFY(frame()->isVisible());
    QCOMPARE(frame()->geometry(), m_window->rect());
    QVERIFY(drop());
    QVERIFY(!frame()->isVisible());
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(dropped.front().front().toString(), text("/home/me/my 100%.tockwise"));
  }

  void severalDocumentsAreToldInTheirOrderAndOtherFilesLeftOut() {
    QSignalSpy dropped(m_window.get(), &MenuWindow::documentDropped);
    m_dragged.setUrls(files({text("/b.tockwise"), text("/c.txt"), text("/a.TOCKWISE")}));
    QVERIFY(enter());
    QVERIFY(drop());
    QCOMPARE(dropped.size(), 2);
    QCOMPARE(dropped[0][0].toString(), text("/b.tockwise"));
    QCOMPARE(dropped[1][0].toString(), text("/a.TOCKWISE"));
  }

  void whatIsNoDocumentOfThisMachineIsNotTaken_data() {
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::newRow("text") << files({text("/home/me/a.txt")});
    QTest::newRow("elsewhere") << QList<QUrl>{QUrl(text("https://example.org/a.tockwise"))};
    QTest::newRow("another machine") << QList<QUrl>{QUrl(text("file://server/a.tockwise"))};
    QTest::newRow("no files") << QList<QUrl>{};
  }
  void whatIsNoDocumentOfThisMachineIsNotTaken() {
    QFETCH(QList<QUrl>, urls);
    QSignalSpy dropped(m_window.get(), &MenuWindow::documentDropped);
    if (urls.isEmpty())
      m_dragged.setText(text("/home/me/a.tockwise"));
    else
      m_dragged.setUrls(urls);
    QVERIFY(!enter());
    QVERIFY(!frame()->isVisible());
    QVERIFY(!drop());
    QCOMPARE(dropped.size(), 0);
  }

  void theFrameGoesWithThePointerAndGrowsWithTheWindow() {
    m_dragged.setUrls(files({text("/a.tockwise")}));
    QVERIFY(enter());
    m_window->resize(m_window->size() + QSize(40, 20));
    QTRY_COMPARE(frame()->geometry(), m_window->rect());
    leave();
    QVERIFY(!frame()->isVisible());
  }
};

QTEST_MAIN(MenuWindowDropTest)
#include "menu_window_drop_test.moc"
