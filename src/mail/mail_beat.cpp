#include "mail/mail_beat.h"

namespace tockwise {

MailBeat::MailBeat(const Settings& settings, QObject* parent)
    : QObject(parent), m_settings(settings) {}

void MailBeat::start() {}

void MailBeat::beatChanged() {}

std::chrono::seconds MailBeat::period() const {
  return std::chrono::seconds(10);
}

void MailBeat::beatAction() {
  m_mailBeatFlag = true;
  Q_EMIT beat();
}

} // namespace tockwise
