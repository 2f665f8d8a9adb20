#include "menu/ui/dbus_types.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QImage>
#include <QtEndian>

namespace tockwise {

QDBusArgument& operator<<(QDBusArgument& argument, const DbusItemProperties& item) {
  argument.beginStructure();
  argument << item.id << item.properties;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusItemProperties& item) {
  argument.beginStructure();
  argument >> item.id >> item.properties;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DbusItemKeys& item) {
  argument.beginStructure();
  argument << item.id << item.keys;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusItemKeys& item) {
  argument.beginStructure();
  argument >> item.id >> item.keys;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DbusMenuEvent& event) {
  argument.beginStructure();
  argument << event.id << event.name << QDBusVariant(QString()) << uint(0);
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusMenuEvent& event) {
  QDBusVariant data;
  uint timestamp = 0;
  argument.beginStructure();
  argument >> event.id >> event.name >> data >> timestamp;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DbusPixmap& pixmap) {
  argument.beginStructure();
  argument << pixmap.width << pixmap.height << pixmap.bytes;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusPixmap& pixmap) {
  argument.beginStructure();
  argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DbusToolTip& toolTip) {
  argument.beginStructure();
  argument << QString() << QList<DbusPixmap>() << toolTip.title << toolTip.text;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DbusToolTip& toolTip) {
  QString iconName;
  QList<DbusPixmap> pixmaps;
  argument.beginStructure();
  argument >> iconName >> pixmaps >> toolTip.title >> toolTip.text;
  argument.endStructure();
  return argument;
}

QList<DbusPixmap> dbusPixmaps(const QIcon& icon) {
  QList<DbusPixmap> pixmaps;
  for (const QSize size : icon.availableSizes()) {
    QImage image = icon.pixmap(size, 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    DbusPixmap pixmap{image.width(), image.height(), {}};
    pixmap.bytes.resize(qsizetype(image.width()) * image.height() * 4);
    auto* target = reinterpret_cast<uchar*>(pixmap.bytes.data());
    for (int y = 0; y < image.height(); ++y) {
      const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
      for (int x = 0; x < image.width(); ++x, target += 4)
        qToBigEndian<quint32>(line[x], target);
    }
    pixmaps += pixmap;
  }
  return pixmaps;
}

void registerDbusTypes() {
  qDBusRegisterMetaType<DbusItemProperties>();
  qDBusRegisterMetaType<QList<DbusItemProperties>>();
  qDBusRegisterMetaType<DbusItemKeys>();
  qDBusRegisterMetaType<QList<DbusItemKeys>>();
  qDBusRegisterMetaType<DbusMenuEvent>();
  qDBusRegisterMetaType<QList<DbusMenuEvent>>();
  qDBusRegisterMetaType<DbusPixmap>();
  qDBusRegisterMetaType<QList<DbusPixmap>>();
  qDBusRegisterMetaType<DbusToolTip>();
  qDBusRegisterMetaType<QList<QStringList>>();
  qDBusRegisterMetaType<QList<int>>();
}

} // namespace tockwise
