#include "platform/hotkeys/kde_shortcuts.h"

#include "platform/hotkeys/plasma.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>

#include <algorithm>

namespace tockwise {

/// A key sequence as it goes over the bus: (ai), four keys, 0 for none.
struct KdeKeys {
  QList<int> keys;
};
using KdeKeysList = QList<KdeKeys>;

QDBusArgument& operator<<(QDBusArgument& argument, const KdeKeys& sequence) {
  argument.beginStructure();
  argument << sequence.keys;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KdeKeys& sequence) {
  argument.beginStructure();
  argument >> sequence.keys;
  argument.endStructure();
  return argument;
}

} // namespace tockwise

Q_DECLARE_METATYPE(tockwise::KdeKeys)
Q_DECLARE_METATYPE(tockwise::KdeKeysList)

namespace tockwise {
namespace {

const QString kService = QStringLiteral("org.kde.kglobalaccel");
const QString kPath = QStringLiteral("/kglobalaccel");
const QString kInterface = QStringLiteral("org.kde.KGlobalAccel");
const QString kComponentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
const QString kComponent = QStringLiteral("com.quillstone.Tockwise");

// Flags of setShortcutKeys.
constexpr uint kSetPresent = 2; // the program runs; a key that the user chose before stays
constexpr uint kIsDefault = 8;  // what the desktop's settings go back to

QDBusMessage call(const QString& method) {
  QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
  message.setAutoStartService(false);
  return message;
}

/// Component and action, each as it is known and as it is shown.
QStringList actionOf(int number) {
  const ShortcutName& name = shortcutNames()[number - 1];
  return {kComponent, QString::fromUtf16(name.identifier), QStringLiteral("Tockwise"),
          QString::fromUtf16(name.description)};
}

bool hasKey(const QList<int>& keys) {
  return std::any_of(keys.begin(), keys.end(), [](int key) { return key != 0; });
}

bool hasKey(const KdeKeysList& sequences) {
  return std::any_of(sequences.begin(), sequences.end(),
                     [](const KdeKeys& sequence) { return hasKey(sequence.keys); });
}

} // namespace

KdeShortcuts::KdeShortcuts(const QDBusConnection& bus, QObject* parent)
    : BusShortcuts(parent), m_bus(bus), m_states(allHotKeys(HotKeys::State::Off)) {
  qDBusRegisterMetaType<KdeKeys>();
  qDBusRegisterMetaType<KdeKeysList>();
}

KdeShortcuts::~KdeShortcuts() {
  release();
}

QString KdeShortcuts::name() const {
  return QStringLiteral("KGlobalAccel");
}

QString KdeShortcuts::service() const {
  return kService;
}

void KdeShortcuts::bind() {
  release();
  m_talk = std::make_unique<QObject>();
  m_states = allHotKeys(HotKeys::State::Pending);
  if (isOnPlasma())
    registerActions();
  else
    findCompositor();
}

void KdeShortcuts::ask(const QDBusMessage& call, Answered answered) {
  auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), m_talk.get());
  connect(watcher, &QDBusPendingCallWatcher::finished, m_talk.get(),
          [watcher, answered = std::move(answered)] {
            watcher->deleteLater();
            answered(watcher->reply());
          });
}

void KdeShortcuts::findCompositor() {
  const QString bus = QStringLiteral("org.freedesktop.DBus");
  QDBusMessage hasOwner = QDBusMessage::createMethodCall(
      bus, QStringLiteral("/org/freedesktop/DBus"), bus, QStringLiteral("NameHasOwner"));
  hasOwner << QString::fromUtf16(kKeyCompositor);
  ask(hasOwner, [this](const QDBusMessage& reply) {
    if (reply.arguments().value(0).toBool())
      registerActions();
    else
      fail();
  });
}

void KdeShortcuts::registerActions() {
  m_bus.connect(kService, kPath, kInterface, QStringLiteral("yourShortcutsChanged"), this,
                SLOT(shortcutsChanged(QDBusMessage)));
  for (const HotKey key : kHotKeys) {
    QDBusMessage doRegister = call(QStringLiteral("doRegister"));
    doRegister << actionOf(int(key));
    m_bus.asyncCall(doRegister);
  }
  findComponent();
}

