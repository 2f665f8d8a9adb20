#include "richtext/view_menu.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QMenu>
#include <QTextBlock>
#include <QTextEdit>

namespace tockwise {
namespace {

QString viewText(const char* text) {
  return QCoreApplication::translate("TextView", text);
}

void setDirection(QTextEdit& view, Qt::LayoutDirection direction) {
  QTextBlockFormat format;
  format.setLayoutDirection(direction);
  view.textCursor().mergeBlockFormat(format);
}

void addDirections(QMenu& menu, QTextEdit& view) {
  QMenu* directions = menu.addMenu(viewText("Writing Direction"));
  directions->setObjectName(QStringLiteral("writingDirectionMenu"));
  auto* group = new QActionGroup(directions);
  const auto now = view.textCursor().blockFormat().layoutDirection();
  const std::pair<Qt::LayoutDirection, const char*> choices[] = {
      {Qt::LayoutDirectionAuto, "By the Text"},
      {Qt::LeftToRight, "Left to Right"},
      {Qt::RightToLeft, "Right to Left"}};
  for (const auto& [direction, title] : choices) {
    QAction* action = directions->addAction(viewText(title));
    action->setCheckable(true);
    action->setChecked(direction == now);
    group->addAction(action);
    QObject::connect(action, &QAction::triggered, &view,
                     [&view, direction = direction] { setDirection(view, direction); });
  }
}

} // namespace

void addToMenu(QMenu& menu, QTextEdit& view, const QUrl& link,
               const std::function<void()>& openLink) {
  if (link.isValid()) {
    auto* open = new QAction(viewText("Open Link"), &menu);
    open->setObjectName(QStringLiteral("openLinkAction"));
    QObject::connect(open, &QAction::triggered, &view, openLink);
    QAction* first = menu.actions().value(0);
    menu.insertAction(first, open);
    menu.insertSeparator(first);
  }
  if (view.isReadOnly())
    return;
  menu.addSeparator();
  addDirections(menu, view);
}

} // namespace tockwise
