#include "richtext/size_box.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>

#include <cmath>

namespace tockwise {
namespace {

constexpr double kSmallest = 1;
constexpr double kLargest = 400;
constexpr int kWidth = 62;

} // namespace

SizeBox::SizeBox(QWidget* parent) : QComboBox(parent) {
  setObjectName(QStringLiteral("sizeBox"));
  setAccessibleName(tr("Text size in points"));
  setToolTip(tr("Text size"));
  setEditable(true);
  setInsertPolicy(NoInsert);
  setCompleter(nullptr);
  setFixedWidth(kWidth);
  setMaxVisibleItems(20);
  for (const int size : {9, 10, 11, 12, 13, 14, 16, 18, 20, 24, 28, 32, 36, 48, 64})
    addItem(QString::number(size), double(size));
  setCurrentIndex(-1);
  connect(this, &QComboBox::activated, this, &SizeBox::choose);
  connect(lineEdit(), &QLineEdit::returnPressed, this, &SizeBox::choose);
}

void SizeBox::show(double points) {
  m_shown = points;
  if (lineEdit()->hasFocus())
    return; // it is being written in
  const QString text =
      points > 0 ? locale().toString(std::round(points * 10) / 10, 'g', 4) : QString();
  if (lineEdit()->text() != text)
    setEditText(text);
}

void SizeBox::choose() {
  bool isNumber = false;
  const double points = locale().toDouble(currentText(), &isNumber);
  lineEdit()->clearFocus();
  if (isNumber && points != m_shown && points >= kSmallest && points <= kLargest) {
    Q_EMIT sizeChosen(points);
    return;
  }
  show(m_shown);
  Q_EMIT left();
}

void SizeBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape)
    return QComboBox::keyPressEvent(event);
  lineEdit()->clearFocus();
  show(m_shown);
  Q_EMIT left();
}

} // namespace tockwise
