#include "editor/reminder_form.h"

#include "editor/custom_panel.h"
#include "ui_ReminderWindow.h"
#include "ui_ReminderWindowS.h"

#include <QScreen>
#include <QTextDocument>

namespace tockwise {
namespace {

/// Between the text and the edge of its view, in pixels.
constexpr double kTextMargin = 12;

/// The window's first size, in widths and heights of a letter, so that it follows the font.
QSize comfortableSize(DatePicker::Style style, const QFontMetrics& metrics) {
  const bool graphical = style == DatePicker::Style::Graphical;
  return {metrics.averageCharWidth() * (graphical ? 124 : 92),
          metrics.lineSpacing() * (graphical ? 31 : 29)};
}

} // namespace

ReminderForm::ReminderForm(DatePicker::Style style) : panel(std::make_unique<CustomPanel>()) {
  if (style == DatePicker::Style::Graphical)
    load<Ui::ReminderWindow>();
  else
    load<Ui::ReminderWindowS>();
  arrange(style);
}

ReminderForm::~ReminderForm() = default;

template <class Ui> void ReminderForm::load() {
  Ui ui;
  ui.setupUi(panel.get());
  formattingBar = ui.formattingBar;
  textRuler = ui.textRuler;
  reminderTextView = ui.reminderTextView;
  noticeLine = ui.noticeLine;
  reminderDate = ui.reminderDate;
  quickPop = ui.quickPop;
  neverButton = ui.neverButton;
  firesLine = ui.firesLine;
  optionsButton = ui.optionsButton;
  repeatLine = ui.repeatLine;
  taskButton = ui.taskButton;
  taskLine = ui.taskLine;
  emailBox = ui.emailBox;
  smsBox = ui.smsBox;
  deleteButton = ui.deleteButton;
  cancelButton = ui.cancelButton;
  createButton = ui.createButton;
}

void ReminderForm::arrange(DatePicker::Style style) {
  reminderTextView->document()->setDocumentMargin(kTextMargin);
  formattingBar->setView(reminderTextView);
  textRuler->setView(reminderTextView);
  reminderDate->setStyle(style);
  panel->setReminderDate(reminderDate);
  panel->takeArrowKeysFrom({neverButton, optionsButton, taskButton, emailBox, smsBox, deleteButton,
                            cancelButton, createButton});

  const QFontMetrics metrics = panel->fontMetrics();
  reminderTextView->setMinimumSize(metrics.averageCharWidth() * 30, metrics.lineSpacing() * 4);
  const QSize screen = panel->screen()->availableSize() * 0.9;
  panel->resize(comfortableSize(style, metrics).expandedTo(panel->sizeHint()).boundedTo(screen));
}

} // namespace tockwise
