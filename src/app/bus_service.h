// The application on the session bus: our own interface and org.freedesktop.Application.
// docs/dbus.md describes both.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

#include <functional>

namespace tockwise {

class AppController;

/// com.quillstone.Tockwise1. Main thread.
class CommandAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "com.quillstone.Tockwise1")
 public:
  CommandAdaptor(QObject* parent, AppController& controller);

 public Q_SLOTS:
  QString Add(const QString& text, const QVariantMap& options, const QDBusMessage& message);
  QString List();
  QString Show(const QString& reminder, const QDBusMessage& message);
  QString Edit(const QString& reminder, const QVariantMap& options, const QDBusMessage& message);
  QString Delete(const QString& reminder, const QDBusMessage& message);
  void Clear(const QDBusMessage& message);
  void Save(const QString& path, const QDBusMessage& message);
  QVariantMap Open(const QString& path, bool yes, const QVariantMap& options,
                   const QDBusMessage& message);
  QVariantMap Merge(const QString& path, const QVariantMap& options, const QDBusMessage& message);
  QString Menu();
  QString Alerts();
  void AlertCommand(const QString& action, int position, const QDBusMessage& message);
  QString GetPreference(const QString& key, const QDBusMessage& message);
  void SetPreference(const QString& key, const QStringList& values, const QDBusMessage& message);
  QVariantMap ListPreferences();
  QString Doctor();
  bool Quit(bool yes, const QDBusMessage& message);
  void ShowMenu();
  void Print(bool alerts);
  void PrintPDF(const QString& path, bool alerts, const QDBusMessage& message);

 Q_SIGNALS:
  void QueueChanged();
  void ReminderFired(const QString& uuid);
  void AlertOpened(const QString& uuid);
  void AlertClosed(const QString& uuid);

 private:
  void askToOpen(const QString& path, const QDBusMessage& message);
  /// Answers message with what reply makes, once nothing is under way with the password.
  void answerWhenSettled(const QDBusMessage& message, std::function<QDBusMessage()> reply);

  AppController& m_controller;
};

/// org.freedesktop.Application: how launchers activate us.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
 public:
  ApplicationAdaptor(QObject* parent, AppController& controller);

 public Q_SLOTS:
  void Activate(const QVariantMap& platformData);
  void Open(const QStringList& uris, const QVariantMap& platformData);
  void ActivateAction(const QString& name, const QVariantList& parameters,
                      const QVariantMap& platformData);

 private:
  AppController& m_controller;
};

} // namespace tockwise
