#include "editor/reminder_editing.h"

#include "base/log.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>
#include <exception>

namespace tockwise {
namespace {

using RecentEntry = ReminderStore::RecentEntry;

enum KeepAnswer { Keep = 0, LetGo = 1 };

/// Escape is the answer that loses nothing.
Question keepQuestion(const QString& title, const QString& message) {
  return {title, message, {QStringLiteral("Yes"), QStringLiteral("No")}, Keep, Keep};
}

Question goneQuestion() {
  return keepQuestion(
      QStringLiteral("This reminder was deleted."),
      QStringLiteral("It was deleted while you were editing it. Do you want to keep what you "
                     "wrote as a new reminder?"));
}

Question draftsQuestion(size_t count) {
  return keepQuestion(
      count == 1 ? QStringLiteral("An editor was open when Tockwise ended.")
                 : QStringLiteral("%1 editors were open when Tockwise ended.").arg(count),
      QStringLiteral("Do you want to go on with what you wrote? Otherwise it is removed."));
}

Reminder reminderOf(ReminderDraft draft) {
  Reminder reminder;
  reminder.reminderQueue = draft.reminderDate;
  reminder.reminderDescriptions = std::move(draft.reminderText);
  reminder.reminderRTFs = std::move(draft.RTFData);
  reminder.reminderIntervals = draft.reminderInterval;
  reminder.reminderTasks = std::move(draft.reminderTask);
  reminder.reminderExtras = draft.reminderExtra;
  reminder.reminderOffsets = draft.reminderOffset;
  reminder.reminderSendSMS = draft.smsState;
  reminder.reminderSendEmail = draft.emailState;
  return reminder;
}

enum class Origin { Fresh, Draft };

/// One open editor. Whose content comes from a draft, its draft stays whatever is changed.
struct OpenEditor {
  ReminderEditor* editor = nullptr; // a child of the ReminderEditing
  QString identifier;
  QString reminderUUID;
  Origin origin = Origin::Fresh;
  bool isDraftKept = false;
  bool isDraftStale = false; // changed since it was kept
  bool isTroubleTold = false;

  bool isUnsaved() const { return origin == Origin::Draft || editor->isChanged(); }
};

} // namespace

class ReminderEditing::Private {
 public:
  Private(ReminderEditing& owner, ReminderStore& store, DraftStore drafts, Prompter& prompter,
          MakeEditor make, std::chrono::milliseconds draftDelay);

  void open(ReminderDraft draft, Origin origin);
  void noteChange(ReminderEditor* editor);
  void keepDrafts();
  void keepDraft(OpenEditor& open);
  void finish(ReminderEditor* editor);
  void take(const ReminderDraft& result);
  void takeEdited(const ReminderDraft& result);
  void keepResult(const ReminderDraft& result);
  void remove(const QString& reminderUUID);
  void dropDraft(const QString& identifier);
  void dropSavedDrafts();
  std::vector<OpenEditor>::iterator find(const ReminderEditor* editor);

