#include "menu/ui/clock_icon.h"

#include "menu/ui/clock_painting.h"
#include "painting/painted_icon_engine.h"

#include <QPainter>

namespace tockwise {
namespace {

class ClockIconEngine final : public PaintedIconEngine {
 public:
  ClockIconEngine(int design, QString badge) : m_design(design), m_badge(std::move(badge)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (mode == QIcon::Disabled)
      painter->setOpacity(0.5);
    paintClock(*painter, rect, m_design);
    if (!m_badge.isEmpty())
      paintBadge(*painter, rect, m_badge);
    painter->restore();
  }

  // A host that asks which sizes there are gets the usual ones of panels.
  QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
    QList<QSize> sizes;
    for (const int extent : {16, 22, 24, 32, 48, 64})
      sizes += QSize(extent, extent);
    return sizes;
  }

  QIconEngine* clone() const override { return new ClockIconEngine(m_design, m_badge); }
  QString key() const override { return QStringLiteral("tockwise-clock"); }

 private:
  int m_design;
  QString m_badge;
};

QString badgeText(const QString& number) {
  return number.toLongLong() > 99 ? QStringLiteral("99+") : number;
}

} // namespace

QIcon clockIcon(int clockOption, const QString& number) {
  return QIcon(new ClockIconEngine(clockOption, badgeText(number)));
}

QIcon applicationIcon() {
  return QIcon(new ClockIconEngine(kApplicationDesign, {}));
}

} // namespace tockwise
