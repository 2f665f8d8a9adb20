// The commands on documents, carried out on a store.
#include "app/command_service.h"
#include "store/documents/document_file.h"
#include "support/document_builder.h"
#include "support/file_size_limit.h"
#include "support/log_lines.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QFile>
#include <QTest>

using namespace tockwise;

namespace {

using Builder = DocumentBuilder;
using Tasks = DocumentCommands::Tasks;

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

} // namespace

class DocumentCommandsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Builder::kNow};
  std::unique_ptr<ReminderStore> m_store;
  std::unique_ptr<CommandService> m_commands;
  QStringList m_told;

  DocumentCommands& commands() { return m_commands->documents(); }
  QString path(const char* name) const { return m_environment->path(text(name)); }
  // A document with reminders of those numbers.
  QString document(int reminders, int first) {
    const QString file = path("document.tockwise");
    if (!writeDocument(file, archivedDataDictionary(Builder::queue(reminders, first))))
      qFatal("no document");
    return file;
  }
  QString damagedDocument() {
    Builder builder;
    builder.addReminder(text("A"));
    builder.array("reminderTasks").clear();
    const QString file = path("damaged.tockwise");
    if (!writeDocument(file, builder.finish()))
      qFatal("no document");
    return file;
  }
  void fill(int reminders) {
    m_store->queue().setColumns(Builder::queue(reminders).columns());
    m_store->saveDefaults();
  }
  std::vector<QString> identifiers() const { return m_store->queue()->reminderUUID.values(); }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_store = openUserStore(m_clock);
    m_told.clear();
    m_commands = std::make_unique<CommandService>(
        *m_store, [this] { m_told += text("changed"); }, [this] { m_told += text("data"); });
  }
  void cleanup() {
    m_commands.reset();
    m_store.reset();
    m_environment.reset();
  }

  void savingWritesTheQueueAndChangesNothing() {
    fill(3);
    const quint64 revision = m_store->queue().revision();
    LogLines log;
    QVERIFY(commands().save(path("a.tockwise")).ok());
    QCOMPARE(log.take(), QStringList(QStringLiteral("Saved '%1'").arg(path("a.tockwise"))));
    QCOMPARE(*readDocument(path("a.tockwise")), archivedDataDictionary(m_store->queue()));
    QCOMPARE(m_store->queue().revision(), revision);
    QVERIFY(m_told.isEmpty());
  }

  void savingWhereNothingCanBeWrittenSaysWhy() {
    LogLines log;
    const auto saved = commands().save(path("nowhere/a.tockwise"));
    QVERIFY(!saved.ok());
    QCOMPARE(saved.error().message, path("nowhere/a.tockwise: No such file or directory"));
    QCOMPARE(log.take(), QStringList());
  }

  void aPathMustBeAbsolute() {
    for (const Error& error :
         {commands().save(text("a")).error(), commands().open(text("a"), Tasks::Keep).error(),
          commands().merge(text("a"), Tasks::Keep).error(), commands().check(QString()).error()})
      QCOMPARE(error.kind, Error::Kind::Usage);
    QVERIFY(!QFile::exists(text("a")));
  }

  void openingReplacesTheQueueSavesItAndTells() {
    fill(1);
    const auto report = commands().open(document(2, 5), Tasks::Keep);
    QVERIFY(report.ok());
    QCOMPARE(identifiers(), (std::vector<QString>{Builder::reminder(5).reminderUUID,
                                                  Builder::reminder(6).reminderUUID}));
    QCOMPARE(m_told, (QStringList{text("data"), text("changed")}));
    QVERIFY(m_store->preferences().isSaved());
    m_commands.reset();
    m_store.reset();
    m_store = openUserStore(m_clock);
    QVERIFY(*m_store->queue().reminder(0) == Builder::reminder(5));
  }

  void openingTheSameIsAChangeAllTheSame() {
    fill(2);
    QVERIFY(commands().open(document(2, 1), Tasks::Keep).ok());
    QCOMPARE(m_told, (QStringList{text("data"), text("changed")}));
  }

  void openingTellsWhatWouldRun() {
    const auto report = commands().open(document(3, 1), Tasks::Keep);
    QCOMPARE(report->tasks, (QStringList{text("\"Text № 1\" runs the script /bin/1"),
                                         text("\"Text № 3\" runs the script /bin/3")}));
    QCOMPARE(report->taskCount, 2);
  }

  void tasksThatAreBlankedAreNotTold() {
    const auto report = commands().open(document(3, 1), Tasks::Blank);
    QVERIFY(report->tasks.isEmpty());
    QCOMPARE(report->taskCount, 0);
    for (const Task& task : m_store->queue()->reminderTasks.values())
      QVERIFY(task.blank);
  }

  void noMoreThanTwentyTasksAreTold() {
    const auto report = commands().open(document(45, 1), Tasks::Keep);
    QCOMPARE(report->tasks.size(), 20);
    QCOMPARE(report->taskCount, 23);
    QCOMPARE(report->toMap().value(text("taskCount")).toInt(), 23);
  }

  void whatCannotBeOpenedChangesNothing_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << text("missing");
    QTest::newRow("a folder") << text(".");
    QTest::newRow("words") << text("words");
    QTest::newRow("damaged") << text("damaged.tockwise");
  }
  void whatCannotBeOpenedChangesNothing() {
    QFETCH(QString, name);
    fill(2);
    damagedDocument();
    QVERIFY(writeDocument(path("words"), "Dear diary").ok());
    const QString file = m_environment->path(name);
    const quint64 revision = m_store->queue().revision();
    const auto opened = commands().open(file, Tasks::Keep);
    const auto merged = commands().merge(file, Tasks::Keep);
    const auto checked = commands().check(file);
    QVERIFY(!opened.ok() && !merged.ok() && !checked.ok());
    for (const Error& error : {opened.error(), merged.error(), checked.error()}) {
      QVERIFY(error.kind != Error::Kind::Usage && error.kind != Error::Kind::Busy);
      QVERIFY2(error.message.contains(file), qPrintable(error.message));
      QVERIFY(!error.message.contains(u'\n'));
    }
    QCOMPARE(m_store->queue().revision(), revision);
    QVERIFY(m_told.isEmpty());
  }

  void checkingASoundDocumentChangesNothing() {
    fill(1);
    const quint64 revision = m_store->queue().revision();
    QVERIFY(commands().check(document(3, 1)).ok());
    QCOMPARE(m_store->queue().revision(), revision);
  }

  void mergingAddsWhatIsNewAndTells() {
    fill(2);
    const auto report = commands().merge(document(3, 2), Tasks::Keep);
    QVERIFY(report.ok());
    QCOMPARE(report->counts, (MergeCounts{2, 1}));
    QCOMPARE(identifiers().size(), 4U);
    QCOMPARE(m_told, (QStringList{text("data"), text("changed")}));
    QVERIFY(m_store->preferences().isSaved());
  }

  void mergingNothingTellsNothing() {
    fill(3);
    const auto report = commands().merge(document(3, 1), Tasks::Keep);
    QCOMPARE(report->counts, (MergeCounts{0, 3}));
    QVERIFY(m_told.isEmpty());
    QVERIFY(report->tasks.isEmpty());
  }

  void mergingTellsTheTasksOfWhatIsNewOnly() {
    fill(1);
    const auto report = commands().merge(document(3, 1), Tasks::Keep);
    QCOMPARE(report->tasks, QStringList(text("\"Text № 3\" runs the script /bin/3")));
    QVERIFY(!m_store->queue()->reminderTasks.values().at(0).blank);
  }

  void mergingWithBlankedTasksLeavesOurOwn() {
    fill(1);
    QVERIFY(commands().merge(document(3, 1), Tasks::Blank).ok());
    QVERIFY(!m_store->queue()->reminderTasks.values().at(0).blank);
    QVERIFY(m_store->queue()->reminderTasks.values().at(2).blank);
  }

  void aChangeThatCannotBeSavedIsAnError() {
    const QString file = document(2, 1);
    const auto opened = [&] {
      const FileSizeLimit limit(100);
      return commands().open(file, Tasks::Keep);
    }();
    QVERIFY(!opened.ok());
    QVERIFY(opened.error().message.startsWith(text("the change could not be saved")));
    QCOMPARE(identifiers().size(), 2U);
  }

  void onlyTheOptionForTasksIsKnown() {
    QVERIFY(*tasksOption({}) == Tasks::Keep);
    QVERIFY(*tasksOption({{text("tasks"), true}}) == Tasks::Keep);
    QVERIFY(*tasksOption({{text("tasks"), false}}) == Tasks::Blank);
    for (const QVariantMap& options :
         {QVariantMap{{text("tasks"), text("no")}}, QVariantMap{{text("Tasks"), false}}})
      QCOMPARE(tasksOption(options).error().kind, Error::Kind::Usage);
  }
};

QTEST_GUILESS_MAIN(DocumentCommandsTest)
#include "document_commands_test.moc"