  ReminderEditing& q;
  ReminderStore& store;
  DraftStore drafts;
  Prompter& prompter;
  MakeEditor make;
  std::chrono::milliseconds draftDelay;
  std::vector<OpenEditor> editors; // oldest first
  std::vector<QString> done;       // identifiers of drafts to be dropped once the queue is saved
  QTimer keepSoon;
  QTimer dropSoon;
  bool isOffering = false;
  bool isFailureLogged = false;
};

ReminderEditing::Private::Private(ReminderEditing& owner, ReminderStore& store, DraftStore drafts,
                                  Prompter& prompter, MakeEditor make,
                                  std::chrono::milliseconds draftDelay)
    : q(owner),
      store(store),
      drafts(std::move(drafts)),
      prompter(prompter),
      make(std::move(make)),
      draftDelay(draftDelay) {
  keepSoon.setSingleShot(true);
  keepSoon.setInterval(draftDelay);
  dropSoon.setInterval(draftDelay);
  QObject::connect(&keepSoon, &QTimer::timeout, &q, [this] { keepDrafts(); });
  QObject::connect(&dropSoon, &QTimer::timeout, &q, [this] { dropSavedDrafts(); });
  QCoreApplication* application = QCoreApplication::instance();
  QObject::connect(application, &QCoreApplication::aboutToQuit, &q, [this] { keepDrafts(); });
  if (auto* desktop = qobject_cast<QGuiApplication*>(application)) {
    QObject::connect(
        desktop, &QGuiApplication::commitDataRequest, &q, [this] { keepDrafts(); },
        Qt::DirectConnection);
  }
}

std::vector<OpenEditor>::iterator ReminderEditing::Private::find(const ReminderEditor* editor) {
  return std::find_if(editors.begin(), editors.end(),
                      [&](const OpenEditor& open) { return open.editor == editor; });
}

void ReminderEditing::Private::open(ReminderDraft draft, Origin origin) {
  OpenEditor open;
  open.identifier = draft.identifier;
  open.reminderUUID = draft.reminderUUID;
  open.origin = origin;
  open.isDraftKept = origin == Origin::Draft;
  std::unique_ptr<ReminderEditor> made;
  try {
    made = make(std::move(draft));
  } catch (const std::exception& exception) {
    logLine(QString::fromLocal8Bit(exception.what()));
  }
  if (!made) {
    logLine(QStringLiteral("Could not open the window!"));
    return;
  }
  ReminderEditor* editor = made.release();
  editor->setParent(&q);
  open.editor = editor;
  editors.push_back(std::move(open));
  QObject::connect(editor, &ReminderEditor::changed, &q, [this, editor] { noteChange(editor); });
  QObject::connect(editor, &ReminderEditor::finished, &q, [this, editor] { finish(editor); });
  editor->showWindow();
}

void ReminderEditing::Private::noteChange(ReminderEditor* editor) {
  const auto open = find(editor);
  if (open == editors.end())
    return;
  open->isDraftStale = true;
  if (!keepSoon.isActive())
    keepSoon.start();
}

void ReminderEditing::Private::keepDrafts() {
  constexpr int kLeisure = 20;  // pictures may be large: no more than this part of the time
  constexpr int kPatience = 30; // after a failure
  QElapsedTimer timer;
  timer.start();
  keepSoon.stop();
  bool failed = false;
  for (OpenEditor& open : editors) {
    if (open.isDraftStale)
      keepDraft(open);
    failed = failed || open.isDraftStale;
  }
  keepSoon.setInterval(std::max(draftDelay, std::chrono::milliseconds(timer.elapsed() * kLeisure)));
  if (failed)
    keepSoon.start(draftDelay * kPatience);
}

void ReminderEditing::Private::keepDraft(OpenEditor& open) {
  if (!open.isUnsaved()) {
    if (open.isDraftKept)
      drafts.remove(open.identifier);
    open.isDraftKept = false;
    open.isDraftStale = false;
    if (std::exchange(open.isTroubleTold, false))
      open.editor->tellDraftTrouble({});
    return;
  }
  const auto kept = drafts.keep(open.editor->current());
  open.isDraftStale = !kept;
  open.isDraftKept = open.isDraftKept || kept;
  if (!kept && !isFailureLogged)
    logLine(QStringLiteral("Could not keep a draft: %1").arg(kept.error().message));
  isFailureLogged = !kept;
  if (!kept || open.isTroubleTold)
    open.editor->tellDraftTrouble(kept ? QString() : kept.error().message);
  open.isTroubleTold = !kept;
}

void ReminderEditing::Private::finish(ReminderEditor* editor) {
  const auto found = find(editor);
  if (found == editors.end())
    return;
  const OpenEditor open = *found;
  editors.erase(found);
  editor->deleteLater(); // its own signal is being heard
  switch (editor->end()) {
  case ReminderEditor::End::Created: {
    const ReminderDraft result = editor->result();
    take(result);
    // What was written last is only in memory as long as the queue cannot be saved.
    if (!store.preferences().isSaved())
      keepResult(result);
    break;
  }
  case ReminderEditor::End::Deleted:
    remove(open.reminderUUID);
    break;
  case ReminderEditor::End::Cancelled:
    break;
  }
  dropDraft(open.identifier);
}

void ReminderEditing::Private::take(const ReminderDraft& result) {
  if (result.purpose == EditorPurpose::EditReminder) {
    takeEdited(result);
    return;
  }
  const bool isNew = result.purpose == EditorPurpose::NewReminder;
  store.appendReminder(reminderOf(result), isNew ? RecentEntry::Add : RecentEntry::Omit);
  Q_EMIT q.changed();
}

void ReminderEditing::Private::takeEdited(const ReminderDraft& result) {
  if (const auto edited = store.editReminder(result.reminderUUID, reminderOf(result)); !edited) {
    if (edited.error().kind != Error::Kind::NotFound)
      logLine(edited.error().message);
    keepResult(result); // the program may end while the question is open
    if (prompter.ask(goneQuestion()) == LetGo)
      return;
    store.appendReminder(reminderOf(result), RecentEntry::Add);
  }
  Q_EMIT q.changed();
}

void ReminderEditing::Private::keepResult(const ReminderDraft& result) {
  if (const auto kept = drafts.keep(result); !kept)
    logLine(QStringLiteral("Could not keep a draft: %1").arg(kept.error().message));
}

void ReminderEditing::Private::remove(const QString& reminderUUID) {
  if (const auto removed = store.removeReminder(reminderUUID); !removed) {
    logLine(removed.error().message);
    return;
  }
  Q_EMIT q.removed(reminderUUID);
  Q_EMIT q.changed();
}

/// Not before the queue that holds the text is on the disk.
void ReminderEditing::Private::dropDraft(const QString& identifier) {
  done.push_back(identifier);
  dropSavedDrafts();
}

void ReminderEditing::Private::dropSavedDrafts() {
  if (!store.preferences().isSaved()) {
    dropSoon.start();
    return;
  }
  dropSoon.stop();
  for (const QString& identifier : std::exchange(done, {}))
    drafts.remove(identifier);
}

ReminderEditing::ReminderEditing(ReminderStore& store, DraftStore drafts,
                                 ReminderWindowController::Surroundings surroundings)
    : ReminderEditing(store, std::move(drafts), surroundings.prompter,
                      tockwise::reminderWindows(surroundings)) {}

ReminderEditing::ReminderEditing(ReminderStore& store, DraftStore drafts, Prompter& prompter,
                                 MakeEditor make, std::chrono::milliseconds draftDelay)
    : d(std::make_unique<Private>(*this, store, std::move(drafts), prompter, std::move(make),
                                  draftDelay)) {}

ReminderEditing::~ReminderEditing() {
  d->keepDrafts();
  d->dropSavedDrafts();
  for (const OpenEditor& open : d->editors) {
    open.editor->disconnect(this);
    delete open.editor;
  }
}

void ReminderEditing::newReminder() {
  d->open(ReminderWindowController::newReminder(d->store.preferences(), d->store.clock().now()),
          Origin::Fresh);
}

void ReminderEditing::newReminderS(const QString& text) {
  ReminderDraft draft = ReminderWindowController::newReminder(
      d->store.preferences(), d->store.clock().now(), text, QByteArray());
  draft.purpose = EditorPurpose::RecentReminder;
  d->open(std::move(draft), Origin::Fresh);
}

void ReminderEditing::remindAgain(const QString& message, const QByteArray& RTFData) {
  ReminderDraft draft = ReminderWindowController::newReminder(
      d->store.preferences(), d->store.clock().now(), message, RTFData);
  draft.purpose = EditorPurpose::RemindAgain;
  d->open(std::move(draft), Origin::Fresh);
}

void ReminderEditing::showReminder(const QString& reminderUUID) {
  const auto being =
      std::find_if(d->editors.begin(), d->editors.end(),
                   [&](const OpenEditor& open) { return open.reminderUUID == reminderUUID; });
  if (!reminderUUID.isEmpty() && being != d->editors.end()) {
    being->editor->showWindow();
    return;
  }
  const auto index = d->store.queue().indexOf(reminderUUID);
  const auto reminder = index ? d->store.queue().reminder(*index)
                              : Error{Error::Kind::NotFound,
                                      QStringLiteral("there is no reminder %1").arg(reminderUUID)};
  if (!reminder) {
    logLine(reminder.error().message);
    logLine(QStringLiteral("Could not open the window!"));
    return;
  }
  d->open(ReminderWindowController::thisReminder(*reminder), Origin::Fresh);
}

void ReminderEditing::offerDrafts() {
  if (d->isOffering)
    return;
  const QScopedValueRollback offering(d->isOffering, true);
  std::vector<ReminderDraft> left = d->drafts.kept();
  std::erase_if(left, [this](const ReminderDraft& draft) {
    return std::any_of(d->editors.begin(), d->editors.end(),
                       [&](const OpenEditor& open) { return open.identifier == draft.identifier; });
  });
  if (left.empty())
    return;
  const int answer = d->prompter.ask(draftsQuestion(left.size()));
  for (ReminderDraft& draft : left) {
    if (answer == LetGo)
      d->drafts.remove(draft.identifier);
    else
      d->open(std::move(draft), Origin::Draft);
  }
}

std::vector<ReminderEditor*> ReminderEditing::reminderWindows() const {
  std::vector<ReminderEditor*> windows;
  for (const OpenEditor& open : d->editors)
    windows.push_back(open.editor);
  return windows;
}

bool ReminderEditing::hasUnsaved() const {
  return std::any_of(d->editors.begin(), d->editors.end(),
                     [](const OpenEditor& open) { return open.isUnsaved(); });
}

void ReminderEditing::keepDrafts() {
  d->keepDrafts();
}

} // namespace tockwise
