#include "prefs/ui/mail_server_pane.h"

#include "ui_MailServerPane.h"

#include <QButtonGroup>
#include <QRegularExpressionValidator>

namespace tockwise {
namespace {

/// What an empty field means for a setting that has a value: it is kept.
QString keepingText(const QString& stored, const QString& example) {
  return stored.isEmpty() ? example : QStringLiteral("keeps %1").arg(stored);
}

} // namespace

MailServerPane::MailServerPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent),
      m_mailBeat(surroundings.mailBeat),
      m_passwordHint(surroundings.passwordHint),
      m_ui(std::make_unique<Ui::MailServerPane>()) {
  m_ui->setupUi(this);
  static const QRegularExpression ports(QStringLiteral(
      "(6553[0-5]|655[0-2][0-9]|65[0-4][0-9]{2}|6[0-4][0-9]{3}|[1-5][0-9]{4}|[0-9]{1,4})?"));
  m_ui->serverPortField->setValidator(new QRegularExpressionValidator(ports, this));
  controls().bind(QStringLiteral("emailAddressAD"), m_ui->emailAddressField,
                  &PreferenceForm::emailAddressAD);
  controls().bind(QStringLiteral("smtpServerNameAD"), m_ui->smtpServerNameField,
                  &PreferenceForm::smtpServerNameAD);
  controls().bind(QStringLiteral("serverPortAD"), m_ui->serverPortField,
                  &PreferenceForm::serverPortAD);
  controls().bind(QStringLiteral("useSSL"), m_ui->sslCheckBox, &PreferenceForm::useSSL);
  controls().bind(QStringLiteral("authenticationAD"), m_ui->authPopup,
                  &PreferenceForm::authenticationAD);
  controls().bind(QStringLiteral("usernameAD"), m_ui->username, &PreferenceForm::usernameAD);
  controls().bind(QStringLiteral("passwordAD"), m_ui->password, &PreferenceForm::passwordAD);
  controls().bindAtOnce(QStringLiteral("UseMailScript"), m_ui->useMailScriptBox);
  bindRate();
}

MailServerPane::~MailServerPane() = default;

void MailServerPane::bindRate() {
  m_rates = new QButtonGroup(this);
  m_rates->setObjectName(QStringLiteral("rateGroup"));
  int index = 0;
  for (QRadioButton* button :
       {m_ui->rate10, m_ui->rate20, m_ui->rate30, m_ui->rate40, m_ui->rate50, m_ui->rate60})
    m_rates->addButton(button, index++);
  const QString key = QStringLiteral("rateIndex");
  controls().bindAtOnce(key, m_rates);
  connect(&controls(), &SettingControls::written, &m_mailBeat, [this, key](const QString& written) {
    if (written == key)
      m_mailBeat.beatChanged();
  });
}

void MailServerPane::setServerPort(const QString& port) {
  m_ui->serverPortField->setText(port);
}

void MailServerPane::showState() {
  showServer();
  showRate();
}

void MailServerPane::showServer() {
  const bool authenticates = m_ui->authPopup->currentIndex() > 0;
  for (QWidget* part :
       {static_cast<QWidget*>(m_ui->usernameLabel), static_cast<QWidget*>(m_ui->username),
        static_cast<QWidget*>(m_ui->passwordLabel), static_cast<QWidget*>(m_ui->password)})
    part->setEnabled(authenticates);
  const auto stored = [this](const char16_t* key) {
    return settings().string(QString::fromUtf16(key));
  };
  m_ui->emailAddressField->setPlaceholderText(
      keepingText(stored(u"emailAddressAD"), QStringLiteral("you@example.org")));
  m_ui->smtpServerNameField->setPlaceholderText(
      keepingText(stored(u"smtpServerNameAD"), QStringLiteral("smtp.example.org")));
  m_ui->username->setPlaceholderText(keepingText(stored(u"usernameAD"), {}));
  const bool hasPassword = !stored(u"passwordAD").isEmpty();
  m_ui->password->setPlaceholderText(hasPassword ? QStringLiteral("keeps the password as it is")
                                                 : QString());
  const QString hint = m_passwordHint ? m_passwordHint() : QString();
  m_ui->passwordHint->setText(hint);
  m_ui->passwordHint->setVisible(!hint.isEmpty());

  QString state = QStringLiteral("Not complete: no mail is sent through a server so far.");
  if (settings().boolean(QStringLiteral("useADPrefs")))
    state = QStringLiteral("Saved and complete, with user name and password.");
  else if (settings().boolean(QStringLiteral("useADPrefsNoAuth")))
    state = QStringLiteral("Saved and complete, without user name and password.");
  m_ui->serverState->setText(state);
}

void MailServerPane::showRate() {
  QString note;
  if (m_rates->checkedId() < 0) // a pace that has no button
    note = QStringLiteral("Now one message every %1 seconds.").arg(m_mailBeat.period().count());
  m_ui->rateNote->setText(note);
  m_ui->rateNote->setVisible(!note.isEmpty());
}

} // namespace tockwise
