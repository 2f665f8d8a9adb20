#include "prefs/ui/general_pane.h"

#include "prefs/hot_key_text.h"
#include "prefs/ui/section_label.h"
#include "ui_GeneralPane.h"

namespace tockwise {
namespace {

constexpr char16_t kLoginItem[] = u"loginItem";

} // namespace

GeneralPane::GeneralPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent),
      m_loginItems(surroundings.loginItems),
      m_hotKeys(surroundings.hotKeys),
      m_ui(std::make_unique<Ui::GeneralPane>()) {
  m_ui->setupUi(this);
  m_ui->loginItemNote->hide();
  for (QLabel* state :
       {m_ui->hotKeyState1, m_ui->hotKeyState2, m_ui->hotKeyState3, m_ui->hotKeyState4})
    alignWithWindow(*state);
  m_ui->hotKeyField->follow(m_hotKeys);
  controls().bind(QStringLiteral("useGlobalHotKeys"), m_ui->useHotKeysBox,
                  &PreferenceForm::useGlobalHotKeys);
  m_ui->loginItemBox->setProperty("setting", QString::fromUtf16(kLoginItem));
  connect(m_ui->loginItemBox, &QCheckBox::clicked, this, &GeneralPane::loginItem);
  connect(&m_hotKeys, &HotKeys::stateChanged, this, &GeneralPane::showHotKeys);
}

GeneralPane::~GeneralPane() = default;

void GeneralPane::gather(PreferenceForm& form) const {
  PreferencePane::gather(form);
  form.loginItem = m_loginItems.isPresent(); // the box may be behind
}

void GeneralPane::loginItem(bool wanted) {
  m_loginItemChosen = true;
  const Result<void> done = wanted ? m_loginItems.add() : m_loginItems.remove();
  m_loginItemFailure = done ? QString() : done.error().message;
  showState();
  Q_EMIT edited();
}

void GeneralPane::showState() {
  showLoginItem();
  showHotKeys();
}

// The box shows what the desktop will do, whatever the setting says.
void GeneralPane::showLoginItem() {
  const bool present = m_loginItems.isPresent();
  const bool stored = settings().boolean(QString::fromUtf16(kLoginItem));
  m_ui->loginItemBox->setChecked(present);
  m_loginItemChosen &= present != stored;
  QString note;
  if (!m_loginItemFailure.isEmpty())
    note = QStringLiteral("This could not be changed: %1.").arg(m_loginItemFailure);
  else if (stored && !present && !m_loginItemChosen)
    note = QStringLiteral("It was switched on here, and something else has switched it off.");
  m_ui->loginItemNote->say(note, TonedLabel::Tone::Warning);
  m_ui->loginItemNote->setVisible(!note.isEmpty());
}

void GeneralPane::showHotKeys() {
  QLabel* const states[] = {m_ui->hotKeyState1, m_ui->hotKeyState2, m_ui->hotKeyState3,
                            m_ui->hotKeyState4};
  bool missing = false;
  for (const HotKey key : kHotKeys) {
    const auto index = size_t(key) - 1;
    const HotKeys::State state = m_hotKeys.state(key);
    missing |= state == HotKeys::State::Taken || state == HotKeys::State::NotAvailable;
    states[index]->setText(hotKeyStateText(key, state));
  }
  QString hint;
  if (missing)
    hint = QStringLiteral("In the desktop's keyboard settings a command can be bound to any key. "
                          "It does the same.");
  m_ui->hotKeyHint->say(hint, TonedLabel::Tone::Quiet);
  m_ui->hotKeyHint->setVisible(missing);
  const bool pending =
      m_ui->useHotKeysBox->isChecked() != settings().boolean(QStringLiteral("useGlobalHotKeys"));
  m_ui->useHotKeysNote->setVisible(pending);
}

} // namespace tockwise
