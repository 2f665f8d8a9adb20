#include "prefs/ui/preference_window_controller.h"

#include "alerts/screen_places.h"
#include "prefs/ui/alerts_pane.h"
#include "prefs/ui/desktop_pane.h"
#include "prefs/ui/editor_pane.h"
#include "prefs/ui/general_pane.h"
#include "prefs/ui/mail_server_pane.h"
#include "prefs/ui/menu_pane.h"
#include "prefs/ui/messages_pane.h"
#include "prefs/ui/pane_icons.h"
#include "prefs/ui/quick_remind_pane.h"
#include "prefs/ui/unconnected_panes.h"
#include "ui_PreferenceWindowCalendar.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>

namespace tockwise {
namespace {

constexpr QSize kSize{800, 660};
constexpr int kWidestPane = 760;   // beyond it lines are too long to be read with ease
constexpr QSize kIconSize{32, 18}; // with room on both sides
constexpr QMargins kPaneMargins{22, 18, 22, 18};
constexpr int kListPadding = 18; // after the panes' titles
constexpr int kListRowPadding = 14;

} // namespace

PreferenceWindowController::PreferenceWindowController(PreferenceSurroundings surroundings,
                                                       QWidget* parent)
    : QDialog(parent),
      m_surroundings(std::move(surroundings)),
      m_ui(std::make_unique<Ui::PreferenceWindowCalendar>()) {
  windowDidLoad();
}

PreferenceWindowController::~PreferenceWindowController() {
  delete m_browsePanel;
}

void PreferenceWindowController::windowDidLoad() {
  m_ui->setupUi(this);
  setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                 Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
  m_ui->versionField->setText(
      QStringLiteral("%1 %2").arg(QStringLiteral("Tockwise"), QStringLiteral(TOCKWISE_VERSION)));
  makePanes();
  makePaneShortcuts();
  connect(m_ui->paneList, &QListWidget::currentRowChanged, m_ui->tabView,
          &QStackedWidget::setCurrentIndex);
  connect(m_ui->applyButton, &QPushButton::clicked, this, &PreferenceWindowController::applyPrefs);
  connect(m_ui->okButton, &QPushButton::clicked, this, &PreferenceWindowController::savePrefs);
  m_surroundings.mailBeat.start();
  fill();
  showPane(Pane::General);
}

void PreferenceWindowController::makePanes() {
  m_editorPane = new EditorPane(m_surroundings);
  m_mailServerPane = new MailServerPane(m_surroundings);
  m_quickRemindPane = new QuickRemindPane(m_surroundings.settings, m_surroundings.prompter);
  m_quickRemindPane->setProperty("setting", QStringLiteral("quickRemindMenuArray"));
  addPane(new GeneralPane(m_surroundings), QStringLiteral("General"));
  addPane(new AlertsPane(m_surroundings), QStringLiteral("Alerts"));
  addPane(new MenuPane(m_surroundings), QStringLiteral("Menu"));
  addPane(m_editorPane, QStringLiteral("Editor"));
  addPane(m_quickRemindPane, QStringLiteral("Quick Times"));
  addPane(new MessagesPane(m_surroundings), QStringLiteral("Messages"));
  addPane(m_mailServerPane, QStringLiteral("Mail Server"));
  addPane(new CalendarPane(m_surroundings), QStringLiteral("Calendar"));
  addPane(new CloudPane(m_surroundings), QStringLiteral("Cloud"));
  addPane(new DesktopPane(m_surroundings), QStringLiteral("This Desktop"));
  connect(m_editorPane, &EditorPane::browseRequested, this, &PreferenceWindowController::browse);
  connect(m_quickRemindPane, &QuickRemindPane::listChanged, this,
          &PreferenceWindowController::settingsWritten);
  // Tab leads from the list through the pane that is shown to the buttons.
  setTabOrder(previousInFocusChain(), m_ui->applyButton);
  setTabOrder(m_ui->applyButton, m_ui->okButton);
  QListWidget& list = *m_ui->paneList;
  list.setIconSize(kIconSize);
  int width = 0;
  for (int row = 0; row < list.count(); ++row) {
    list.item(row)->setIcon(paneIcon(PaneIcon(row)));
    width = std::max(width, list.fontMetrics().horizontalAdvance(list.item(row)->text()));
  }
  list.setFixedWidth(width + kIconSize.width() + 2 * kListPadding);
}

void PreferenceWindowController::addPane(PreferencePane* pane, const QString& title) {
  m_panes.push_back(pane);
  connect(pane, &PreferencePane::edited, this, &PreferenceWindowController::showEdited);
  connect(pane, &PreferencePane::settingsWritten, this,
          &PreferenceWindowController::settingsWritten);
  addPane(static_cast<QWidget*>(pane), title);
}

void PreferenceWindowController::addPane(QWidget* pane, const QString& title) {
  pane->setMaximumWidth(kWidestPane);
  pane->layout()->setContentsMargins(kPaneMargins);
  auto* scroller = new QScrollArea;
  scroller->setFrameShape(QFrame::NoFrame);
  scroller->setWidgetResizable(true);
  // What has nothing to type in is scrolled with the keys.
  const bool hasFields = !qobject_cast<DesktopPane*>(pane);
  scroller->setFocusPolicy(hasFields ? Qt::NoFocus : Qt::StrongFocus);
  scroller->setAccessibleName(title);
  scroller->setWidget(pane);
  m_ui->tabView->addWidget(scroller);
  auto* item = new QListWidgetItem(title, m_ui->paneList);
  item->setSizeHint({0, fontMetrics().height() + kListRowPadding});
}

void PreferenceWindowController::makePaneShortcuts() {
  const auto add = [this](const QKeySequence& keys, int step) {
    auto* shortcut = new QShortcut(keys, this);
    connect(shortcut, &QShortcut::activated, this, [this, step] {
      const int count = m_ui->tabView->count();
      showPane(Pane((int(pane()) + step + count) % count));
    });
  };
  add(QKeySequence(Qt::CTRL | Qt::Key_PageDown), 1);
  add(QKeySequence(Qt::CTRL | Qt::Key_PageUp), -1);
  add(QKeySequence(Qt::CTRL | Qt::Key_Tab), 1);
  add(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), -1);
}

