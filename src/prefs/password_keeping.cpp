#include "prefs/password_keeping.h"

#include "base/log.h"

#include <QPointer>

#include <utility>

namespace tockwise {
namespace {

using State = SecretStore::State;

const QString kKey = QStringLiteral("passwordAD");

// A restart of the service takes less; at the end of a session we are gone before.
constexpr std::chrono::milliseconds kGrace{10000};

} // namespace

PasswordKeeping::PasswordKeeping(PreferencesStore& preferences, SecretStore& secrets,
                                 QObject* parent, Waking waking)
    : QObject(parent), m_preferences(preferences), m_secrets(secrets), m_waking(waking) {
  m_inFile = !isElsewhere() && !password().isEmpty();
  m_gone.setSingleShot(true);
  m_gone.setInterval(kGrace);
  connect(&m_gone, &QTimer::timeout, this, &PasswordKeeping::moveHere);
  connect(&m_secrets, &SecretStore::stateChanged, this, &PasswordKeeping::stateChanged);
  m_preferences.onValueSet = [this](const QString& key) {
    if (key == kKey)
      passwordSet();
  };
}

PasswordKeeping::~PasswordKeeping() {
  m_preferences.onValueSet = nullptr;
  keepUnconfirmedHere();
}

QString PasswordKeeping::password() const {
  return m_preferences.string(kKey);
}

bool PasswordKeeping::isElsewhere() const {
  return m_preferences.isKeptElsewhere(kKey);
}

void PasswordKeeping::start() {
  m_looking = true;
  m_secrets.look([self = QPointer(this)] {
    if (self)
      self->looked();
  });
}

void PasswordKeeping::looked() {
  m_looking = false;
  if (std::exchange(m_wanted, false))
    askForIt();
  proceed();
  Q_EMIT changed();
  if (isSettled())
    Q_EMIT settled();
}

void PasswordKeeping::fetch() {
  m_refused = false;
  m_unreadable = false;
  m_missing = false;
  const bool wanted = isElsewhere() ? m_preferences.isUnread(kKey) : m_inFile;
  if (!wanted)
    return;
  if (m_looking) {
    m_wanted = true;
  } else if (m_secrets.state() == State::Unknown && m_waking == Waking::Allowed) {
    m_looking = true;
    m_wanted = true;
    m_secrets.wake([self = QPointer(this)] {
      if (self)
        self->looked();
    });
  } else {
    askForIt();
    proceed();
  }
}

// A locked store asks the user when it is read from.
void PasswordKeeping::askForIt() {
  const bool locked = m_secrets.state() == State::Locked;
  if (locked && m_work == Work::None && m_preferences.isUnread(kKey)) {
    m_asksUser = true;
    read();
  }
}

// What is set while the secret store is open goes there without touching the disk; but a password
// that the file holds stays until the new one is safe.
void PasswordKeeping::passwordSet() {
  m_refused = false;
  m_unreadable = false;
  m_missing = false;
  const bool open = m_secrets.state() == State::Available;
  if (password().isEmpty()) {
    m_stale = m_stale || isElsewhere() || m_work == Work::Writing;
    m_preferences.keepHere(kKey);
    m_unconfirmed = false;
    m_inFile = false;
  } else if (open && !m_inFile) {
    m_preferences.keepElsewhere(kKey);
    m_unconfirmed = true;
  } else {
    m_preferences.keepHere(kKey);
    m_unconfirmed = false;
    m_inFile = true;
  }
  if (m_secrets.state() == State::Unknown && m_inFile)
    fetch();
  proceed();
  Q_EMIT changed();
}

void PasswordKeeping::stateChanged() {
  const bool gone = m_secrets.state() == State::NotAvailable;
  m_refused = false;
  m_unreadable = false;
  m_missing = false;
  if (!gone)
    m_gone.stop();
  else if (isElsewhere() && !m_preferences.isUnread(kKey))
    m_gone.start();
  proceed();
  Q_EMIT changed();
}

void PasswordKeeping::whenSettled(const QObject* context, std::function<void()> done) {
  if (isSettled())
    done();
  else
    connect(this, &PasswordKeeping::settled, context, std::move(done), Qt::SingleShotConnection);
}

// Does what is to be done next.
void PasswordKeeping::proceed() {
  if (!isElsewhere() && !password().isEmpty())
    m_inFile = true; // another process may have written it
  if (m_work != Work::None)
    return;
  if (m_secrets.state() != State::Available) {
    keepUnconfirmedHere();
    return;
  }
  if (m_unconfirmed || (m_inFile && !m_refused))
    write();
  else if (m_preferences.isUnread(kKey) && !m_unreadable && !m_missing)
    read();
  else if (m_stale && password().isEmpty())
    remove();
}

void PasswordKeeping::read() {
  m_work = Work::Reading;
  m_secrets.read(kKey, [self = QPointer(this)](bool ok, const std::optional<QString>& secret) {
    if (self)
      self->tookOut(ok, secret);
  });
}

void PasswordKeeping::tookOut(bool ok, const std::optional<QString>& secret) {
  m_unreadable = !ok;
  m_missing = ok && !secret;
  // One that was set meanwhile counts.
  if (secret && m_preferences.isUnread(kKey))
    m_preferences.provide(kKey, *secret);
  finish();
}

void PasswordKeeping::write() {
  m_work = Work::Writing;
  const QString secret = password();
  m_secrets.write(kKey, secret, [self = QPointer(this), secret](bool ok) {
    if (!self)
      return;
    if (!ok) {
      self->written(secret, false);
      return;
    }
    // Some say yes and keep nothing.
    self->m_secrets.read(kKey, [self, secret](bool read, const std::optional<QString>& kept) {
      if (self)
        self->written(secret, read && kept == secret);
    });
  });
}

void PasswordKeeping::written(const QString& secret, bool ok) {
  if (secret != password()) { // another was set meanwhile, and is written next
    finish();
    return;
  }
  if (ok) {
    m_unconfirmed = false;
    m_stale = false;
    m_preferences.keepElsewhere(kKey);
    m_preferences.cleanCopies(); // first: a file that still has it leads here again
    m_preferences.synchronize();
    m_inFile = false;
  } else {
    refused();
  }
  finish();
}

void PasswordKeeping::refused() {
  m_refused = true;
  logLine(QStringLiteral("The desktop's password store did not take the password; it is kept in "
                         "Tockwise's own file"));
  keepUnconfirmedHere();
}

void PasswordKeeping::keepUnconfirmedHere() {
  if (m_unconfirmed)
    moveHere();
}

void PasswordKeeping::moveHere() {
  if (m_preferences.isUnread(kKey))
    return;
  m_unconfirmed = false;
  m_inFile = !password().isEmpty();
  m_preferences.keepHere(kKey);
  m_preferences.synchronize();
  Q_EMIT changed();
}

void PasswordKeeping::remove() {
  m_work = Work::Removing;
  m_stale = false;
  m_secrets.remove(kKey, [self = QPointer(this)](bool ok) {
    if (!self)
      return;
    if (!ok)
      logLine(QStringLiteral("The old password could not be removed from the desktop's password "
                             "store"));
    self->finish();
  });
}

void PasswordKeeping::finish() {
  m_work = Work::None;
  m_asksUser = false;
  proceed();
  Q_EMIT changed();
  if (isSettled())
    Q_EMIT settled();
}

QString PasswordKeeping::hint() const {
  const State state = m_secrets.state();
  if (isElsewhere()) {
    if (!m_preferences.isUnread(kKey))
      return m_unconfirmed ? QString() : QStringLiteral("Kept in the desktop's password store.");
    if (state == State::Locked) {
      return QStringLiteral("The desktop's password store is locked; unlock it to use the password "
                            "that is kept there.");
    }
    if (m_missing) {
      return QStringLiteral("The desktop's password store no longer has the password: please enter "
                            "it again.");
    }
    return state == State::NotAvailable || m_unreadable
               ? QStringLiteral("The password is in the desktop's password store, which does not "
                                "answer.")
               : QString();
  }
  if (password().isEmpty() || m_work == Work::Writing || state == State::Unknown)
    return {};
  if (state == State::Locked) {
    return QStringLiteral("The desktop's password store is locked; until it is unlocked, the "
                          "password is kept in Tockwise's own file, readable only by you.");
  }
  return QStringLiteral("Kept in Tockwise's own file, readable only by you, since %1.")
      .arg(state == State::NotAvailable
               ? QStringLiteral("this desktop has no password store")
               : QStringLiteral("the desktop's password store did not take it"));
}

} // namespace tockwise
