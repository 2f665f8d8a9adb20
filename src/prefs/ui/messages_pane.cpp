#include "prefs/ui/messages_pane.h"

#include "prefs/phone_carriers.h"
#include "ui_MessagesPane.h"

#include <QCompleter>
#include <QLineEdit>

namespace tockwise {

MessagesPane::MessagesPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent), m_ui(std::make_unique<Ui::MessagesPane>()) {
  m_ui->setupUi(this);
  m_ui->phoneBox->addItems(phoneCarriers());
  m_ui->phoneBox->completer()->setFilterMode(Qt::MatchContains);
  m_ui->phoneBox->completer()->setCompletionMode(QCompleter::PopupCompletion);
  m_ui->phoneBox->lineEdit()->setPlaceholderText(QStringLiteral("sms.example.org"));
  m_ui->phoneBox->lineEdit()->setAccessibleName(m_ui->phoneBox->accessibleName());
  controls().bind(QStringLiteral("email"), m_ui->emailField, &PreferenceForm::email);
  controls().bind(QStringLiteral("sms"), m_ui->phoneField, &PreferenceForm::sms);
  controls().bindText(QStringLiteral("phoneBox"), m_ui->phoneBox, &PreferenceForm::phoneBox);
  controls().bindAtOnce(QStringLiteral("sendEmail"), m_ui->sendEmailBox);
  controls().bindAtOnce(QStringLiteral("sendSMS"), m_ui->sendSMSBox);
  controls().bindAtOnce(QStringLiteral("contentTypeIndex"), m_ui->contentTypePopup);

  const QString reason = QStringLiteral(
      "The grey buttons wait for a later version of Tockwise, which sends messages and "
      "reads your contacts.");
  m_ui->messagesReason->setText(reason);
  for (QPushButton* button :
       {m_ui->setRecipientToMeButton, m_ui->sendTestMailButton, m_ui->sendTestSMSButton}) {
    button->setEnabled(false);
    button->setToolTip(reason);
    button->setAccessibleDescription(reason);
  }
}

MessagesPane::~MessagesPane() = default;

} // namespace tockwise
