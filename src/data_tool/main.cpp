// quorrix-data: reads, checks and copies what Quorrix has recorded.

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>

#include "data_tool/data_tool.h"
#include "data_tool/problem.h"
#include "platform/code_page.h"
#include "platform/command_line.h"
#include "platform/console.h"
#include "platform/deferred_signals.h"
#include "platform/failure.h"
#include "platform/privacy.h"
#include "platform/program_folder.h"
#include "platform/real_file_system.h"
#include "platform/system_code_page.h"

namespace {

// Quorrix waits for 400 ms for a file. While this program waits for one file of several, it must
// not keep the others from Quorrix for that long.
constexpr std::chrono::milliseconds kLockPatience{50};

constexpr const char* kCannotBegin =
    "The program's folder or the character set of your language is missing.";

// The XDG data folder. The Debian package creates its folders there.
quorrix::Path userFolder() {
  const char* const data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && data[0] == '/') return data;
  const char* const home = std::getenv("HOME");
  return quorrix::Path(home != nullptr ? home : "/") / ".local" / "share";
}

int run(int argc, char* argv[]) {
  quorrix::RealFileSystem files(kLockPatience);
  const quorrix::CodePage codePage(quorrix::systemCodePage());
  quorrix::DataTool tool(
      {.files = files,
       .codePage = codePage,
       .defaultFolder = quorrix::defaultDataFolder(files, quorrix::programFolder(), userFolder()),
       .write = quorrix::Console::write,
       .writeError = quorrix::Console::writeError,
       .terminalWidth = quorrix::Console::terminalWidth()});
  return tool.run(quorrix::commandLineArguments(argc, argv));
}

}  // namespace

int main(int argc, char* argv[]) {
  quorrix::forbidMemoryDumps();
  std::setlocale(LC_CTYPE, "");
  const quorrix::Console console;
  try {
    return run(argc, argv);
  } catch (const quorrix::ReaderLeft&) {
    return quorrix::Console::endAfterReaderLeft();
  } catch (const quorrix::EndRequested&) {
    // The signal has ended the process by now, unless someone handles it.
    return quorrix::kStatusOfProblem;
  } catch (const std::exception&) {
    quorrix::Console::writeError("quorrix-data: " + std::string(kCannotBegin) + "\n");
    return quorrix::kStatusOfProblem;
  }
}
