#include "editor/task_window_controller.h"

#include "editor/installed_applications.h"
#include "editor/window_placement.h"
#include "ui_TaskWindow.h"

#include <QCompleter>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QShowEvent>
#include <QStandardPaths>

namespace tockwise {
namespace {

/// What the window says about a type of task.
struct TypeTexts {
  const char16_t* label;
  const char16_t* placeholder;
  const char16_t* hint;
  const char16_t* filters;
};

constexpr TypeTexts kTypes[] = {
    {u"A&ddress", u"www.example.org",
     u"Opens in your web browser. \u201chttp://\u201d is put in "
     u"front of an address that does not begin with it.",
     u"All files (*)"},
    {u"&File", u"Path of a song or a film", u"Plays in your media player.",
     u"Media (*.mp3 *.ogg *.oga *.opus *.flac *.wav *.m4a *.aac *.wma *.mid *.midi *.aif *.aiff "
     u"*.mp4 *.m4v *.mkv *.webm *.avi *.mov *.mpg *.mpeg *.ogv *.wmv *.m3u *.m3u8 *.pls *.xspf);;"
     u"All files (*)"},
    {u"&File", u"Path of a document", u"Opens in the application for documents of its kind.",
     u"All files (*)"},
    {u"A&pplication", u"Name of an application or a program",
     u"Starts an application by its name, its desktop entry, or the path of a program.",
     u"Applications (*.desktop);;All files (*)"},
    {u"&Script", u"Path of a script",
     u"Runs in the background with the interpreter that its first line names, else with /bin/sh. "
     u"It is ended after five minutes.",
     u"Scripts (*.sh *.bash *.zsh *.py *.pl *.rb *.lua *.tcl *.js *.awk);;All files (*)"},
};

} // namespace

class TaskWindowController::Private {
 public:
  Private(TaskWindowController& window, Prompter& windowPrompter)
      : q(window), prompter(windowPrompter) {}

  void windowDidLoad();
  void typeChosen();
  QString folderToBrowse() const;
  void comeBack();

  TaskWindowController& q;
  Prompter& prompter;
  Ui::TaskWindow ui;
  QPointer<QFileDialog> panel;
  qint64 taskType = Task::WebAddress;
  QString pathString;
  bool addTask = false;
  bool close = false;
};

void TaskWindowController::Private::windowDidLoad() {
  ui.setupUi(&q);
  connect(ui.taskPopUp, &QComboBox::currentIndexChanged, &q, [this] { typeChosen(); });
  connect(ui.addButton, &QPushButton::clicked, &q, &TaskWindowController::addTaskAction);
  connect(ui.closeButton, &QPushButton::clicked, &q, &TaskWindowController::reject);
  connect(ui.browseButton, &QPushButton::clicked, &q, &TaskWindowController::browse);
  typeChosen();
}

void TaskWindowController::Private::typeChosen() {
  const int type = ui.taskPopUp->currentIndex();
  const TypeTexts& texts = kTypes[type];
  ui.pathLabel->setText(QString::fromUtf16(texts.label));
  ui.pathField->setPlaceholderText(QString::fromUtf16(texts.placeholder));
  ui.hintLabel->setText(QString::fromUtf16(texts.hint));
  ui.browseButton->setEnabled(type != Task::WebAddress);
  QCompleter* completer = nullptr;
  if (type == Task::Application) {
    completer = new QCompleter(installedApplications(applicationFolders()), ui.pathField);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
  }
  delete ui.pathField->completer();
  ui.pathField->setCompleter(completer);
}

QString TaskWindowController::Private::folderToBrowse() const {
  const QFileInfo present(ui.pathField->text());
  if (present.isAbsolute() && present.absoluteDir().exists())
    return present.absolutePath();
  switch (ui.taskPopUp->currentIndex()) {
  case Task::Media:
    return QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
  case Task::Document:
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  case Task::Application:
    return QStringLiteral("/usr/share/applications");
  default:
    return QDir::homePath();
  }
}

void TaskWindowController::Private::comeBack() {
  q.show();
  q.raise();
  q.activateWindow();
  ui.pathField->setFocus();
}

TaskWindowController::TaskWindowController(QWidget* parent, Prompter& prompter)
    : QDialog(parent), d(std::make_unique<Private>(*this, prompter)) {
  d->windowDidLoad();
  setWindowModality(parent ? Qt::WindowModal : Qt::NonModal);
}

TaskWindowController::~TaskWindowController() {
  delete d->panel;
}

qint64 TaskWindowController::taskType() const {
  return d->taskType;
}

QString TaskWindowController::pathString() const {
  return d->pathString;
}

bool TaskWindowController::addTask() const {
  return d->addTask;
}

bool TaskWindowController::didClose() const {
  return d->close;
}

void TaskWindowController::addTaskAction() {
  d->addTask = true;
  d->taskType = d->ui.taskPopUp->currentIndex();
  d->pathString = d->ui.pathField->text();
  if (d->pathString.isEmpty()) {
    d->prompter.beep();
    d->ui.pathField->setFocus();
    return;
  }
  accept();
}

void TaskWindowController::reject() {
  d->close = true;
  d->addTask = false;
  QDialog::reject();
}

void TaskWindowController::browse() {
  if (d->panel)
    return;
  const TypeTexts& texts = kTypes[d->ui.taskPopUp->currentIndex()];
  auto* panel = new QFileDialog(parentWidget(), QStringLiteral("Choose a File"),
                                d->folderToBrowse(), QString::fromUtf16(texts.filters));
  d->panel = panel;
  panel->setObjectName(QStringLiteral("browsePanel"));
  panel->setAttribute(Qt::WA_DeleteOnClose);
  panel->setFileMode(QFileDialog::ExistingFile);
  panel->setWindowModality(parentWidget() ? Qt::WindowModal : Qt::NonModal);
  connect(panel, &QDialog::finished, this, [this, panel](int result) {
    if (result == QDialog::Accepted && !panel->selectedFiles().isEmpty())
      d->ui.pathField->setText(panel->selectedFiles().constFirst());
    d->comeBack();
  });
  hide();
  panel->show();
}

void TaskWindowController::showEvent(QShowEvent* event) {
  if (!event->spontaneous())
    placeOverOwner(*this);
  QDialog::showEvent(event);
}

} // namespace tockwise
