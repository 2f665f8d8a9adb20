#include "base/main_thread.h"

#include <QCoreApplication>
#include <QThread>

namespace tockwise {

void runOnMainThread(const std::function<void()>& work) {
  QCoreApplication* application = QCoreApplication::instance();
  if (!application || application->thread() == QThread::currentThread()) {
    work();
    return;
  }
  QMetaObject::invokeMethod(application, work, Qt::BlockingQueuedConnection);
}

} // namespace tockwise
