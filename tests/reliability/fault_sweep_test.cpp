// Every call on files of every command of the user fails once with every number.
#include <gtest/gtest.h>

#include <chrono>
#include <iostream>

#include "reliability/fault_sweep.h"

namespace quorrix {
namespace {

TEST(FaultSweep, ReportsOrPassesOverEveryFailureAsDescribedAndGoesOn) {
  // The offscreen platform warns of everything that it does not show.
  const QtMessageHandler before =
      qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  const auto start = std::chrono::steady_clock::now();
  const std::vector<test::SweptCommand> commands = test::sweptCommands();
  int points = 0;
  for (const test::SweptCommand& command : commands) {
    points += test::FaultSweep(command).run();
  }
  qInstallMessageHandler(before);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::cout << "measured: " << points << " calls of " << commands.size()
            << " commands failed in turn, in " << taken.count() << " s\n";
}

}  // namespace
}  // namespace quorrix
