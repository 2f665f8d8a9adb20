#include "richtext/bar_icons.h"

#include "painting/painted_icon_engine.h"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>

namespace tockwise {
namespace {

/// The signs are drawn on a square of so many units.
constexpr double kGridUnits = 20;
constexpr double kLine = 1.6;
constexpr float kDisabled = 0.35F;

struct Ink {
  QColor ink;
  QColor accent;
};

QPen line(const QColor& color, double width = kLine) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

/// A letter of that height in units, its middle at middle.
void drawLetter(QPainter& painter, const QString& letter, QFont font, double height, QPointF middle,
                const QColor& color) {
  font.setPixelSize(100);
  QPainterPath path;
  path.addText(0, 0, font, letter);
  const QRectF bounds = path.boundingRect();
  const double scale = height / bounds.height();
  painter.save();
  painter.translate(middle);
  painter.scale(scale, scale);
  painter.translate(-bounds.center());
  painter.fillPath(path, color);
  painter.restore();
}

QFont letterFont(int weight, bool italic = false) {
  QFont font = QGuiApplication::font();
  font.setWeight(QFont::Weight(weight));
  font.setItalic(italic);
  return font;
}

void drawBold(QPainter& painter, const Ink& ink) {
  drawLetter(painter, QStringLiteral("B"), letterFont(QFont::Black), 12, {10, 10}, ink.ink);
}

void drawItalic(QPainter& painter, const Ink& ink) {
  // Drawn and not set: the slanted letter of many fonts is a mere stroke.
  painter.setPen(line(ink.ink, 1.8));
  painter.drawLine(QPointF(9, 4.2), QPointF(14, 4.2));
  painter.drawLine(QPointF(6, 15.8), QPointF(11, 15.8));
  painter.drawLine(QPointF(11.6, 4.2), QPointF(8.4, 15.8));
}

void drawUnderline(QPainter& painter, const Ink& ink) {
  QPainterPath cup;
  cup.moveTo(5.8, 3.6);
  cup.lineTo(5.8, 9.2);
  cup.arcTo(QRectF(5.8, 5, 8.4, 8.6), 180, 180);
  cup.lineTo(14.2, 3.6);
  painter.setPen(line(ink.ink, 1.9));
  painter.drawPath(cup);
  painter.setPen(line(ink.ink));
  painter.drawLine(QPointF(5, 17), QPointF(15, 17));
}

void drawColor(QPainter& painter, const Ink& ink) {
  drawLetter(painter, QStringLiteral("A"), letterFont(QFont::DemiBold), 9.6, {10, 7.8}, ink.ink);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ink.accent);
  painter.drawRoundedRect(QRectF(3.5, 14.8, 13, 3), 1.2, 1.2);
}

constexpr std::array<double, 3> kListLines = {5, 10, 15};

void drawBullets(QPainter& painter, const Ink& ink) {
  for (const double y : kListLines) {
    painter.setPen(line(ink.ink));
    painter.drawLine(QPointF(8.4, y), QPointF(17, y));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink.ink);
    painter.drawEllipse(QPointF(4.2, y), 1.5, 1.5);
  }
}

void drawNumbers(QPainter& painter, const Ink& ink) {
  for (int i = 0; i < 3; ++i) {
    const double y = kListLines[size_t(i)];
    painter.setPen(line(ink.ink));
    painter.drawLine(QPointF(8.4, y), QPointF(17, y));
    drawLetter(painter, QString::number(i + 1), letterFont(QFont::DemiBold), 4.4, {4, y}, ink.ink);
  }
}

/// Four lines of text; start and end of the odd ones.
void drawLines(QPainter& painter, const Ink& ink, double from, double to) {
  painter.setPen(line(ink.ink));
  for (int i = 0; i < 4; ++i) {
    const double y = 4.4 + i * 3.8;
    painter.drawLine(QPointF(i % 2 == 0 ? 3 : from, y), QPointF(i % 2 == 0 ? 17 : to, y));
  }
}