// It is there once an action is registered; calls are answered in their order.
void KdeShortcuts::findComponent() {
  QDBusMessage getComponent = call(QStringLiteral("getComponent"));
  getComponent << kComponent;
  ask(getComponent, [this](const QDBusMessage& reply) {
    m_component = qvariant_cast<QDBusObjectPath>(reply.arguments().value(0)).path();
    if (reply.type() == QDBusMessage::ErrorMessage || m_component.isEmpty()) {
      fail();
      return;
    }
    m_bus.connect(kService, m_component, kComponentInterface,
                  QStringLiteral("globalShortcutPressed"), this,
                  SLOT(shortcutPressed(QDBusMessage)));
    for (const HotKey key : kHotKeys)
      setKeys(int(key));
  });
}

void KdeShortcuts::setKeys(int number) {
  const KdeKeysList wanted{{{shortcutNames()[number - 1].key, 0, 0, 0}}};
  QDBusMessage setDefault = call(QStringLiteral("setShortcutKeys"));
  setDefault << actionOf(number) << QVariant::fromValue(wanted) << kIsDefault;
  m_bus.asyncCall(setDefault);
  QDBusMessage set = call(QStringLiteral("setShortcutKeys"));
  set << actionOf(number) << QVariant::fromValue(wanted) << kSetPresent;
  ask(set, [this, number](const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ErrorMessage)
      setKeysOfOld(number);
    else
      take(number, hasKey(qdbus_cast<KdeKeysList>(reply.arguments().value(0))));
  });
}

void KdeShortcuts::setKeysOfOld(int number) {
  QDBusMessage set = call(QStringLiteral("setShortcut"));
  set << actionOf(number) << QVariant::fromValue(QList<int>{shortcutNames()[number - 1].key})
      << kSetPresent;
  ask(set, [this, number](const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ErrorMessage)
      fail();
    else
      take(number, hasKey(qdbus_cast<QList<int>>(reply.arguments().value(0))));
  });
}

void KdeShortcuts::take(int number, bool isOurs) {
  m_states[size_t(number) - 1] = isOurs ? HotKeys::State::Registered : HotKeys::State::Taken;
  if (std::find(m_states.begin(), m_states.end(), HotKeys::State::Pending) == m_states.end())
    Q_EMIT bound(m_states);
}

void KdeShortcuts::shortcutPressed(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  const int number = shortcutNumber(arguments.value(1).toString());
  if (number > 0 && arguments.value(0).toString() == kComponent)
    Q_EMIT pressed(number);
}

void KdeShortcuts::shortcutsChanged(const QDBusMessage& message) {
  const QStringList action = message.arguments().value(0).toStringList();
  const int number = shortcutNumber(action.value(1));
  if (number > 0 && action.value(0) == kComponent)
    take(number, hasKey(qdbus_cast<KdeKeysList>(message.arguments().value(1))));
}

bool KdeShortcuts::stopTalking() {
  if (!m_talk)
    return false;
  m_talk.reset();
  m_bus.disconnect(kService, kPath, kInterface, QStringLiteral("yourShortcutsChanged"), this,
                   SLOT(shortcutsChanged(QDBusMessage)));
  if (m_component.isEmpty())
    return false;
  m_bus.disconnect(kService, m_component, kComponentInterface,
                   QStringLiteral("globalShortcutPressed"), this,
                   SLOT(shortcutPressed(QDBusMessage)));
  m_component.clear();
  return true;
}

void KdeShortcuts::release() {
  if (!stopTalking())
    return;
  for (const HotKey key : kHotKeys) {
    QDBusMessage setInactive = call(QStringLiteral("setInactive"));
    setInactive << actionOf(int(key));
    m_bus.asyncCall(setInactive);
  }
}

// An action that is only inactive keeps its key from others. One that got no key because another
// had it would have none for ever, also when that key is free again.
void KdeShortcuts::giveBack() {
  if (!stopTalking())
    return;
  for (const HotKey key : kHotKeys) {
    QDBusMessage unregister = call(QStringLiteral("unregister"));
    unregister << kComponent << actionOf(int(key)).at(1);
    m_bus.asyncCall(unregister);
  }
}

// Whoever called is one of those that wait: they go once it has returned.
void KdeShortcuts::fail() {
  m_component.clear();
  if (QObject* talk = m_talk.release())
    talk->deleteLater();
  Q_EMIT failed(QStringLiteral("it has no KGlobalAccel"));
}

} // namespace tockwise
