// The window of the scripts that run.
#include "editor/running_scripts_window.h"
#include "support/fakes.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include <memory>

using namespace tockwise;

namespace {

using namespace std::chrono_literals;

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

} // namespace

class RunningScriptsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<FakeScriptHost> m_host;
  FakeClock m_clock{Date{790000000}};
  std::unique_ptr<RunningScriptsWindow> m_window;

  void makeWindow(std::chrono::milliseconds showAfter) {
    m_window = std::make_unique<RunningScriptsWindow>(*m_host, m_clock, showAfter);
  }
  void showWith(std::initializer_list<const char*> paths) {
    makeWindow(10ms);
    m_host->now = m_clock.now();
    for (const char* path : paths)
      m_host->run(text(path));
    QTRY_VERIFY(m_window->isVisible());
  }
  template <typename T> QList<T*> all(const char* name) {
    QList<T*> shown;
    for (T* each : m_window->findChildren<T*>(text(name))) {
      if (each->isVisible())
        shown += each;
    }
    return shown;
  }
  QStringList texts(const char* name) {
    QStringList lines;
    for (const QLabel* label : all<QLabel>(name))
      lines += label->text();
    return lines;
  }

 private Q_SLOTS:
  void init() { m_host = std::make_unique<FakeScriptHost>(); }
  void cleanup() {
    m_window.reset();
    m_host.reset();
  }

  void itShowsWhatRunsForSomeTimeAndForHowLongStill() {
    showWith({"/home/me/water the plants.sh", "/home/me/b.py"});
    QCOMPARE(texts("scriptName"), (QStringList{text("water the plants.sh"), text("b.py")}));
    QCOMPARE(texts("scriptTimes")[0], text("Running for 0:00, ended in 5:00 at the latest"));
    m_clock.advance(72.5);
    QTRY_COMPARE(texts("scriptTimes")[0], // by itself, a second later
                 text("Running for 1:12, ended in 3:47 at the latest"));
  }

  void aScriptThatEndsSoonIsNeverShown() {
    makeWindow(50ms);
    m_host->run(text("/a"));
    m_host->end(1);
    bool passed = false;
    QTimer::singleShot(80ms, this, [&] { passed = true; });
    QTRY_VERIFY(passed);
    QVERIFY(!m_window->isVisible());
  }

  void itDoesNotTakeTheKeyboard() { // as far as it can be seen without a window manager
    showWith({"/a"});
    QVERIFY(m_window->testAttribute(Qt::WA_ShowWithoutActivating));
    QCOMPARE(m_window->windowModality(), Qt::NonModal);
  }

  void aScriptIsStoppedWithItsButton() {
    showWith({"/a", "/b"});
    const auto buttons = all<QPushButton>("stopButton");
    QCOMPARE(buttons.size(), 2);
    QCOMPARE(buttons[1]->accessibleName(), text("Stop b"));
    QTest::mouseClick(buttons[1], Qt::LeftButton);
    QCOMPARE(m_host->stopped, std::vector<quint64>{2});
    QVERIFY(!buttons[1]->isEnabled());
    QCOMPARE(texts("scriptTimes")[1], text("Running for 0:00, being stopped"));
    m_host->end(2, ScriptEnd::How::Stopped);
    QCOMPARE(texts("scriptName"), QStringList{text("a")});
    QVERIFY(m_window->isVisible());
    m_host->end(1);
    QVERIFY(!m_window->isVisible());
  }

  void itIsUsedWithTheKeyboardAlone() {
    showWith({"/a", "/b"});
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    const auto buttons = all<QPushButton>("stopButton");
    buttons[0]->setFocus();
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Tab);
    QCOMPARE(m_window->focusWidget(), buttons[1]);
    QTest::keyClick(buttons[1], Qt::Key_Space);
    QCOMPARE(m_host->stopped, std::vector<quint64>{2});
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_host->running().size(), size_t(2)); // closing stops nothing
  }

  void closedItComesBackForTheNextScript() {
    showWith({"/a"});
    m_window->close();
    QVERIFY(!m_window->isVisible());
    m_host->run(text("/b"));
    QTRY_VERIFY(m_window->isVisible());
    QCOMPARE(texts("scriptName"), (QStringList{text("a"), text("b")}));
  }

  void everyButtonCanBeReached_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("short") << text("/a");
    QTest::newRow("long") << text("/a script that says what it does and why, at some length.sh");
  }
  void everyButtonCanBeReached() {
    QFETCH(QString, name);
    showWith({qPrintable(name), "/b"});
    const auto inside = [this](const QWidget* widget) {
      const QRect place(widget->mapTo(m_window.get(), QPoint()), widget->size());
      return m_window->rect().contains(place) && widget->visibleRegion() == widget->rect();
    };
    const auto buttons = all<QPushButton>("stopButton");
    QCOMPARE(buttons.size(), 2);
    for (const QPushButton* button : buttons)
      QTRY_VERIFY(inside(button));
    for (const QLabel* label : all<QLabel>("scriptTimes"))
      QVERIFY(inside(label) && label->width() >= label->sizeHint().width());
  }

  void manyScriptsAreScrolledTo() {
    makeWindow(10ms);
    for (int i = 0; i < 40; ++i)
      m_host->run(text("/script"));
    QTRY_VERIFY(m_window->isVisible());
    QVERIFY(m_window->height() < 500);
    const auto buttons = all<QPushButton>("stopButton");
    QCOMPARE(buttons.size(), 40);
    buttons[38]->setFocus();
    QTest::keyClick(buttons[38], Qt::Key_Tab);
    QCOMPARE(m_window->focusWidget(), buttons.last());
    QTRY_VERIFY(!buttons.last()->visibleRegion().isEmpty());
  }

  void aScriptThatStartsMeanwhileJoinsTheList() {
    showWith({"/a"});
    const int height = m_window->height();
    m_host->run(text("/b"));
    QCOMPARE(texts("scriptName").size(), 2);
    QVERIFY(m_window->height() > height);
  }

  void namesAreShownAsTheyAreWritten() {
    showWith({"/tmp/<b>a\nb</b>"});
    QCOMPARE(texts("scriptName"), QStringList{text("b>")}); // what follows the last slash
    m_host->run(text("/tmp/<b>a\nb"));
    QCOMPARE(texts("scriptName").size(), 2);
    QCOMPARE(texts("scriptName")[1], text("<b>a\u240ab"));
    for (const QLabel* label : all<QLabel>("scriptName"))
      QCOMPARE(label->textFormat(), Qt::PlainText);
  }

  void aClockThatIsSetBackShowsNoNegativeTimes() {
    showWith({"/a"});
    m_clock.advance(-1000);
    QTRY_VERIFY(texts("scriptTimes")[0].startsWith(u"Running for 0:00, ended in 21:40"));
    m_clock.advance(5000);
    QTRY_VERIFY(texts("scriptTimes")[0].endsWith(u"ended in 0:00 at the latest"));
  }
};

QTEST_MAIN(RunningScriptsTest)
#include "running_scripts_test.moc"
