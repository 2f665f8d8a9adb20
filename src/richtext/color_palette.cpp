#include "richtext/color_palette.h"

#include "colors/color_contrast.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace tockwise {
namespace {

constexpr int kColumns = 8;
constexpr int kSwatch = 24;

struct NamedColor {
  QRgb color;
  const char* name;
};

// Three rows: readable on light ground, on any, on dark.
constexpr std::array<NamedColor, 24> kColors = {{
    {0xff000000, QT_TR_NOOP("Black")},      {0xff4d4d4d, QT_TR_NOOP("Dark grey")},
    {0xff9b1c1c, QT_TR_NOOP("Dark red")},   {0xff8a4b08, QT_TR_NOOP("Brown")},
    {0xff6b6b00, QT_TR_NOOP("Olive")},      {0xff1d6b2f, QT_TR_NOOP("Dark green")},
    {0xff1b4f9c, QT_TR_NOOP("Dark blue")},  {0xff5b2a86, QT_TR_NOOP("Dark violet")},
    {0xff808080, QT_TR_NOOP("Grey")},       {0xffb3b3b3, QT_TR_NOOP("Silver")},
    {0xffe5342b, QT_TR_NOOP("Red")},        {0xfff27d2d, QT_TR_NOOP("Orange")},
    {0xffd9a400, QT_TR_NOOP("Amber")},      {0xff2fa84f, QT_TR_NOOP("Green")},
    {0xff2b77d9, QT_TR_NOOP("Blue")},       {0xff9a4fd0, QT_TR_NOOP("Violet")},
    {0xffffffff, QT_TR_NOOP("White")},      {0xffe0e0e0, QT_TR_NOOP("Light grey")},
    {0xffff9d96, QT_TR_NOOP("Pink")},       {0xffffc48a, QT_TR_NOOP("Peach")},
    {0xfff7e07a, QT_TR_NOOP("Yellow")},     {0xff9fe0ac, QT_TR_NOOP("Light green")},
    {0xff9cc8ff, QT_TR_NOOP("Light blue")}, {0xffd9b8f5, QT_TR_NOOP("Lilac")},
}};

class Swatch final : public QAbstractButton {
 public:
  Swatch(const QColor& color, const QString& name, QWidget* parent)
      : QAbstractButton(parent), m_color(color) {
    setFixedSize(kSwatch, kSwatch);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(name);
    setToolTip(name);
    setObjectName(QStringLiteral("color-%1").arg(color.name().mid(1)));
    setAttribute(Qt::WA_Hover);
  }
  QColor color() const { return m_color; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle = QRectF(rect()).center();
    const bool isMarked = isChecked() || hasFocus();
    if (isMarked) {
      painter.setPen(
          QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::WindowText), 1.8));
      painter.drawEllipse(middle, 10.6, 10.6);
    }
    painter.setPen(QPen(withOpacity(palette().color(QPalette::WindowText), 0.3), 1));
    painter.setBrush(m_color);
    const double radius = underMouse() && !isMarked ? 9.5 : 8;
    painter.drawEllipse(middle, radius, radius);
  }

 private:
  QColor m_color;
};

} // namespace

QPoint popupPlace(const QWidget& anchor, QRect below, QSize size) {
  const QPoint corner = anchor.mapToGlobal(below.bottomLeft()) + QPoint(0, 4);
  const QScreen* screen = anchor.screen();
  if (!screen)
    return corner;
  const QRect area = screen->availableGeometry();
  const int above = anchor.mapToGlobal(below.topLeft()).y() - 4 - size.height();
  const int y =
      corner.y() + size.height() > area.bottom() && above >= area.top() ? above : corner.y();
  return {std::clamp(corner.x(), area.left(), std::max(area.left(), area.right() - size.width())),
          y};
}

