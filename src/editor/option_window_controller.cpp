#include "editor/option_window_controller.h"

#include "editor/option_text.h"
#include "editor/window_placement.h"
#include "engine/fire_forecast.h"
#include "ui_OptionWindow.h"

#include <QScopedValueRollback>
#include <QShowEvent>

#include <optional>
#include <span>

namespace tockwise {
namespace {

constexpr Interval kPresets[] = {kBlankInterval, {0, 0, 0, 1}, {0, 0, 1, 0},
                                 {0, 1, 0, 0},   {0, 7, 0, 0}, {1, 0, 0, 0}};
constexpr int kCustomPreset = 6;

constexpr int kMostMonths = 12;
constexpr int kMostDays = 31;
constexpr int kMostHours = 24;
constexpr int kMostMinutes = 60;

void fill(QComboBox& pop, int most) {
  for (int value = 0; value <= most; ++value)
    pop.addItem(QString::number(value), qint64(value));
}

void select(QComboBox& pop, qint64 value) {
  int index = pop.findData(value);
  if (index < 0) {
    index = pop.count();
    pop.addItem(QString::number(value), value);
  }
  pop.setCurrentIndex(index);
}

qint64 selected(const QComboBox& pop) {
  return pop.currentData().toLongLong();
}

/// The preset shown for a stored interval. The order of the tests is part of the rules: an
/// interval of several units shows the smallest that is 1.
int presetToShow(const Interval& interval) {
  const auto [months, days, hours, minutes] = interval;
  if (minutes == 1)
    return 1;
  if (hours == 1)
    return 2;
  if (days == 1)
    return 3;
  if (days == 7)
    return 4;
  return months == 1 ? 5 : 0;
}

QTime timeOfDay(qint64 hour, qint64 minute) {
  return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 ? QTime(int(hour), int(minute))
                                                              : QTime();
}

} // namespace

class OptionWindowController::Private {
 public:
  explicit Private(OptionWindowController& window) : q(window) {}

  void windowDidLoad();
  void showValues();
  void selectInterval(const Interval& values);
  Interval chosenInterval() const;
  Extra chosenExtra() const;
  Offset chosenOffset() const;
  void intervalChosen();
  void tell();

