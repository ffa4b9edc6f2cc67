// The commands of quorrix-data. A command only reads the data folder; it never creates, changes
// or locks out anything there.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "data_tool/arguments.h"
#include "data_tool/folder_listing.h"
#include "platform/code_page.h"
#include "platform/file_system.h"

namespace quorrix {

class DataTool {
 public:
  struct Surroundings {
    FileSystem& files;
    const CodePage& codePage;
    Path defaultFolder;                           // of the data
    std::function<void(std::string_view)> write;  // to standard output
    std::function<void(std::string_view)> writeError;
    std::optional<std::size_t> terminalWidth;  // in columns; nullopt if it is not a terminal
  };

  explicit DataTool(Surroundings surroundings);

  // Runs the command line and returns the exit status. Problems and failures are reported on
  // standard error, as "quorrix-data: " and a sentence. Other exceptions of `write` propagate.
  int run(const std::vector<std::string>& arguments);

 private:
  int run(const Arguments& arguments);
  int list(const Arguments& arguments);
  int search(const Arguments& arguments);
  int exportData(const Arguments& arguments);
  int check(const Arguments& arguments);
  int copy(const Arguments& arguments);

  // Lists what is sought in each folder. Complains of a folder that cannot be read to its end.
  // Returns whether anything was listed.
  using SoughtIn = std::function<Sought(const DataFolder& folder)>;
  bool listFolders(const Arguments& arguments, const SoughtIn& soughtIn);

  [[nodiscard]] Path dataFolderOf(const Arguments& arguments) const;
  // Complains of archives that cannot be read, and leaves them out.
  [[nodiscard]] std::vector<DataFolder> foldersOf(const Arguments& arguments);
  [[nodiscard]] ReportProblem complaining();
  void complain(std::string_view sentence);

  Surroundings surroundings_;
  bool isIncomplete_ = false;  // a folder, or a part of one, was left out
};

}  // namespace quorrix
