#include "editor/reminder_editor.h"

namespace tockwise {
namespace {

class WindowEditor final : public ReminderEditor {
 public:
  WindowEditor(ReminderDraft draft, const ReminderWindowController::Surroundings& surroundings)
      : m_window(std::move(draft), surroundings) {
    connect(&m_window, &ReminderWindowController::changed, this, &ReminderEditor::changed);
    connect(&m_window, &ReminderWindowController::finished, this, &ReminderEditor::finished);
  }

  void showWindow() override { m_window.showWindow(); }
  ReminderDraft current() const override { return m_window.current(); }
  bool isChanged() const override { return m_window.isChanged(); }
  void tellDraftTrouble(const QString& why) override { m_window.tellDraftTrouble(why); }

  End end() const override {
    if (m_window.didDelete())
      return End::Deleted;
    return m_window.didCancel() ? End::Cancelled : End::Created;
  }

  ReminderDraft result() const override {
    ReminderDraft draft = m_window.openedWith();
    draft.reminderDate = m_window.reminderDate();
    draft.reminderText = m_window.reminderDescription();
    draft.RTFData = m_window.reminderRTFData();
    draft.reminderInterval = m_window.reminderInterval();
    draft.reminderExtra = m_window.reminderExtra();
    draft.reminderOffset = m_window.reminderOffset();
    draft.reminderTask = m_window.reminderTask();
    draft.smsState = m_window.smsState();
    draft.emailState = m_window.emailState();
    return draft;
  }

 private:
  ReminderWindowController m_window;
};

} // namespace

MakeEditor reminderWindows(ReminderWindowController::Surroundings surroundings) {
  return [surroundings = std::move(surroundings)](ReminderDraft draft) {
    return std::make_unique<WindowEditor>(std::move(draft), surroundings);
  };
}

} // namespace tockwise