  OptionWindowController& q;
  Ui::OptionPanel ui;
  std::array<QComboBox*, 4> intervalPops{};
  std::array<QComboBox*, 3> offsetPops{};
  std::array<QCheckBox*, 7> dayBoxes{};
  Interval reminderInterval = kBlankInterval;
  Extra reminderExtra;
  Offset reminderOffset = kBlankOffset;
  // Stored times that the pickers cannot show, until they are changed.
  std::array<std::optional<std::array<qint64, 2>>, 2> oddTimes;
  bool filling = false;
};

void OptionWindowController::Private::windowDidLoad() {
  ui.setupUi(&q);
  intervalPops = {ui.monthPop, ui.dayPop, ui.hourPop, ui.minutePop};
  offsetPops = {ui.dayBeforePop, ui.hourBeforePop, ui.minuteBeforePop};
  dayBoxes = {ui.ck1, ui.ck2, ui.ck3, ui.ck4, ui.ck5, ui.ck6, ui.ck7};
  const int most[] = {kMostMonths, kMostDays, kMostHours, kMostMinutes};
  for (size_t i = 0; i < intervalPops.size(); ++i) {
    fill(*intervalPops[i], most[i]);
    connect(intervalPops[i], &QComboBox::currentIndexChanged, &q, [this] { intervalChosen(); });
  }
  for (size_t i = 0; i < offsetPops.size(); ++i) {
    fill(*offsetPops[i], most[i + 1]);
    connect(offsetPops[i], &QComboBox::currentIndexChanged, &q, [this] { tell(); });
  }
  for (QCheckBox* box : dayBoxes)
    connect(box, &QCheckBox::toggled, &q, [this] { tell(); });
  const std::array<QTimeEdit*, 2> pickers{ui.beforeTime, ui.afterTime};
  for (size_t i = 0; i < pickers.size(); ++i) {
    connect(pickers[i], &QTimeEdit::timeChanged, &q, [this, i] {
      if (!filling)
        oddTimes[i].reset();
      tell();
    });
  }
  // Room for two lines: the window keeps its size while the words change.
  ui.summaryLabel->setMinimumHeight(2 * ui.summaryLabel->fontMetrics().lineSpacing());
  connect(ui.repeatIntervalPop, &QComboBox::activated, &q,
          &OptionWindowController::repeatIntervalPopAction);
  connect(ui.okButton, &QPushButton::clicked, &q, &OptionWindowController::OK);
  connect(ui.cancelButton, &QPushButton::clicked, &q, &QDialog::reject);
}

void OptionWindowController::Private::showValues() {
  const QScopedValueRollback rollback(filling, true);
  selectInterval(reminderInterval);
  ui.repeatIntervalPop->setCurrentIndex(presetToShow(reminderInterval));
  for (size_t day = 0; day < dayBoxes.size(); ++day)
    dayBoxes[day]->setChecked(reminderExtra.days[day]);
  const std::array<QTimeEdit*, 2> pickers{ui.beforeTime, ui.afterTime};
  for (size_t i = 0; i < pickers.size(); ++i) {
    const qint64 hour = reminderExtra.times[2 * i];
    const qint64 minute = reminderExtra.times[2 * i + 1];
    const QTime time = timeOfDay(hour, minute);
    if (time.isValid())
      pickers[i]->setTime(time);
    else
      oddTimes[i] = {hour, minute};
  }
  for (size_t i = 0; i < offsetPops.size(); ++i)
    select(*offsetPops[i], reminderOffset[i]);
}

void OptionWindowController::Private::selectInterval(const Interval& values) {
  const QScopedValueRollback rollback(filling, true);
  for (size_t i = 0; i < intervalPops.size(); ++i)
    select(*intervalPops[i], values[i]);
}

Interval OptionWindowController::Private::chosenInterval() const {
  Interval chosen{};
  for (size_t i = 0; i < chosen.size(); ++i)
    chosen[i] = selected(*intervalPops[i]);
  return chosen;
}

Extra OptionWindowController::Private::chosenExtra() const {
  Extra chosen;
  for (size_t day = 0; day < dayBoxes.size(); ++day)
    chosen.days[day] = dayBoxes[day]->isChecked();
  const QTime times[] = {ui.beforeTime->time(), ui.afterTime->time()};
  for (size_t i = 0; i < oddTimes.size(); ++i) {
    const auto time =
        oddTimes[i].value_or(std::array<qint64, 2>{times[i].hour(), times[i].minute()});
    chosen.times[2 * i] = time[0];
    chosen.times[2 * i + 1] = time[1];
  }
  return chosen;
}

Offset OptionWindowController::Private::chosenOffset() const {
  Offset chosen{};
  for (size_t i = 0; i < chosen.size(); ++i)
    chosen[i] = selected(*offsetPops[i]);
  return chosen;
}

// A pop-up that the user changes must not leave a preset standing that is no longer true.
void OptionWindowController::Private::intervalChosen() {
  if (!filling) {
    const auto preset = std::find(std::begin(kPresets), std::end(kPresets), chosenInterval());
    ui.repeatIntervalPop->setCurrentIndex(
        preset == std::end(kPresets) ? kCustomPreset : int(preset - std::begin(kPresets)));
  }
  tell();
}

void OptionWindowController::Private::tell() {
  if (filling)
    return;
  const Extra extra = chosenExtra();
  ui.summaryLabel->setText(optionText(chosenInterval(), extra, chosenOffset()));
  QFont font = ui.timesNote->font();
  font.setBold(!reasonNeverToAlert(extra).isEmpty());
  ui.summaryLabel->setFont(font);
  QStringList odd;
  for (const auto& time : oddTimes) {
    if (time)
      odd += QStringLiteral("%1:%2")
                 .arg((*time)[0], 2, 10, QChar(u'0'))
                 .arg((*time)[1], 2, 10, QChar(u'0'));
  }
  const bool anyTime = extra.times[0] == extra.times[2] && extra.times[1] == extra.times[3];
  if (!odd.isEmpty())
    ui.timesNote->setText(
        QStringLiteral("kept as it is stored: %1").arg(odd.join(QStringLiteral(", "))));
  else
    ui.timesNote->setText(anyTime ? QStringLiteral("the same time twice: at any time") : QString());
}

OptionWindowController::OptionWindowController(QWidget* parent)
    : OptionWindowController(parent, kBlankInterval, kBlankExtra, kBlankOffset) {}

OptionWindowController::OptionWindowController(QWidget* parent, const Interval& reminderInterval,
                                               const Extra& reminderExtra,
                                               const Offset& reminderOffset)
    : QDialog(parent), d(std::make_unique<Private>(*this)) {
  d->reminderInterval = reminderInterval;
  d->reminderExtra = reminderExtra;
  d->reminderOffset = reminderOffset;
  d->windowDidLoad();
  setWindowModality(parent ? Qt::WindowModal : Qt::NonModal);
  d->showValues();
  d->tell();
}

OptionWindowController::~OptionWindowController() = default;

Interval OptionWindowController::reminderInterval() const {
  return d->reminderInterval;
}

Extra OptionWindowController::reminderExtra() const {
  return d->reminderExtra;
}

Offset OptionWindowController::reminderOffset() const {
  return d->reminderOffset;
}

void OptionWindowController::repeatIntervalPopAction(int item) {
  if (item < 0 || size_t(item) >= std::size(kPresets))
    return;
  d->selectInterval(kPresets[item]);
  d->tell();
}

void OptionWindowController::OK() {
  d->reminderInterval = d->chosenInterval();
  d->reminderExtra = d->chosenExtra();
  d->reminderOffset = d->chosenOffset();
  accept();
}

void OptionWindowController::showEvent(QShowEvent* event) {
  if (!event->spontaneous())
    placeOverOwner(*this);
  QDialog::showEvent(event);
}

} // namespace tockwise
