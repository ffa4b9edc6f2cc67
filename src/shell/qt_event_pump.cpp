#include "shell/qt_event_pump.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

namespace quorrix {

void QtEventPump::processPending() { QCoreApplication::processEvents(); }

void QtEventPump::pause(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace quorrix
