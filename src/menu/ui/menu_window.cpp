#include "menu/ui/menu_window.h"

#include "menu/ui/clock_icon.h"
#include "menu/ui/drop_frame.h"
#include "menu/ui/menu_list_model.h"
#include "menu/ui/menu_row_delegate.h"
#include "menu/ui/native_menu.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QListView>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>

namespace tockwise {

MenuWindow::MenuWindow(MenuSource source, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_live(std::move(source)),
      m_list(new QListView(this)),
      m_model(new MenuListModel(m_live, this)),
      m_delegate(new MenuRowDelegate(this)),
      m_dropFrame(new DropFrame(this)) {
  setObjectName(QStringLiteral("menuWindow"));
  setWindowTitle(QStringLiteral("Tockwise"));
  setWindowIcon(applicationIcon());
  setAttribute(Qt::WA_QuitOnClose, false);
  setAcceptDrops(true);
  resize(440, 620);

  m_list->setObjectName(QStringLiteral("menuList"));
  m_list->setAccessibleName(QStringLiteral("Tockwise menu"));
  m_list->setFrameShape(QFrame::NoFrame);
  m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  m_list->setLayoutMode(QListView::Batched); // ten thousand reminders open as fast as ten
  m_list->setBatchSize(400);
  m_list->setMouseTracking(true);
  m_list->setItemDelegate(m_delegate);
  m_list->setModel(m_model);
  m_list->installEventFilter(this);
  m_list->viewport()->installEventFilter(this);
  setFocusProxy(m_list);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_list);
}

MenuWindow::~MenuWindow() = default;

void MenuWindow::refresh() {
  m_model->refresh();
  if (m_submenu && m_submenu->isVisible())
    m_submenu->refresh();
  m_list->viewport()->update();
}

void MenuWindow::showEvent(QShowEvent* event) {
  refresh();
  m_list->selectionModel()->clear(); // nothing is highlighted until a key or the pointer does
  QWidget::showEvent(event);
  Q_EMIT visibilityChanged(true);
}

void MenuWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  Q_EMIT visibilityChanged(false);
}

void MenuWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (draggedDocuments(*event->mimeData()).isEmpty())
    return;
  event->setDropAction(Qt::CopyAction); // the file stays where it is
  event->accept();
  m_dropFrame->cover();
}

void MenuWindow::dragLeaveEvent(QDragLeaveEvent*) {
  m_dropFrame->hide();
}

void MenuWindow::dropEvent(QDropEvent* event) {
  m_dropFrame->hide();
  const QStringList documents = draggedDocuments(*event->mimeData());
  if (documents.isEmpty())
    return;
  event->setDropAction(Qt::CopyAction);
  event->accept();
  for (const QString& path : documents)
    Q_EMIT documentDropped(path);
}

void MenuWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (m_dropFrame->isVisible())
    m_dropFrame->cover();
}

bool MenuWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_list && event->type() == QEvent::KeyPress)
    return handleKey(static_cast<QKeyEvent*>(event)->key());
  if (watched == m_list && event->type() == QEvent::FocusIn) {
    // The list would make its first item current, and a stray Return would quit the program.
    m_list->viewport()->update();
    return true;
  }
  if (watched == m_list->viewport() && event->type() == QEvent::MouseButtonRelease)
    return handleClick(static_cast<QMouseEvent*>(event)->position().toPoint());
  if (watched == m_list->viewport() && event->type() == QEvent::MouseMove) {
    // One highlight, as in a menu: the pointer takes it along.
    const QModelIndex index =
        m_list->indexAt(static_cast<QMouseEvent*>(event)->position().toPoint());
    if (m_model->flags(index) & Qt::ItemIsEnabled)
      m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  }
  return QWidget::eventFilter(watched, event);
}

bool MenuWindow::handleKey(int key) {
  const QModelIndex current = m_list->currentIndex();
  switch (key) {
  case Qt::Key_Down:
    moveCurrent(1);
    return true;
  case Qt::Key_Up:
    moveCurrent(-1);
    return true;
  case Qt::Key_Right:
  case Qt::Key_Menu:
    openSubmenu(current);
    return true;
  case Qt::Key_Return:
  case Qt::Key_Enter:
  case Qt::Key_Space:
    choose(current);
    return true;
  case Qt::Key_Escape:
    close();
    return true;
  default:
    return false;
  }
}

/// To the next item that can be chosen; lines between are scrolled into view with it.
void MenuWindow::moveCurrent(int step) {
  const int count = m_model->rowCount();
  int row =
      m_list->currentIndex().isValid() ? m_list->currentIndex().row() : (step > 0 ? -1 : count);
  for (row += step; row >= 0 && row < count; row += step) {
    const QModelIndex index = m_model->index(row);
    if (!(m_model->flags(index) & Qt::ItemIsEnabled))
      continue;
    m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    m_list->scrollTo(index);
    return;
  }
  // Beyond the last item there may be lines that only scrolling shows.
  m_list->verticalScrollBar()->triggerAction(step > 0 ? QScrollBar::SliderSingleStepAdd
                                                      : QScrollBar::SliderSingleStepSub);
}

bool MenuWindow::hasOwnAction(const MenuEntry& entry) const {
  return m_live.menu().isActionAvailable(entry);
}

bool MenuWindow::handleClick(QPoint place) {
  const QModelIndex index = m_list->indexAt(place);
  const MenuEntry* entry = m_model->entry(index);
  if (!entry || !(m_model->flags(index) & Qt::ItemIsEnabled))
    return false;
  const QRect row = m_list->visualRect(index);
  const bool onArrow = isRightToLeft() ? place.x() < row.left() + row.height()
                                       : place.x() > row.right() - row.height();
  if (onArrow && StatusMenu::hasSubmenu(*entry))
    openSubmenu(index);
  else
    choose(index);
  return true;
}

void MenuWindow::choose(const QModelIndex& index) {
  const MenuEntry* entry = m_model->entry(index);
  if (!entry)
    return;
  if (hasOwnAction(*entry))
    Q_EMIT activated(m_live.activation(*entry));
  else
    openSubmenu(index);
}

void MenuWindow::openSubmenu(const QModelIndex& index) {
  const MenuEntry* entry = m_model->entry(index);
  if (!entry || !StatusMenu::hasSubmenu(*entry))
    return;
  if (m_submenu)
    m_submenu->deleteLater();
  m_submenu = new NativeMenu(m_live, *entry, this);
  connect(m_submenu, &NativeMenu::activated, this, &MenuWindow::activated);
  const QRect row = m_list->visualRect(index);
  const QPoint corner(isRightToLeft() ? row.left() + 40 : row.right() - 160, row.bottom());
  m_submenu->popup(m_list->viewport()->mapToGlobal(corner));
}

} // namespace tockwise
