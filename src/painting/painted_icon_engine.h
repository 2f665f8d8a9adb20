// Icons that are drawn at whatever size is asked for.
#pragma once

#include <QIconEngine>

namespace tockwise {

/// An engine that only has to paint: its pixmaps are what it paints on nothing. QIcon owns it, and
/// calls it on the main thread.
class PaintedIconEngine : public QIconEngine {
 public:
  /// size in pixels of the device; mode and state are passed on to paint().
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) final;
};

} // namespace tockwise
