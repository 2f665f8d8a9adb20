// An analogue clock face whose hands can be dragged.
#pragma once

#include <QWidget>

#include <optional>

namespace tockwise {

/// Main thread. Holds a time of day on the 24-hour clock, or none. The mouse drags the hands: the
/// one that is nearer, over its length only the minute hand; the hour follows the minute hand past
/// 12, within the day. The wheel and the arrow keys move by a minute, with Shift or by Page Up and
/// Page Down by an hour.
class ClockFace final : public QWidget {
  Q_OBJECT
 public:
  explicit ClockFace(QWidget* parent = nullptr);

  /// 0 to 23, 0 to 59. Emits nothing.
  void setTime(int hour, int minute);
  /// A face without hands, until one is set or picked. Emits nothing.
  void clearTime();
  int hour() const { return m_minutes.value_or(0) / 60; }
  int minute() const { return m_minutes.value_or(0) % 60; }
  bool hasTime() const { return m_minutes.has_value(); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The user moved a hand.
  void timePicked(int hour, int minute);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  enum class Hand { None, Hour, Minute };
  QPointF onFace(const QPointF& position) const;
  Hand handAt(const QPointF& point) const;
  void dragTo(const QPointF& point);
  void moveBy(int minutes);
  void pick(int minutes);
  void showMinutes(std::optional<int> minutes);
  void drawFace(QPainter& painter) const;
  void drawNumerals(QPainter& painter) const;
  void drawHands(QPainter& painter) const;

  std::optional<int> m_minutes; // since midnight
  Hand m_dragged = Hand::None;
  int m_wheel = 0; // eighths of a degree that have not made a step yet
};

} // namespace tockwise