ColorPalette::ColorPalette(QWidget* parent) : QFrame(parent, Qt::Popup) {
  setObjectName(QStringLiteral("colorPalette"));
  setAccessibleName(tr("Text colour"));
  setFrameStyle(QFrame::StyledPanel);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(8, 8, 8, 8);
  column->setSpacing(6);
  auto* theme = new QPushButton(tr("Default colour"), this);
  theme->setObjectName(QStringLiteral("themeColorButton"));
  theme->setToolTip(tr("The colour of the theme, light or dark"));
  theme->setAutoDefault(true);
  connect(theme, &QPushButton::clicked, this, [this] {
    close();
    Q_EMIT themeChosen();
  });
  column->addWidget(theme);
  auto* grid = new QGridLayout;
  grid->setSpacing(3);
  for (size_t i = 0; i < kColors.size(); ++i) {
    auto* swatch = new Swatch(QColor::fromRgb(kColors[i].color), tr(kColors[i].name), this);
    connect(swatch, &Swatch::clicked, this, [this, swatch] {
      close();
      Q_EMIT chosen(swatch->color());
    });
    grid->addWidget(swatch, int(i) / kColumns, int(i) % kColumns);
  }
  column->addLayout(grid);
  auto* others = new QPushButton(tr("Other colour…"), this);
  others->setObjectName(QStringLiteral("otherColorButton"));
  others->setAutoDefault(true);
  connect(others, &QPushButton::clicked, this, [this] {
    close();
    Q_EMIT othersWanted();
  });
  column->addWidget(others);
  const QList<QAbstractButton*> buttons = findChildren<QAbstractButton*>();
  for (QAbstractButton* button : buttons)
    button->installEventFilter(this);
}

bool ColorPalette::eventFilter(QObject* watched, QEvent* event) {
  // Buttons have arrow keys of their own, which go to the next one in no order that can be seen.
  return event->type() == QEvent::KeyPress ? handle(*static_cast<QKeyEvent*>(event))
                                           : QFrame::eventFilter(watched, event);
}

void ColorPalette::setCurrent(const std::optional<QColor>& color) {
  const QList<QAbstractButton*> buttons = findChildren<QAbstractButton*>();
  for (QAbstractButton* button : buttons) {
    if (auto* swatch = dynamic_cast<Swatch*>(button))
      swatch->setChecked(color && swatch->color().rgb() == color->rgb());
  }
}

void ColorPalette::popupBelow(const QWidget& anchor) {
  adjustSize();
  move(popupPlace(anchor, anchor.rect(), size()));
  show();
  const QList<QAbstractButton*> buttons = findChildren<QAbstractButton*>();
  const auto checked = std::find_if(buttons.begin(), buttons.end(),
                                    [](const QAbstractButton* one) { return one->isChecked(); });
  (checked == buttons.end() ? buttons.front() : *checked)->setFocus();
}

void ColorPalette::keyPressEvent(QKeyEvent* event) {
  if (!handle(*event))
    QFrame::keyPressEvent(event);
}

bool ColorPalette::handle(const QKeyEvent& event) {
  const int onwards = layoutDirection() == Qt::RightToLeft ? -1 : 1;
  switch (event.key()) {
  case Qt::Key_Left:
    moveFocus(-onwards, 0);
    return true;
  case Qt::Key_Right:
    moveFocus(onwards, 0);
    return true;
  case Qt::Key_Up:
    moveFocus(0, -1);
    return true;
  case Qt::Key_Down:
    moveFocus(0, 1);
    return true;
  case Qt::Key_Escape:
    close();
    return true;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    if (auto* button = qobject_cast<QAbstractButton*>(focusWidget()))
      button->click();
    return true;
  default:
    return false;
  }
}

void ColorPalette::moveFocus(int columns, int rows) {
  // One before the colours and one after them.
  const QList<QAbstractButton*> buttons = findChildren<QAbstractButton*>();
  const int count = int(buttons.size());
  const int at = int(buttons.indexOf(qobject_cast<QAbstractButton*>(focusWidget())));
  int next = at + columns;
  if (rows > 0)
    next = at == 0 ? 1 : at + kColumns;
  else if (rows < 0)
    next = at == count - 1 ? count - 1 - kColumns : at - kColumns;
  buttons[std::clamp(next, 0, count - 1)]->setFocus(Qt::TabFocusReason);
}

} // namespace tockwise
