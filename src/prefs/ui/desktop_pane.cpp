#include "prefs/ui/desktop_pane.h"

#include "prefs/ui/check_sign.h"
#include "prefs/ui/section_label.h"
#include "ui_DesktopPane.h"

#include <QGridLayout>
#include <QShowEvent>
#include <QTimer>

namespace tockwise {
namespace {

QLabel* makeText(const QString& name, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  alignWithWindow(*label);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setAccessibleName(text);
  return label;
}

} // namespace

DesktopPane::DesktopPane(const PreferenceSurroundings& surroundings, QWidget* parent)
    : PreferencePane(surroundings.settings, parent),
      m_desktopChecks(surroundings.desktopChecks),
      m_ui(std::make_unique<Ui::DesktopPane>()) {
  m_ui->setupUi(this);
  connect(m_ui->checkAgainButton, &QPushButton::clicked, this, &DesktopPane::checkAgain);
}

DesktopPane::~DesktopPane() = default;

void DesktopPane::showEvent(QShowEvent* event) {
  PreferencePane::showEvent(event);
  if (!event->spontaneous()) // after it is seen: looking may take a moment
    QTimer::singleShot(0, this, &DesktopPane::checkAgain);
}

void DesktopPane::checkAgain() {
  std::vector<DesktopCheck> found;
  if (m_desktopChecks)
    found = m_desktopChecks();
  if (found == m_shown)
    return; // what is selected and scrolled to stays
  while (QLayoutItem* item = m_ui->checksLayout->takeAt(0)) {
    delete item->widget();
    delete item;
  }
  for (const DesktopCheck& check : found)
    m_ui->checksLayout->addWidget(makeRow(check));
  m_shown = std::move(found);
}

QWidget* DesktopPane::makeRow(const DesktopCheck& check) {
  auto* row = new QWidget;
  row->setObjectName(QStringLiteral("desktopCheck"));
  row->setAccessibleName(check.name);
  auto* grid = new QGridLayout(row);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(10);
  grid->setVerticalSpacing(2);
  grid->setColumnStretch(1, 1);
  grid->addWidget(new CheckSign(check.ok), 0, 0, Qt::AlignTop);
  QLabel* name = makeText(QStringLiteral("checkName"), check.name);
  QFont bold;
  bold.setBold(true);
  name->setFont(bold);
  grid->addWidget(name, 0, 1);
  grid->addWidget(makeText(QStringLiteral("checkDetail"), check.detail), 1, 1);
  if (!check.remedy.isEmpty())
    grid->addWidget(makeText(QStringLiteral("checkRemedy"), check.remedy), 2, 1);
  return row;
}

} // namespace tockwise
