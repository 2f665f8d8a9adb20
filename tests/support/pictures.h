// Pictures for tests, made in memory.
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QtEndian>

namespace tockwise {

inline QByteArray encodedPicture(QSize size, const QColor& color, const char* format) {
  QImage image(size, color.alpha() < 255 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
  image.fill(color);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format);
  return buffer.data();
}

inline QByteArray pngOf(QSize size, const QColor& color = Qt::darkGreen) {
  return encodedPicture(size, color, "png");
}

inline QByteArray jpegOf(QSize size, const QColor& color = Qt::darkGreen) {
  return encodedPicture(size, color, "jpg");
}

/// A JPEG of that stored size that is to be shown turned by a quarter.
inline QByteArray turnedJpegOf(QSize size) {
  QByteArray bytes = jpegOf(size);
  const QByteArray orientation = QByteArray::fromHex(
      "ffe1002245786966000049492a000800000001001201030001000000060000000000000000");
  QByteArray segment = orientation.left(36);
  bytes.insert(2, segment);
  return bytes;
}

/// A PNG that has the header of a picture of that size and no pixels.
inline QByteArray headerOfPng(QSize size) {
  QByteArray header = "IHDR" + QByteArray(13, '\0');
  qToBigEndian<quint32>(quint32(size.width()), header.data() + 4);
  qToBigEndian<quint32>(quint32(size.height()), header.data() + 8);
  header[12] = 8;
  header[13] = 2;
  quint32 crc = 0xffffffff;
  for (const char byte : header) {
    crc ^= quint8(byte);
    for (int bit = 0; bit < 8; ++bit)
      crc = crc & 1 ? 0xedb88320 ^ (crc >> 1) : crc >> 1;
  }
  QByteArray tail(4, '\0');
  qToBigEndian<quint32>(~crc, tail.data());
  return QByteArray::fromHex("89504e470d0a1a0a0000000d") + header + tail +
         QByteArray::fromHex("000000004944415435af061e0000000049454e44ae426082");
}

} // namespace tockwise
