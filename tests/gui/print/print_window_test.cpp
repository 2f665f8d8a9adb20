// The preview: what its buttons do, what waits while it is open, and the lists of previews.
#include "print_window_fixture.h"

#include <QLabel>
#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>

using namespace tockwise;

class PrintWindowTest : public PrintWindowFixture {
  Q_OBJECT
 private Q_SLOTS:
  void thePreviewShowsTheQueueOnPages() {
    add(QStringLiteral("Tea"));
    preview([&] {
      QCOMPARE(previewWindow()->windowModality(), Qt::ApplicationModal);
      QCOMPARE(child<QPushButton>("printButton")->text(), QStringLiteral("Print"));
      QCOMPARE(child<QPushButton>("cancelButton")->text(), QStringLiteral("Cancel"));
      QCOMPARE(child<QLabel>("pageLabel")->text(), QStringLiteral("Page 1 of 1"));
      QCOMPARE(textView()->pageCount(), 1);
      QVERIFY(!child<QProgressBar>("progressBar")->isVisible());
      press("cancelButton");
    });
  }

  void cancelClosesAndIsRemembered_data() {
    QTest::addColumn<std::function<void()>>("cancel");
    const auto row = [](const char* name, const std::function<void()>& cancel) {
      QTest::newRow(name) << cancel;
    };
    row("button", [] { press("cancelButton"); });
    row("Escape", [] { QTest::keyClick(textView(), Qt::Key_Escape); });
    row("window closed", [] { previewWindow()->close(); });
  }
  void cancelClosesAndIsRemembered() {
    QFETCH(const std::function<void()>, cancel);
    preview(cancel);
    QCOMPARE(m_dialogs, 0);
    QVERIFY(!m_printing->isPreviewOpen());
    QVERIFY(!previewWindow());
    QVERIFY(m_printing->printWindow()->didCancel());
  }

  void printRunsTheDialogAndCloses_data() {
    QTest::addColumn<bool>("byKey");
    QTest::newRow("button") << false;
    QTest::newRow("Return in the text") << true;
  }
  void printRunsTheDialogAndCloses() {
    QFETCH(const bool, byKey);
    preview([&] {
      if (byKey)
        QTest::keyClick(textView(), Qt::Key_Return);
      else
        press("printButton");
    });
    QCOMPARE(m_dialogs, 1);
    QVERIFY(!m_printing->printWindow()->didCancel());
    QVERIFY(m_prompter.asked.empty());
  }

  void aPreviewJoinsTheListWhenItHasClosed() {
    const auto press1 = [&](const char* button, size_t before) {
      const PrintWindowController* last = m_printing->printWindow();
      preview([&] {
        QCOMPARE(m_printing->printWindows().size(), before);
        QCOMPARE(m_printing->printWindow(), last);
        press(button);
        // The button takes it off a list that it is not on.
        QCOMPARE(m_printing->printWindows().size(), before);
      });
      QCOMPARE(m_printing->printWindows().size(), before + 1);
      QCOMPARE(m_printing->printWindows().back().get(), m_printing->printWindow());
    };
    press1("cancelButton", 0);
    press1("printButton", 1);
    press1("cancelButton", 2);
    QVERIFY(m_printing->printWindows()[0]->didCancel());
    QVERIFY(!m_printing->printWindows()[1]->didCancel());
  }

  void theTickIsHeldWhileThePreviewIsOpen() {
    preview([&] {
      QCOMPARE(m_holds, QList<bool>{true});
      press("cancelButton");
      QCOMPARE(m_holds, QList<bool>{true});
    });
    QCOMPARE(m_holds, (QList<bool>{true, false}));
  }

  void aSecondRequestBringsTheFirstToTheFront() {
    preview([&] {
      QDialog* window = previewWindow();
      m_printing->printAllCurrentAlerts();
      m_printing->print();
      QCOMPARE(previewWindow(), window);
      QCOMPARE(m_holds, QList<bool>{true});
      press("cancelButton");
    });
    QCOMPARE(m_printing->printWindows().size(), size_t(1));
  }

  void noOtherWindowReacts() {
    QPushButton other;
    other.show();
    QSignalSpy clicked(&other, &QPushButton::clicked);
    preview([&] {
      QVERIFY(QApplication::activeModalWidget());
      QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
      QCOMPARE(clicked.size(), 0);
      press("cancelButton");
    });
    QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(clicked.size(), 1);
  }

  void openAlertsStayAndDoNotCoverThePreview() {
    openAlert(QStringLiteral("Tea"));
    preview([&] {
      QVERIFY(m_alerts->window(0)->isVisible());
      QVERIFY(previewWindow()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
      press("cancelButton");
    });
    m_alerts->hideAllCurrentAlerts();
    preview([&] {
      QVERIFY(!previewWindow()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
      press("cancelButton");
    });
    QVERIFY(!m_alerts->window(0)->isVisible());
  }

  void anOpenQuestionDoesNotCoverThePreview() {
    QDialog question; // as questions and error panels are: above the other windows
    question.setWindowFlag(Qt::WindowStaysOnTopHint);
    question.show();
    preview([&] {
      QVERIFY(question.isVisible());
      QVERIFY(previewWindow()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
      press("cancelButton");
    });
  }

  void theWholeEndsInOrderWhenTheProgramIsQuit() {
    QTimer::singleShot(100, qApp, [] { QCoreApplication::exit(); });
    QTimer::singleShot(0, this, [this] { m_printing->print(); });
    QCoreApplication::exec();
    QVERIFY(!m_printing->isPreviewOpen());
    QCOMPARE(m_holds, (QList<bool>{true, false}));
    QCOMPARE(m_printing->printWindows().size(), size_t(1));
    QVERIFY(!m_printing->printWindow()->didCancel());
  }

  void theKeyboardTurnsThePages() {
    for (int i = 0; i < 60; ++i)
      add(QStringLiteral("reminder %1").arg(i));
    preview([&] {
      const int count = textView()->pageCount();
      QVERIFY(count > 3);
      const QString last = QStringLiteral("Page %1 of %1").arg(count);
      QTest::keyClick(textView(), Qt::Key_End);
      QCOMPARE(child<QLabel>("pageLabel")->text(), last);
      QTest::keyClick(textView(), Qt::Key_Home);
      QCOMPARE(textView()->currentPage(), 0);
      QTest::keyClick(textView(), Qt::Key_PageDown);
      QTest::keyClick(textView(), Qt::Key_Space);
      QVERIFY(textView()->verticalScrollBar()->value() > 0);
      press("cancelButton");
    });
  }

  void manyRemindersAreMadeWhileTheWindowIsOpen() {
    for (int i = 0; i < 30000; ++i) // more than any machine lays out before it would be shown
      add(QStringLiteral("reminder %1").arg(i));
    bool sawProgress = false;
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
      const auto* bar = child<QProgressBar>("progressBar");
      if (bar && child<QPushButton>("printButton")->isEnabled())
        return press("cancelButton"); // it was too fast: the test fails, and does not hang
      if (!bar || !bar->isVisible())
        return;
      sawProgress = true;
      QVERIFY(!child<QPushButton>("printButton")->isEnabled());
      press("cancelButton");
    });
    watch.start(5);
    m_printing->print();
    QVERIFY(sawProgress);
    QVERIFY(m_printing->printWindow()->didCancel());
  }
};

QTEST_MAIN(PrintWindowTest)
#include "print_window_test.moc"
