// The status item as panels show it that speak StatusNotifierItem over D-Bus.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QIcon>
#include <QPoint>

namespace tockwise {

/// Main thread. Announces itself to the StatusNotifierWatcher whenever one with a host is there:
/// at the start, later, or again after it went away.
class NotifierItem final : public QDBusVirtualObject {
  Q_OBJECT
 public:
  NotifierItem(QDBusConnection connection, const QString& menuPath, QObject* parent = nullptr);
  ~NotifierItem() override;

  /// Looks for a watcher; hostKnown() follows, and hostChanged() when it has one.
  void start();
  /// Whether a panel shows the item.
  bool hasHost() const { return m_hasHost; }

  void setIcon(const QIcon& icon);
  void setToolTip(const QString& title, const QString& text);

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
  QString introspect(const QString& path) const override;

 Q_SIGNALS:
  void hostChanged(bool hasHost);
  /// Whether there is a host has been found out for the first time.
  void hostKnown();
  /// A click on the item by a panel that does not show the menu itself; where, on the screen.
  void menuRequested(QPoint place);

 private:
  void askForHost();
  void setHost(bool hasHost);
  void announce();
  QVariantMap properties() const;
  void sendSignal(const QString& name);

  QDBusConnection m_connection;
  QDBusServiceWatcher m_watcher;
  QString m_service;
  QString m_menuPath;
  QIcon m_icon;
  QString m_title;
  QString m_text;
  bool m_hasHost = false;
  bool m_known = false;

 private Q_SLOTS: // D-Bus signals connect by name only
  void hostRegistered();
};

} // namespace tockwise