PreferenceWindowController::Pane PreferenceWindowController::pane() const {
  return Pane(m_ui->tabView->currentIndex());
}

void PreferenceWindowController::showPane(Pane pane) {
  m_ui->paneList->setCurrentRow(int(pane));
}

void PreferenceWindowController::prefs() {
  if (m_browsePanel) {
    m_browsePanel->raise();
    m_browsePanel->activateWindow();
    return;
  }
  if (!m_isOpen)
    fill();
  m_isOpen = true;
  place();
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

// In the middle of the screen at which the user looks, once; then where the user moved it.
void PreferenceWindowController::place() {
  if (m_isPlaced)
    return;
  m_isPlaced = true;
  const QRect room = screenWithPointer()->availableGeometry();
  QRect window(QPoint(), kSize.expandedTo(minimumSizeHint()).boundedTo(room.size() * 0.9));
  window.moveCenter(room.center());
  setGeometry(window);
}

void PreferenceWindowController::fill() {
  for (PreferencePane* pane : m_panes)
    pane->fill();
  m_quickRemindPane->reloadData();
  showEdited();
}

void PreferenceWindowController::settingsChanged() {
  if (m_isOpen) // else it is filled when it opens
    follow();
}

void PreferenceWindowController::follow() {
  for (PreferencePane* pane : m_panes)
    pane->follow();
  m_quickRemindPane->reloadData();
  showEdited();
}

void PreferenceWindowController::showEdited() {
  setWindowModified(std::any_of(m_panes.begin(), m_panes.end(),
                                [](const PreferencePane* pane) { return pane->isEdited(); }));
}

PreferenceForm PreferenceWindowController::shownForm() const {
  PreferenceForm form = preferenceForm(m_surroundings.settings);
  for (const PreferencePane* pane : m_panes)
    pane->gather(form);
  return form;
}

bool PreferenceWindowController::savePreferences() {
  if (m_isSaving)
    return false;
  const QScopedValueRollback saving(m_isSaving, true);
  saveForm();
  return m_lastSaved.valid;
}

void PreferenceWindowController::saveForm() {
  const PreferenceForm form = shownForm();
  m_lastSaved = tockwise::savePreferences(form, m_surroundings.settings);
  const SavedPreferences saved = m_lastSaved;
  m_mailServerPane->setServerPort(saved.serverPortAD);
  if (saved.complete) {
    for (PreferencePane* pane : m_panes)
      pane->saved();
  }
  follow(); // what saving has switched off is shown
  Q_EMIT settingsWritten();
  for (size_t i = 0; i < saved.alerts.size(); ++i) {
    // The last of an incomplete saving is about the options of the queue.
    if (!saved.complete && i + 1 == saved.alerts.size())
      showPane(Pane::Menu);
    doAlert(saved.alerts[i].title, saved.alerts[i].text);
  }
  if (!saved.complete)
    return;
  Q_EMIT changeClockIcon(form.clockoption);
  Q_EMIT updatePrefs();
}

void PreferenceWindowController::doAlert(const QString& title, const QString& text) {
  m_surroundings.prompter.ask(messageToRead(title, text));
}

void PreferenceWindowController::applyPrefs() {
  savePreferences();
}

void PreferenceWindowController::savePrefs() {
  if (m_isSaving)
    return;
  savePreferences();
  if (!m_lastSaved.alerts.empty())
    return;
  m_isOpen = false;
  hide();
}

bool PreferenceWindowController::windowShouldClose() {
  if (m_isSaving)
    return false;
  savePreferences();
  return m_lastSaved.complete;
}

bool PreferenceWindowController::applicationShouldTerminate() {
  return !m_isOpen || !isWindowModified() || windowShouldClose();
}

void PreferenceWindowController::closeEvent(QCloseEvent* event) {
  const bool closes = !m_isOpen || windowShouldClose();
  event->setAccepted(closes);
  if (closes)
    m_isOpen = false;
}

void PreferenceWindowController::reject() {
  close();
}

// Return presses "OK", but for those who mean what has the keyboard.
void PreferenceWindowController::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isReturn && m_quickRemindPane->isAncestorOf(focusWidget()))
    return;
  if (isReturn && focusWidget() == m_ui->paneList)
    focusNextChild();
  else
    QDialog::keyPressEvent(event);
}

void PreferenceWindowController::browse() {
  if (m_browsePanel)
    return;
  auto* panel = new QFileDialog(nullptr, QStringLiteral("Choose a File"));
  m_browsePanel = panel;
  panel->setObjectName(QStringLiteral("browsePanel"));
  panel->setAttribute(Qt::WA_DeleteOnClose);
  panel->setFileMode(QFileDialog::ExistingFile);
  panel->setDirectory(m_editorPane->folderToBrowse());
  connect(panel, &QDialog::finished, this, [this, panel](int result) {
    m_browsePanel = nullptr;
    const QStringList chosen = panel->selectedFiles();
    prefs();
    if (result == QDialog::Accepted && !chosen.isEmpty())
      m_editorPane->setTaskPath(chosen.constFirst());
  });
  hide();
  panel->show();
  panel->raise();
  panel->activateWindow();
}

} // namespace tockwise
