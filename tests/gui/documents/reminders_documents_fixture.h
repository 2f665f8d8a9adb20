// Saving and opening with a store of its own, panels in which the test chooses, and no windows.
#pragma once

#include "documents/reminders_documents.h"
#include "documents/task_review_window.h"
#include "store/documents/document_file.h"
#include "support/fakes.h"
#include "support/log_lines.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QApplication>
#include <QFile>
#include <QTest>

#include <memory>

namespace tockwise {

/// Panels in which the test chooses.
class FakePanels final : public DocumentPanels {
 public:
  QStringList proposed; // what the save panel proposed, one for each time it was opened
  int opened = 0;
  Chosen save;
  Chosen open;

  void chooseWhereToSave(const QString& name, const Chosen& chosen) override {
    proposed += name;
    save = chosen;
  }
  void chooseDocument(const Chosen& chosen) override {
    ++opened;
    open = chosen;
  }
};

class RemindersDocumentsFixture : public QObject {
  Q_OBJECT
 protected:
  enum Answer { Ok = 0, Cancel = 1 };

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock;
  FakePrompter m_prompter;
  std::unique_ptr<ReminderStore> m_store;
  FakePanels* m_panels = nullptr; // the documents'
  std::unique_ptr<RemindersDocuments> m_documents;
  std::unique_ptr<LogLines> m_log;
  QStringList m_alerts; // what was done with the alert windows

  static QString text(const char* utf8) { return QString::fromUtf8(utf8); }
  static Reminder reminder(const char* words, double due, const Task& task = {}) {
    Reminder made;
    made.reminderDescriptions = text(words);
    made.reminderQueue = Date{due};
    made.reminderTasks = task;
    made.reminderIntervals = {0, 1, 0, 0};
    made.reminderSendEmail = true;
    return made;
  }
  void add(const Reminder& made) {
    m_store->appendReminder(made, ReminderStore::RecentEntry::Omit);
  }
  QStringList texts() const {
    const auto& values = m_store->queue()->reminderDescriptions.values();
    return QStringList(values.begin(), values.end());
  }
  QString path(const char* name) const { return m_environment->path(text(name)); }
  /// A document with these reminders; the queue is empty afterwards.
  QString document(const char* name, const std::vector<Reminder>& reminders) {
    for (const Reminder& each : reminders)
      add(each);
    if (!writeDocument(path(name), archivedDataDictionary(m_store->queue())))
      qFatal("no document");
    m_store->clearQueue();
    return path(name);
  }
  QString file(const char* name, const QByteArray& bytes) {
    QFile made(path(name));
    if (!made.open(QIODevice::WriteOnly) || made.write(bytes) != bytes.size())
      qFatal("no file");
    return made.fileName();
  }
  /// The review that is open, if any.
  static TaskReviewWindow* reviewWindow() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
      auto* review = qobject_cast<TaskReviewWindow*>(window);
      if (review && review->isVisible())
        return review;
    }
    return nullptr;
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_prompter = {};
    m_alerts.clear();
    m_clock.set(Date{700000000});
    m_store = openUserStore(m_clock);
    auto panels = std::make_unique<FakePanels>();
    m_panels = panels.get();
    m_prompter.meanwhile = [this] { m_alerts += text("ask"); };
    m_documents = std::make_unique<RemindersDocuments>(
        RemindersDocuments::Surroundings{*m_store, m_prompter, [this] { m_alerts += text("hide"); },
                                         [this] { m_alerts += text("show"); }, std::move(panels)});
    m_log = std::make_unique<LogLines>();
  }
  void cleanup() {
    m_log.reset();
    m_documents.reset();
    m_store.reset();
    m_environment.reset();
  }
};

} // namespace tockwise
