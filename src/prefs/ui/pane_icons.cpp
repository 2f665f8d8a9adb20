#include "prefs/ui/pane_icons.h"

#include "painting/painted_icon_engine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace tockwise {
namespace {

constexpr double kSquare = 20; // what the drawings are drawn on

void addLine(QPainterPath& path, QPointF from, QPointF to) {
  path.moveTo(from);
  path.lineTo(to);
}

void addSliders(QPainterPath& path) {
  constexpr double kKnobs[] = {13, 6, 11};
  double y = 5;
  for (const double x : kKnobs) {
    addLine(path, {2.5, y}, {x - 2, y});
    path.addEllipse(QPointF(x, y), 2, 2);
    addLine(path, {x + 2, y}, {17.5, y});
    y += 5;
  }
}

void addBell(QPainterPath& path) {
  path.moveTo(3, 14.5);
  path.cubicTo(5.5, 12, 4.5, 4, 10, 4);
  path.cubicTo(15.5, 4, 14.5, 12, 17, 14.5);
  path.closeSubpath();
  path.moveTo(8.2, 17);
  path.quadTo(10, 18.6, 11.8, 17);
  addLine(path, {10, 2.2}, {10, 4});
}

void addList(QPainterPath& path) {
  for (const double y : {4.5, 10.0, 15.5}) {
    path.addEllipse(QPointF(3.6, y), 0.6, 0.6);
    addLine(path, {7, y}, {17.5, y});
  }
}

void addPencil(QPainterPath& path) {
  path.moveTo(3, 17);
  path.lineTo(4.2, 12.8);
  path.lineTo(13.5, 3.5);
  path.lineTo(16.5, 6.5);
  path.lineTo(7.2, 15.8);
  path.closeSubpath();
  addLine(path, {11.3, 5.7}, {14.3, 8.7});
}

void addStopwatch(QPainterPath& path) {
  path.addEllipse(QPointF(10, 11.5), 6.5, 6.5);
  addLine(path, {10, 11.5}, {10, 7.8});
  addLine(path, {8, 2.2}, {12, 2.2});
  addLine(path, {10, 2.2}, {10, 5});
}

void addBubble(QPainterPath& path) {
  path.moveTo(6, 13.5);
  path.lineTo(4.5, 13.5);
  path.quadTo(2.5, 13.5, 2.5, 11.5);
  path.lineTo(2.5, 5.5);
  path.quadTo(2.5, 3.5, 4.5, 3.5);
  path.lineTo(15.5, 3.5);
  path.quadTo(17.5, 3.5, 17.5, 5.5);
  path.lineTo(17.5, 11.5);
  path.quadTo(17.5, 13.5, 15.5, 13.5);
  path.lineTo(10, 13.5);
  path.lineTo(6, 17);
  path.closeSubpath();
}

void addEnvelope(QPainterPath& path) {
  path.addRoundedRect(2.5, 4.5, 15, 11, 1.5, 1.5);
  path.moveTo(3, 6);
  path.lineTo(10, 11.5);
  path.lineTo(17, 6);
}

void addCalendar(QPainterPath& path) {
  path.addRoundedRect(3, 4, 14, 13, 1.5, 1.5);
  addLine(path, {3, 8}, {17, 8});
  addLine(path, {7, 2.5}, {7, 5.5});
  addLine(path, {13, 2.5}, {13, 5.5});
}

void addCloud(QPainterPath& path) {
  path.moveTo(5.5, 15.5);
  path.cubicTo(1.2, 15.5, 1.4, 9.6, 5.4, 9.6);
  path.cubicTo(6, 4.4, 13.4, 3.8, 14.2, 9.2);
  path.cubicTo(18.8, 9.2, 18.9, 15.5, 14.6, 15.5);
  path.closeSubpath();
}

void addScreen(QPainterPath& path) {
  path.addRoundedRect(2.5, 3.5, 15, 10, 1.5, 1.5);
  addLine(path, {10, 13.5}, {10, 17});
  addLine(path, {6.5, 17}, {13.5, 17});
}

using AddTo = void (*)(QPainterPath& path);
constexpr AddTo kDrawings[] = {addSliders, addBell,     addList,     addPencil, addStopwatch,
                               addBubble,  addEnvelope, addCalendar, addCloud,  addScreen};

class PaneIconEngine final : public PaintedIconEngine {
 public:
  explicit PaneIconEngine(PaneIcon icon) : m_icon(icon) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::Text;
    const double scale = std::min(rect.width(), rect.height()) / kSquare;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QRectF(rect).center() - QPointF(kSquare, kSquare) * scale / 2);
    painter->scale(scale, scale);
    painter->setPen(QPen(QGuiApplication::palette().color(role), 1.4, Qt::SolidLine, Qt::RoundCap,
                         Qt::RoundJoin));
    QPainterPath path;
    kDrawings[size_t(m_icon)](path);
    painter->drawPath(path);
    painter->restore();
  }

  QIconEngine* clone() const override { return new PaneIconEngine(m_icon); }

 private:
  PaneIcon m_icon;
};

} // namespace

QIcon paneIcon(PaneIcon icon) {
  return QIcon(new PaneIconEngine(icon));
}

} // namespace tockwise
