// Printing with a store of its own, and what the desktop has a part in as the test wants it.
#pragma once

#include "print/print_text_view.h"
#include "print/printing.h"
#include "support/fakes.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace tockwise {

inline constexpr Date kNow{790000000};

inline QDialog* previewWindow() {
  return qobject_cast<QDialog*>(QApplication::activeModalWidget());
}

template <typename Widget> Widget* child(const char* name) {
  QDialog* window = previewWindow();
  return window ? window->findChild<Widget*>(QString::fromLatin1(name)) : nullptr;
}

inline PrintTextView* textView() {
  return child<PrintTextView>("textView");
}

inline bool isReady() {
  const auto* button = child<QPushButton>("printButton");
  return button && button->isVisible() && button->isEnabled();
}

class PrintWindowFixture : public QObject {
  Q_OBJECT
 protected:
  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{kNow};
  FakePrompter m_prompter;
  FakeSoundPlayer m_player;
  std::unique_ptr<ReminderStore> m_store;
  std::unique_ptr<AlertSounds> m_sounds;
  std::unique_ptr<AlertWindows> m_alerts;
  std::unique_ptr<Printing> m_printing;
  QList<bool> m_holds;
  // What the desktop's part in printing was asked, and what it answers.
  bool m_hasPrinters = true;
  int m_dialogs = 0;
  std::function<bool(QPrinter&)> m_answer;
  QString m_PDFFile;

  void add(const QString& text) {
    Reminder reminder;
    reminder.reminderQueue = kNow;
    reminder.reminderUUID = UUIDString();
    reminder.reminderDescriptions = text;
    m_store->queue().append(reminder);
  }
  void openAlert(const QString& text) {
    AlertRequest request;
    request.reminder = text;
    request.date = kNow;
    request.reminderType = QStringLiteral("regular");
    m_alerts->open(request);
  }
  /// Runs the preview of the queue; does work when it is open and its pages are there.
  void preview(const std::function<void()>& work) {
    QTimer poll;
    bool isDone = false;
    connect(&poll, &QTimer::timeout, this, [&] {
      if (isDone || !isReady())
        return;
      isDone = true;
      work();
    });
    poll.start(5);
    QTimer::singleShot(20000, &poll, [] { // a test that hangs says nothing
      if (QDialog* window = previewWindow())
        window->reject();
    });
    m_printing->print();
    QVERIFY(isDone);
  }
  static void press(const char* button) {
    QTest::mouseClick(child<QPushButton>(button), Qt::LeftButton);
  }

 private Q_SLOTS:
  void init() {
    qputenv("CUPS_SERVER", "/nonexistent/cups.sock"); // the machine's own printers are not asked
    m_environment = std::make_unique<TestEnvironment>();
    m_prompter = FakePrompter();
    m_store = openUserStore(m_clock);
    m_sounds = std::make_unique<AlertSounds>(m_store->preferences(), m_player, QStringList(),
                                             AlertSounds::systemRandom());
    m_alerts = std::make_unique<AlertWindows>(m_store->queue(), *m_sounds, m_prompter);
    m_holds.clear();
    m_hasPrinters = true;
    m_dialogs = 0;
    m_PDFFile.clear();
    m_answer = [](QPrinter&) { return false; };
    m_printing = std::make_unique<Printing>(
        *m_store, *m_alerts, m_prompter, [this](bool hold) { m_holds += hold; },
        PrintPanels{[this] { return m_hasPrinters; },
                    [this](QPrinter& printer, int, QWidget*) {
                      ++m_dialogs;
                      return m_answer(printer);
                    },
                    [this](QWidget*) { return m_PDFFile; }});
  }
  void cleanup() {
    m_printing.reset();
    m_alerts.reset();
    m_sounds.reset();
    m_store.reset();
  }
};

} // namespace tockwise
