#include "prefs/ui/quick_remind_pane.h"

#include "editor/toned_label.h"
#include "prefs/quick_time.h"
#include "prefs/ui/quick_remind_list.h"
#include "prefs/ui/reorder_list.h"
#include "ui_QuickRemindPane.h"

#include <QShortcut>

namespace tockwise {

QuickRemindPane::QuickRemindPane(Settings& settings, Prompter& prompter, QWidget* parent)
    : QWidget(parent),
      m_menu(settings),
      m_prompter(prompter),
      m_ui(std::make_unique<Ui::QuickRemindPane>()),
      m_model(new QuickRemindModel(m_menu, this)) {
  m_ui->setupUi(this);
  m_ui->reminderMenuTable->setModel(m_model);
  m_ui->reminderMenuTable->setItemDelegate(new QuickRemindDelegate(this));
  connectAll();
  select(0);
  showNewEntry();
}

QuickRemindPane::~QuickRemindPane() = default;

void QuickRemindPane::connectAll() {
  connect(m_ui->addButton, &QAbstractButton::clicked, this, &QuickRemindPane::addToMenu);
  connect(m_ui->deleteButton, &QAbstractButton::clicked, this, &QuickRemindPane::deleteItem);
  connect(m_ui->moveUpButton, &QAbstractButton::clicked, this, &QuickRemindPane::moveUp);
  connect(m_ui->moveDownButton, &QAbstractButton::clicked, this, &QuickRemindPane::moveDown);
  connect(m_ui->defaultOrderButton, &QAbstractButton::clicked, this,
          &QuickRemindPane::defaultOrder);
  for (QLineEdit* field : {m_ui->daysField, m_ui->hoursField, m_ui->minutesField}) {
    connect(field, &QLineEdit::textChanged, this, &QuickRemindPane::showNewEntry);
    connect(field, &QLineEdit::returnPressed, this, &QuickRemindPane::addToMenu);
  }
  connect(m_ui->reminderMenuTable, &ReorderList::rowDropped, this,
          [this](int row, int destination) { finish({}, m_menu.move(row, destination)); });
  const auto inList = [this](const QKeySequence& keys, void (QuickRemindPane::*action)()) {
    auto* shortcut = new QShortcut(keys, m_ui->reminderMenuTable);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, this, action);
  };
  inList(Qt::ALT | Qt::Key_Up, &QuickRemindPane::moveUp);
  inList(Qt::ALT | Qt::Key_Down, &QuickRemindPane::moveDown);
  inList(QKeySequence::Delete, &QuickRemindPane::deleteItem);
}

void QuickRemindPane::reloadData() {
  const qsizetype row = selectedRow();
  m_model->reload();
  if (selectedRow() != row)
    select(qMin(row, qsizetype(m_model->rowCount() - 1)));
}

void QuickRemindPane::addToMenu() {
  if (const auto row = m_menu.addToMenu(m_ui->daysField->text(), m_ui->hoursField->text(),
                                        m_ui->minutesField->text()))
    finish({}, *row);
}

void QuickRemindPane::deleteItem() {
  const qsizetype row = selectedRow();
  const qsizetype last = m_menu.entries().size() - 1;
  finish(m_menu.deleteItem(row), row == last ? row - 1 : row);
}

void QuickRemindPane::moveUp() {
  const qsizetype row = selectedRow();
  finish(m_menu.moveUp(row), row - 1);
}

void QuickRemindPane::moveDown() {
  const qsizetype row = selectedRow();
  finish(m_menu.moveDown(row), row + 1);
}

void QuickRemindPane::defaultOrder() {
  m_menu.defaultOrder();
  finish({}, 0);
}

void QuickRemindPane::finish(const std::optional<PreferenceAlert>& refusal, qsizetype row) {
  if (refusal) {
    m_prompter.ask(messageToRead(refusal->title, refusal->text));
    return;
  }
  m_model->reload();
  select(row);
  Q_EMIT listChanged();
}

void QuickRemindPane::select(qsizetype row) {
  const QModelIndex index = m_model->index(int(row));
  if (index.isValid())
    m_ui->reminderMenuTable->setCurrentIndex(index);
}

qsizetype QuickRemindPane::selectedRow() const {
  return m_ui->reminderMenuTable->currentIndex().row();
}

// What is typed is taken as it is, so that the strict reading of it is shown before it surprises.
void QuickRemindPane::showNewEntry() {
  const QString entry = quickRemindEntry(m_ui->daysField->text(), m_ui->hoursField->text(),
                                         m_ui->minutesField->text());
  const QString remark = entry.isEmpty() ? QString() : quickTimeRemark(entry);
  if (remark.isEmpty())
    m_ui->newEntryLabel->say(entry.trimmed(), TonedLabel::Tone::Quiet);
  else
    m_ui->newEntryLabel->say(QStringLiteral("“%1” %2.").arg(entry.trimmed(), remark),
                             TonedLabel::Tone::Warning);
}

} // namespace tockwise
