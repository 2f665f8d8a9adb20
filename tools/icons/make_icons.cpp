// make_icons FOLDER: draws the icons that the program is installed with into FOLDER, laid out as
// an icon theme: the application's, with the same strokes as its windows show it, and that of
// reminders documents. As PNG in the usual sizes, and as SVG.

#include "document_icon.h"
#include "menu/ui/clock_painting.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>

#include <cstdio>

namespace {

constexpr int kSizes[] = {16, 22, 24, 32, 48, 64, 128, 256, 512};
constexpr int kVectorSize = 128; // the size at which strokes are snapped for the SVG

struct Icon {
  QString context; // the theme's folder for its kind
  QString name;
  void (*paint)(QPainter& painter, const QRect& rect);
};

void paintApplication(QPainter& painter, const QRect& rect) {
  tockwise::paintClock(painter, rect, tockwise::kApplicationDesign);
}

bool writePng(const Icon& icon, int size, const QString& path) {
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  icon.paint(painter, image.rect());
  painter.end();
  return image.save(path, "PNG");
}

bool writeSvg(const Icon& icon, const QString& path) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly))
    return false;
  QSvgGenerator generator;
  generator.setOutputDevice(&file);
  generator.setResolution(96); // its size in millimetres is then kVectorSize pixels
  generator.setSize({kVectorSize, kVectorSize});
  generator.setViewBox(QRect(0, 0, kVectorSize, kVectorSize));
  generator.setTitle(QStringLiteral("Tockwise"));
  generator.setDescription(QString());
  QPainter painter(&generator);
  painter.setRenderHint(QPainter::Antialiasing);
  icon.paint(painter, QRect(0, 0, kVectorSize, kVectorSize));
  return painter.end() && file.commit();
}

bool write(const Icon& icon, const QDir& theme) {
  const auto place = [&](const QString& size, const QString& suffix) {
    const QString folder = size + u'/' + icon.context;
    return theme.mkpath(folder) ? theme.filePath(folder + u'/' + icon.name + suffix) : QString();
  };
  for (const int size : kSizes) {
    if (!writePng(icon, size, place(QStringLiteral("%1x%1").arg(size), QStringLiteral(".png"))))
      return false;
  }
  return writeSvg(icon, place(QStringLiteral("scalable"), QStringLiteral(".svg")));
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_icons FOLDER\n", stderr);
    return 2;
  }
  const QCoreApplication application(argc, argv);
  const QDir theme(QString::fromLocal8Bit(argv[1]));
  const Icon icons[] = {
      {QStringLiteral("apps"), QStringLiteral("com.quillstone.Tockwise"), paintApplication},
      {QStringLiteral("mimetypes"), QStringLiteral("application-vnd.quillstone.tockwise"),
       tockwise::paintDocument},
  };
  for (const Icon& icon : icons) {
    if (!write(icon, theme)) {
      std::fprintf(stderr, "make_icons: %s could not be written\n", qPrintable(icon.name));
      return 1;
    }
  }
  return 0;
}
