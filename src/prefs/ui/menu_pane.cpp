#include "prefs/ui/menu_pane.h"

#include "dates/calendar.h"
#include "menu/reminder_texts.h"
#include "menu/ui/clock_icon.h"
#include "ui_MenuPane.h"

#include <QButtonGroup>

namespace tockwise {
namespace {

constexpr QSize kClockSize{48, 48};
// The style's own mark of a checked tool button is hard to see.
constexpr char16_t kClockStyle[] =
    u"QToolButton { border: 2px solid transparent; border-radius: 8px; padding: 6px; }"
    u"QToolButton:hover { background: palette(midlight); }"
    u"QToolButton:focus { border-color: palette(mid); }"
    u"QToolButton:checked { border-color: palette(highlight); background: palette(base); }"
    u"QToolButton:checked:focus { border-color: palette(window-text); }";
constexpr double kSampleAhead = 2 * 3600; // seconds

} // namespace

MenuPane::MenuPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent),
      m_clock(surroundings.clock),
      m_ui(std::make_unique<Ui::MenuPane>()) {
  m_ui->setupUi(this);
  makeClocks();
  controls().bind(QStringLiteral("useAbsolute"), m_ui->useAbsolute, &PreferenceForm::useAbsolute);
  controls().bind(QStringLiteral("useCountdown"), m_ui->useCountdown,
                  &PreferenceForm::useCountdown);
}

MenuPane::~MenuPane() = default;

void MenuPane::makeClocks() {
  auto* matrix = new QButtonGroup(this);
  matrix->setObjectName(QStringLiteral("optionsMatrix"));
  QToolButton* const buttons[] = {m_ui->clockButton1, m_ui->clockButton2, m_ui->clockButton3,
                                  m_ui->clockButton4};
  int tag = kFirstClock;
  for (QToolButton* button : buttons) {
    button->setIcon(clockIcon(tag));
    button->setIconSize(kClockSize);
    button->setStyleSheet(QString::fromUtf16(kClockStyle));
    matrix->addButton(button, tag++);
  }
  controls().bind(QStringLiteral("clockoption"), matrix, &PreferenceForm::clockoption);
}

void MenuPane::showState() {
  const Calendar& calendar = Calendar::current();
  const Date now = m_clock.now();
  const Date sample = now.plusSeconds(kSampleAhead);
  m_ui->useAbsoluteSample->setText(absoluteDateLine(sample, false, calendar));
  m_ui->useCountdownSample->setText(countdownLine(sample, now, calendar));
}

} // namespace tockwise
