#include "documents/reminders_documents.h"

#include "base/harmless_text.h"
#include "base/log.h"
#include "documents/task_review_window.h"
#include "store/documents/document_file.h"
#include "store/documents/document_location.h"
#include "store/documents/document_tasks.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QScopeGuard>

namespace tockwise {
namespace {

enum OpenAnswer { OpenIt = 0, LeaveIt = 1 };
enum ReplaceAnswer { ReplaceFile = 0, KeepFile = 1 };

QString lastComponent(const QString& path) {
  return harmlessLine(QFileInfo(QDir::cleanPath(path)).fileName());
}

Question openQuestion(const QString& path) {
  Question question;
  question.title = QStringLiteral("Are you sure you want to replace the current set of reminders "
                                  "with the contents of the file \"%1\"?")
                       .arg(lastComponent(path));
  question.message = QStringLiteral("This operation can not be undone unless you save the current "
                                    "set of reminders first.");
  question.buttons = {QStringLiteral("OK"), QStringLiteral("Cancel")};
  question.defaultButton = OpenIt;
  question.escapeButton = LeaveIt;
  return question;
}

Question replaceQuestion(const QString& path) {
  Question question;
  question.title =
      QStringLiteral("\"%1\" already exists. Do you want to replace it?").arg(lastComponent(path));
  question.message = QStringLiteral("Documents of reminders end in \".%1\", so this was added to "
                                    "the name.")
                         .arg(QStringView(kDocumentSuffix));
  question.buttons = {QStringLiteral("Replace"), QStringLiteral("Cancel")};
  question.defaultButton = KeepFile;
  question.escapeButton = KeepFile;
  return question;
}

// The window that blocks all others but those that it owns, if there is one.
QWidget* modalWindow() {
  QWidget* modal = QApplication::activeModalWidget();
  for (QWidget* each = modal; each; each = each->parentWidget()) {
    if (each->windowModality() == Qt::ApplicationModal)
      return modal;
  }
  return nullptr;
}

} // namespace

RemindersDocuments::RemindersDocuments(Surroundings surroundings, QObject* parent)
    : QObject(parent), m_surroundings(std::move(surroundings)) {
  if (!m_surroundings.panels)
    m_surroundings.panels = std::make_unique<FileDialogPanels>();
}

RemindersDocuments::~RemindersDocuments() = default;

void RemindersDocuments::selItemSaveReminders() {
  m_surroundings.panels->chooseWhereToSave(QStringLiteral("Untitled"),
                                           [this](const QString& path) { saveTo(path); });
}

void RemindersDocuments::saveTo(const QString& chosen) {
  const QString path = withDocumentSuffix(chosen);
  if (path != chosen && QFileInfo::exists(path) && !mayReplaceFile(path)) {
    m_surroundings.panels->chooseWhereToSave(chosen,
                                             [this](const QString& other) { saveTo(other); });
    return;
  }
  const auto written = writeDocument(path, archivedDataDictionary(m_surroundings.store.queue()));
  if (written)
    logLine(QStringLiteral("Saved '%1'").arg(harmlessLine(path)));
  else
    logLine(QStringLiteral("Cannot save %1").arg(harmlessLine(written.error().message)));
}

bool RemindersDocuments::mayReplaceFile(const QString& path) {
  return askWithoutAlerts(replaceQuestion(path)) == ReplaceFile;
}

int RemindersDocuments::askWithoutAlerts(const Question& question) {
  m_surroundings.hideAllCurrentAlerts();
  const auto showAgain = qScopeGuard([this] { m_surroundings.showAllCurrentAlerts(); });
  return m_surroundings.prompter.ask(question);
}

void RemindersDocuments::selItemOpenReminders() {
  m_surroundings.panels->chooseDocument([this](const QString& path) { askOpenFile(path); });
}

bool RemindersDocuments::openFile(const QString& path) {
  askOpenFile(path);
  return true;
}

// One question at a time: two of them, one over the other, would each speak of a queue that the
// other is about to replace.
bool RemindersDocuments::askOpenFile(const QString& path) {
  if (m_asking) {
    if (path != *m_asking && !m_waiting.contains(path))
      m_waiting.append(path);
    if (m_review)
      m_review->bringToFront();
    return false;
  }
  const bool replaced = openNow(path);
  // Whoever asked for this one is not to wait for the answers to the others.
  QMetaObject::invokeMethod(this, &RemindersDocuments::openNext, Qt::QueuedConnection);
  return replaced;
}

void RemindersDocuments::openNext() {
  if (!m_asking && !m_waiting.isEmpty())
    askOpenFile(m_waiting.takeFirst());
}

bool RemindersDocuments::openNow(const QString& path) {
  m_asking = path;
  const auto asked = qScopeGuard([this] { m_asking.reset(); });
  auto dictionary = confirmedContents(path);
  if (!dictionary)
    return false;
  setDataWithDataDictionary(m_surroundings.store.queue(), std::move(*dictionary));
  Q_EMIT changed();
  return true;
}

std::optional<DataDictionary> RemindersDocuments::confirmedContents(const QString& path) {
  m_surroundings.hideAllCurrentAlerts();
  const auto showAgain = qScopeGuard([this] { m_surroundings.showAllCurrentAlerts(); });
  if (m_surroundings.prompter.ask(openQuestion(path)) != OpenIt)
    return std::nullopt;
  auto dictionary = read(path);
  if (!dictionary) {
    logLine(QStringLiteral("Cannot open %1").arg(harmlessLine(dictionary.error().message)));
    return std::nullopt;
  }
  if (!review(lastComponent(path), *dictionary))
    return std::nullopt;
  return std::move(dictionary).value();
}

// The message of an error begins with the path.
Result<DataDictionary> RemindersDocuments::read(const QString& path) const {
  const auto archive = readDocument(path);
  if (!archive)
    return archive.error();
  auto dictionary = unarchivedDataDictionary(*archive, m_surroundings.store.pads());
  if (!dictionary) {
    const Error& error = dictionary.error();
    return Error{error.kind, path + QStringLiteral(": ") + error.message};
  }
  return dictionary;
}

// What a document would run comes from whoever wrote it.
bool RemindersDocuments::review(const QString& fileName, DataDictionary& dictionary) {
  std::vector<DocumentTask> tasks = tasksOf(dictionary);
  if (tasks.empty())
    return true;
  m_review = new TaskReviewWindow(fileName, std::move(tasks), modalWindow());
  const QPointer<TaskReviewWindow> window = m_review;
  const auto deleteIt = qScopeGuard([window] { delete window; });
  QEventLoop loop;
  connect(window, &QDialog::finished, &loop, &QEventLoop::quit);
  connect(window, &QObject::destroyed, &loop, &QEventLoop::quit);
  window->bringToFront();
  loop.exec();
  if (!window || window->result() != QDialog::Accepted)
    return false;
  for (const qsizetype row : window->blankedRows())
    blankTask(dictionary, row);
  return true;
}

} // namespace tockwise
