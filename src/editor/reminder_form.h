// The panel of the reminder window with its controls, built from the form "ReminderWindow" or
// "ReminderWindowS".
#pragma once

#include "editor/date_picker.h"

#include <memory>

class QCheckBox;
class QPushButton;

namespace tockwise {

class CustomPanel;
class FormattingBar;
class QSTextView;
class QuickTimePop;
class TextRuler;
class TonedLabel;

/// Main thread. The controls by the names that they have in the forms; the panel owns them.
class ReminderForm {
 public:
  explicit ReminderForm(DatePicker::Style style);
  ~ReminderForm();
  ReminderForm(const ReminderForm&) = delete;
  ReminderForm& operator=(const ReminderForm&) = delete;

  std::unique_ptr<CustomPanel> panel;

  FormattingBar* formattingBar = nullptr;
  TextRuler* textRuler = nullptr;
  QSTextView* reminderTextView = nullptr;
  TonedLabel* noticeLine = nullptr;
  DatePicker* reminderDate = nullptr;
  QuickTimePop* quickPop = nullptr;
  QPushButton* neverButton = nullptr;
  TonedLabel* firesLine = nullptr;
  QPushButton* optionsButton = nullptr;
  TonedLabel* repeatLine = nullptr;
  QPushButton* taskButton = nullptr;
  TonedLabel* taskLine = nullptr;
  QCheckBox* emailBox = nullptr;
  QCheckBox* smsBox = nullptr;
  QPushButton* deleteButton = nullptr;
  QPushButton* cancelButton = nullptr;
  QPushButton* createButton = nullptr;

 private:
  template <class Ui> void load();
  void arrange(DatePicker::Style style);
};

} // namespace tockwise
