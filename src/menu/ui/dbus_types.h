// The compound types that the tray's D-Bus interfaces carry.
#pragma once

#include <QDBusArgument>
#include <QIcon>
#include <QStringList>
#include <QVariantMap>

namespace tockwise {

/// (ia{sv}): properties of a menu item.
struct DbusItemProperties {
  int id = 0;
  QVariantMap properties;
};
/// (ias): properties of a menu item that went back to their defaults.
struct DbusItemKeys {
  int id = 0;
  QStringList keys;
};
/// (isvu): an event of a menu item, as hosts send them in groups.
struct DbusMenuEvent {
  int id = 0;
  QString name;
};
/// (iiay): a picture, 32 bits a pixel, ARGB in network byte order.
struct DbusPixmap {
  int width = 0;
  int height = 0;
  QByteArray bytes;
};
/// (sa(iiay)ss)
struct DbusToolTip {
  QString title;
  QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const DbusItemProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusItemProperties& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DbusItemKeys& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusItemKeys& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuEvent& event);
QDBusArgument& operator<<(QDBusArgument& argument, const DbusPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const DbusToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, DbusToolTip& toolTip);

/// The icon in the sizes that panels ask for.
QList<DbusPixmap> dbusPixmaps(const QIcon& icon);

/// Makes the types known to Qt's D-Bus; call before use, any number of times.
void registerDbusTypes();

} // namespace tockwise

Q_DECLARE_METATYPE(tockwise::DbusItemProperties)
Q_DECLARE_METATYPE(tockwise::DbusItemKeys)
Q_DECLARE_METATYPE(tockwise::DbusMenuEvent)
Q_DECLARE_METATYPE(tockwise::DbusPixmap)
Q_DECLARE_METATYPE(tockwise::DbusToolTip)
