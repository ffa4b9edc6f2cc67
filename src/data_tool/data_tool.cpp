#include "data_tool/data_tool.h"

#include <algorithm>
#include <utility>

#include "data_tool/buffered_output.h"
#include "data_tool/check_report.h"
#include "data_tool/file_output.h"
#include "data_tool/folder_check.h"
#include "data_tool/folder_copy.h"
#include "data_tool/folder_reader.h"
#include "data_tool/outside.h"
#include "data_tool/problem.h"
#include "data_tool/shown_text.h"
#include "datafiles/working_folder.h"
#include "platform/command_line.h"
#include "platform/failure.h"
#include "search/site_matcher.h"
#include "shell/failure_messages.h"

namespace quorrix {
namespace {

constexpr std::string_view kArchiveColumn = "ARCHIVE";
constexpr std::size_t kWidestArchive = 24;  // in columns of a terminal
constexpr const char* kNoDate = "This is not a date. Write it as 11/21/2026, month first.";
constexpr const char* kSearchEnds =
    "The date cannot be read, so the search of this folder ends here.";
constexpr const char* kHint = "Try 'quorrix-data --help' for more information.";

TableFrame frameOf(const std::vector<DataFolder>& folders, std::optional<std::size_t> width) {
  TableFrame frame{.archiveColumns = 0, .width = width};
  if (folders.size() == 1) return frame;
  frame.archiveColumns = kArchiveColumn.size();
  for (const DataFolder& folder : folders) {
    frame.archiveColumns = std::max(frame.archiveColumns, columnsOf(escapedText(folder.archive)));
  }
  if (width) frame.archiveColumns = std::min(frame.archiveColumns, kWidestArchive);
  return frame;
}

SearchCriteria criteriaOf(const Arguments& arguments) {
  const auto type = !arguments.after ? UserSearchType::Url
                    : arguments.text ? UserSearchType::Both
                                     : UserSearchType::Date;
  return {.userSearchType = type,
          .searchText = arguments.text.value_or(""),
          .searchDate = arguments.after.value_or("")};
}

void requireDate(const std::string& text) {
  try {
    static_cast<void>(readCalendarDate(text));
  } catch (const Failure&) {
    throw Problem(text + ": " + kNoDate);
  }
}

}  // namespace

DataTool::DataTool(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

int DataTool::run(const std::vector<std::string>& arguments) {
  const auto read = readArguments(arguments);
  try {
    if (const auto* const answer = std::get_if<Answer>(&read)) {
      surroundings_.write(answer->output);
      if (!answer->error.empty()) {
        complain(answer->error);
        surroundings_.writeError(std::string(kHint) + "\n");
      }
      return answer->status;
    }
    const int status = run(std::get<Arguments>(read));
    return isIncomplete_ ? kStatusOfProblem : status;
  } catch (const Problem& problem) {
    complain(problem.what());
  } catch (const Failure& reason) {
    complain(failureMessage(FailureFamily::OtherCommand, reason.number()));
  } catch (const std::bad_alloc&) {
    complain(failureMessage(FailureFamily::OtherCommand, failure::kOutOfMemory));
  }
  return kStatusOfProblem;
}

int DataTool::run(const Arguments& arguments) {
  switch (arguments.command) {
    case Command::List:
      return list(arguments);
    case Command::Search:
      return search(arguments);
    case Command::Export:
      return exportData(arguments);
    case Command::Check:
      return check(arguments);
    case Command::Copy:
      return copy(arguments);
  }
  return kStatusOfProblem;
}

int DataTool::list(const Arguments& arguments) {
  listFolders(arguments, [](const DataFolder&) -> Sought {
    return {.isRecordSought = [](std::uint64_t, std::span<const char>) { return true; },
            .isAddressSought = [](const std::string&) { return true; }};
  });
  return kStatusFine;
}

int DataTool::search(const Arguments& arguments) {
  const SearchCriteria criteria = criteriaOf(arguments);
  if (arguments.after) requireDate(*arguments.after);
  SiteMatcher matcher(surroundings_.codePage, criteria);
  const bool isFound = listFolders(arguments, [&](const DataFolder& folder) -> Sought {
    const auto isRecordSought = [&](std::uint64_t number, std::span<const char> record) {
      try {
        return matcher.matches(record);
      } catch (const Failure&) {
        throw Problem::ofFile(folder.path / data_file::kNodes,
                              "record " + std::to_string(number) + ": " + kSearchEnds);
      }
    };
    const auto isAddressSought = [&](const std::string& address) {
      const auto text = surroundings_.codePage.exactFromUtf8(address);
      return text && matcher.matchesUnvisited(*text);
    };
    return {.isRecordSought = isRecordSought, .isAddressSought = isAddressSought};
  });
  return isFound ? kStatusFine : kStatusOfFindings;
}

bool DataTool::listFolders(const Arguments& arguments, const SoughtIn& soughtIn) {
  const std::vector<DataFolder> folders = foldersOf(arguments);
  RecordReader reader(surroundings_.files);
  BufferedOutput output(surroundings_.write);
  const auto listing =
      makeListing(arguments.listing, frameOf(folders, surroundings_.terminalWidth), output);
  const ReportProblem report = complaining();
  bool isFound = false;
  listing->begin();
  for (const DataFolder& folder : folders) {
    try {
      FolderReader entries(reader, surroundings_.codePage, folder);
      isFound |= listFolder(entries, arguments.listing.details, soughtIn(folder), *listing);
    } catch (const Problem& problem) {
      output.flush();  // what was found before comes first on a terminal
      report(problem);
    }
  }
  listing->end();
  output.flush();
  return isFound;
}

int DataTool::exportData(const Arguments& arguments) {
  const std::vector<DataFolder> folders = foldersOf(arguments);
  const auto writeTo = [&](Output& output, const DeferredSignals* signals) {
    RecordReader reader(surroundings_.files, LockTurns({}, signals));
    exportFolders(folders, reader, surroundings_.codePage, arguments.exportFormat,
                  arguments.passwords, output);
    // Sites that were archived in between would be missing in both places.
    const auto foldersNow = readableFoldersOf(surroundings_.files, folders.front().path,
                                              arguments.archives, [](const Problem&) {});
    if (foldersNow != folders) {
      throw Problem::ofFile(folders.front().path, "The archives changed. Try again.");
    }
  };
  if (arguments.output) {
    const Path target = pathOfArgument(*arguments.output);
    requireOutside(surroundings_.files, target, folders.front().path);
    writeFile(surroundings_.files, target,
              [&](Output& output, const DeferredSignals& signals) { writeTo(output, &signals); });
    return kStatusFine;
  }
  BufferedOutput output(surroundings_.write);
  writeTo(output, nullptr);
  output.flush();
  return kStatusFine;
}

int DataTool::check(const Arguments& arguments) {
  BufferedOutput output(surroundings_.write);
  CheckReport report(output);
  RecordReader reader(surroundings_.files);
  FolderCheck folderCheck(
      surroundings_.files, reader,
      {.finding = [&](const Path& file, const Finding& finding) { report.add(file, finding); },
       .problem = [&](const Problem& problem) { report.add(problem); }});
  const auto folders =
      dataFoldersOf(surroundings_.files, dataFolderOf(arguments), arguments.archives,
                    [&](const Problem& problem) { report.add(problem); });
  for (const DataFolder& folder : folders) folderCheck.check(folder);
  report.end(folderCheck.filesChecked(), folderCheck.recordsChecked());
  output.flush();
  return report.errors() == 0 ? kStatusFine : kStatusOfFindings;
}

int DataTool::copy(const Arguments& arguments) {
  copyFolders(surroundings_.files, dataFolderOf(arguments), arguments.archives,
              pathOfArgument(arguments.target), complaining());
  return kStatusFine;
}

std::vector<DataFolder> DataTool::foldersOf(const Arguments& arguments) {
  return readableFoldersOf(surroundings_.files, dataFolderOf(arguments), arguments.archives,
                           complaining());
}

ReportProblem DataTool::complaining() {
  return [this](const Problem& problem) {
    complain(problem.what());
    isIncomplete_ = true;
  };
}

Path DataTool::dataFolderOf(const Arguments& arguments) const {
  return arguments.data ? pathOfArgument(*arguments.data) : surroundings_.defaultFolder;
}

void DataTool::complain(std::string_view sentence) {
  surroundings_.writeError("quorrix-data: " + escapedText(sentence) + "\n");
}

}  // namespace quorrix
