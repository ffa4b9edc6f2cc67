// Every command of the user that calls files: how it is run through the window, which
// calls it makes, and what happens when one of them fails.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "reliability/told_sentences.h"
#include "reliability/user.h"

namespace quorrix::test {

// The bytes of each file, by its path in the program's folder. A path that ends in "/" is
// a folder.
using Files = std::map<std::string, std::string>;

// The part of a command whose calls fail, such as the press of OK in a dialog that was
// opened before. A command calls end() as soon as the part is over.
class SweptStep {
 public:
  SweptStep() = default;
  virtual ~SweptStep() = default;
  SweptStep(const SweptStep&) = delete;
  SweptStep& operator=(const SweptStep&) = delete;

  // `working` is the window that shows the hourglass.
  virtual void begin(QWidget& working) = 0;
  virtual void end() = 0;

  // Whether the part failed and is to be done once more in the same dialog.
  [[nodiscard]] virtual bool isToBeRepeated() = 0;
};

// What the user does after a failure so that the same command can succeed.
enum class Remedy {
  None,
  DeleteTheArchive,  // an archive that is not whole cannot be overwritten
  LoadTheArchive,    // the sites are in it already, and no longer in the working folder
  StartAgain,        // creates missing files; a site must then be visited, to be deleted
};

// Consecutive calls whose failures have the same effect.
struct Stretch {
  int calls;
  const Sentences* told;  // null: the failure is passed over, and the command succeeds
  const char* open = "";  // the dialogs that are open after it
  Remedy remedy = Remedy::None;
};

struct SweptCommand {
  const char* name;
  Files files;
  std::function<void(User&, SweptStep&)> run;
  std::vector<Stretch> stretches;
  const char* open = "";  // the dialogs that are open when it has succeeded
  bool isStartUp = false;
};

[[nodiscard]] std::vector<SweptCommand> sweptCommands();

// Chooses the command, opens the folder Archives/May in the dialog, and presses OK.
void runArchiveCommand(User& user, const char* entry);

}  // namespace quorrix::test
