#include "shell/qt_event_pump.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>

namespace quorrix {
namespace {

// Long enough that an idle tracking loop costs next to nothing, short enough
// that a page is filed well within a second of its visit.
constexpr std::chrono::milliseconds kPause{100};

}  // namespace

void QtEventPump::processPending() { QCoreApplication::processEvents(); }

void QtEventPump::pause() {
  QEventLoop loop;
  QTimer::singleShot(kPause, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace quorrix