void drawLink(QPainter& painter, const Ink& ink) {
  painter.translate(10, 10);
  painter.rotate(-45);
  painter.setPen(line(ink.ink));
  const auto half = [&](double side) {
    QPainterPath path;
    path.moveTo(side * 1.6, -3.1);
    path.lineTo(side * 5, -3.1);
    path.cubicTo(side * 9.2, -3.1, side * 9.2, 3.1, side * 5, 3.1);
    path.lineTo(side * 1.6, 3.1);
    painter.drawPath(path);
  };
  half(-1);
  half(1);
  painter.drawLine(QPointF(-3.4, 0), QPointF(3.4, 0));
}

void drawPicture(QPainter& painter, const Ink& ink) {
  painter.setPen(line(ink.ink));
  painter.drawRoundedRect(QRectF(2.8, 4, 14.4, 12), 2.2, 2.2);
  QPainterPath hills;
  hills.moveTo(3.6, 14.4);
  hills.lineTo(7.6, 9.8);
  hills.lineTo(10.6, 13);
  hills.lineTo(12.8, 11);
  hills.lineTo(16.4, 14.4);
  painter.drawPath(hills);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ink.ink);
  painter.drawEllipse(QPointF(12.7, 7.6), 1.3, 1.3);
}

void drawSpark(QPainter& painter, QPointF middle, double radius, const QColor& color) {
  QPainterPath star;
  for (int i = 0; i < 8; ++i) {
    const double angle = i * M_PI / 4;
    const double reach = i % 2 == 0 ? radius : radius * 0.36;
    const QPointF point = middle + QPointF(std::sin(angle), -std::cos(angle)) * reach;
    if (i == 0)
      star.moveTo(point);
    else
      star.lineTo(point);
  }
  star.closeSubpath();
  painter.fillPath(star, color);
}

void drawCrazy(QPainter& painter, const Ink& ink) {
  painter.setPen(line(ink.ink, 2));
  painter.drawLine(QPointF(3.6, 16.4), QPointF(10.4, 9.6));
  painter.setPen(Qt::NoPen);
  drawSpark(painter, {12.8, 7.2}, 4, ink.ink);
  drawSpark(painter, {5.6, 5.2}, 2.4, ink.accent);
  drawSpark(painter, {15.4, 14.6}, 2.8, ink.accent);
}

void drawSign(QPainter& painter, BarSign sign, const Ink& ink) {
  switch (sign) {
  case BarSign::Bold:
    return drawBold(painter, ink);
  case BarSign::Italic:
    return drawItalic(painter, ink);
  case BarSign::Underline:
    return drawUnderline(painter, ink);
  case BarSign::Color:
    return drawColor(painter, ink);
  case BarSign::Bullets:
    return drawBullets(painter, ink);
  case BarSign::Numbers:
    return drawNumbers(painter, ink);
  case BarSign::AlignLeft:
    return drawLines(painter, ink, 3, 11.5);
  case BarSign::AlignCenter:
    return drawLines(painter, ink, 5.8, 14.2);
  case BarSign::AlignRight:
    return drawLines(painter, ink, 8.5, 17);
  case BarSign::AlignBlock:
    return drawLines(painter, ink, 3, 17);
  case BarSign::Link:
    return drawLink(painter, ink);
  case BarSign::Picture:
    return drawPicture(painter, ink);
  case BarSign::Crazy:
    return drawCrazy(painter, ink);
  }
}

class SignEngine final : public PaintedIconEngine {
 public:
  SignEngine(BarSign sign, Ink ink) : m_sign(sign), m_ink(ink) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    Ink ink = m_ink;
    if (mode == QIcon::Disabled) {
      ink.ink.setAlphaF(kDisabled);
      ink.accent.setAlphaF(kDisabled);
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    const double side = std::min(rect.width(), rect.height());
    painter->translate(rect.x() + (rect.width() - side) / 2.0,
                       rect.y() + (rect.height() - side) / 2.0);
    painter->scale(side / kGridUnits, side / kGridUnits);
    drawSign(*painter, m_sign, ink);
    painter->restore();
  }

  QIconEngine* clone() const override { return new SignEngine(*this); }

 private:
  BarSign m_sign;
  Ink m_ink;
};

} // namespace

QIcon barIcon(BarSign sign, const QColor& ink, const QColor& accent) {
  return QIcon(new SignEngine(sign, {ink, accent}));
}

} // namespace tockwise
