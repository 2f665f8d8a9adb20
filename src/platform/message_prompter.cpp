#include "platform/message_prompter.h"

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace tockwise {
namespace {

/// A message box whose two texts are plain and can be read to the end.
QMessageBox* makeBox(QWidget* owner, const QString& name, const QString& title,
                     const QString& message) {
  auto* box = new QMessageBox(owner);
  box->setObjectName(name);
  box->setAccessibleName(title);
  box->setAccessibleDescription(message);
  box->setWindowTitle(QStringLiteral("Tockwise"));
  box->setText(title);
  box->setInformativeText(message);
  const QList<QLabel*> labels = box->findChildren<QLabel*>();
  for (QLabel* label : labels)
    label->setTextFormat(Qt::PlainText);
  if (auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
  }
  return box;
}

/// In the order given, left to right: with one role for all the platform does not sort them.
std::vector<QPushButton*> addButtons(QMessageBox& box, const QStringList& titles) {
  std::vector<QPushButton*> buttons;
  for (const QString& title : titles) {
    QString text = title;
    QPushButton* button =
        box.addButton(text.replace(u'&', QStringLiteral("&&")), QMessageBox::ActionRole);
    button->setObjectName(QStringLiteral("questionButton%1").arg(buttons.size()));
    button->setAccessibleName(title);
    buttons.push_back(button);
  }
  return buttons;
}

QPushButton* buttonAt(const std::vector<QPushButton*>& buttons, int index) {
  return index >= 0 && size_t(index) < buttons.size() ? buttons[size_t(index)] : nullptr;
}

void bringToFront(QMessageBox& box) {
  box.show();
  box.raise();
  box.activateWindow();
}

} // namespace

MessagePrompter::~MessagePrompter() {
  for (const auto& message : m_messages)
    delete message.data();
}

QWidget* MessagePrompter::ownerOfQuestion() const {
  if (!m_questions.empty() && m_questions.back())
    return m_questions.back();
  // Whatever it does not own could not be answered.
  QWidget* modal = QApplication::activeModalWidget();
  if (modal && modal->windowModality() == Qt::ApplicationModal)
    return modal;
  QWidget* active = QApplication::activeWindow();
  // What floats above the others (an alert, a message) stays usable and owns no question.
  const bool owns =
      active && active->isVisible() && !active->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
  return owns ? active : nullptr;
}

int MessagePrompter::ask(const Question& question) {
  QWidget* owner = ownerOfQuestion();
  const QPointer<QMessageBox> box =
      makeBox(owner, QStringLiteral("questionBox"), question.title, question.message);
  box->setWindowModality(owner ? Qt::WindowModal : Qt::NonModal); // resets the window's flags
  box->setWindowFlag(Qt::WindowStaysOnTopHint);
  const std::vector<QPushButton*> buttons = addButtons(*box, question.buttons);
  box->setIcon(buttons.size() > 1 ? QMessageBox::Question : QMessageBox::Information);
  const int escape = question.escapeButton < 0 ? int(buttons.size()) - 1 : question.escapeButton;
  box->setDefaultButton(buttonAt(buttons, question.defaultButton));
  box->setEscapeButton(buttonAt(buttons, escape));

  int answer = escape;
  QEventLoop loop;
  QObject::connect(box, &QMessageBox::buttonClicked, &loop, [&](QAbstractButton* pressed) {
    const auto found = std::find(buttons.begin(), buttons.end(), pressed);
    if (found != buttons.end())
      answer = int(found - buttons.begin());
  });
  QObject::connect(box, &QDialog::finished, &loop, &QEventLoop::quit);
  QObject::connect(box, &QObject::destroyed, &loop, &QEventLoop::quit);
  m_questions.push_back(box);
  bringToFront(*box);
  loop.exec();
  m_questions.erase(std::find(m_questions.begin(), m_questions.end(), box));
  delete box.data();
  return answer;
}

void MessagePrompter::tell(const QString& title, const QString& message) {
  std::erase_if(m_messages, [](const auto& gone) { return gone.isNull(); });
  QMessageBox* box = makeBox(nullptr, QStringLiteral("messageBox"), title, message);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowModality(Qt::NonModal);         // resets the flags of the window
  box->setWindowFlag(Qt::WindowStaysOnTopHint); // alerts float, and are not hidden for it
  box->setIcon(QMessageBox::Information);
  const auto buttons = addButtons(*box, {QStringLiteral("OK")});
  box->setDefaultButton(buttons.front());
  box->setEscapeButton(buttons.front());
  m_messages.emplace_back(box);
  bringToFront(*box);
}

void MessagePrompter::beep() {
  QApplication::beep();
}

} // namespace tockwise
