#include "data_tool/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

#include "data_tool/problem.h"
#include "shell/program_version.h"

namespace quorrix {
namespace {

const std::map<std::string, ListFormat> kListFormats{
    {"table", ListFormat::Table}, {"json", ListFormat::Json}, {"csv", ListFormat::Csv}};
const std::map<std::string, ExportFormat> kExportFormats{
    {"json", ExportFormat::Json},
    {"csv", ExportFormat::Csv},
    {"html", ExportFormat::Html},
    {"netscape-bookmarks", ExportFormat::NetscapeBookmarks}};

std::string versionText() {
  return "quorrix-data " + std::to_string(kProgramVersion.major) + "." +
         std::to_string(kProgramVersion.minor) + "." + std::to_string(kProgramVersion.revision);
}

class CommandLine {
 public:
  CommandLine() {
    app_.name("quorrix-data");
    app_.set_version_flag("--version", versionText(), "Print the version and exit");
    app_.set_help_flag("--help", "Print this help and exit");
    app_.require_subcommand(0, 1);
    app_.footer(
        "Exit status: 0 if everything is fine; 1 if check finds an error or search finds\n"
        "no site; 2 if the command line is wrong or something cannot be read or written.");
    addListing(Command::List, "list", "List the recorded sites");
    addSearch();
    addExport();
    addFolderOptions(add(Command::Check, "check", "Check every file, record and date"));
    CLI::App& copy = add(Command::Copy, "copy", "Copy all files, even while Quorrix is running");
    copy.add_option("FOLDER", arguments_.target, "The folder for the copy, new or empty")
        ->required();
    addFolderOptions(copy);
  }

  std::variant<Arguments, Answer> read(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());
    try {
      app_.parse(std::move(arguments));
    } catch (const CLI::ParseError& reason) {
      return answerTo(reason);
    }
    for (const auto& [command, subcommand] : subcommands_) {
      if (!subcommand->parsed()) continue;
      arguments_.command = command;
      return finished();
    }
    return usage("name a command: list, search, export, check or copy");
  }

 private:
  CLI::App& add(Command command, const std::string& name, const std::string& description) {
    CLI::App* const subcommand = app_.add_subcommand(name, description);
    subcommands_[command] = subcommand;
    return *subcommand;
  }

  void addFolderOptions(CLI::App& subcommand) {
    subcommand
        .add_option("--data", arguments_.data,
                    "The folder with the data files; by default your Quorrix data folder")
        ->type_name("FOLDER");
    subcommand.add_flag("--no-archives", leavesOutArchives_, "Leave out the archives");
  }

  CLI::App& addListing(Command command, const std::string& name, const std::string& description) {
    CLI::App& subcommand = add(command, name, description);
    subcommand.add_option("--format", listFormat_, "table, json or csv; by default table")
        ->check(CLI::IsMember(namesOf(kListFormats)).description(""))
        ->type_name("FORMAT");
    subcommand
        .add_option("--with", with_,
                    "Also show these, separated by commas: notes, purchases, logins")
        ->type_name("KINDS");
    addPasswords(subcommand);
    addFolderOptions(subcommand);
    return subcommand;
  }

  void addSearch() {
    CLI::App& search = addListing(Command::Search, "search",
                                  "List the sites with TEXT in their address, whatever its case");
    search.add_option("TEXT", arguments_.text, "What the address contains");
    search
        .add_option("--after", arguments_.after,
                    "Only sites visited on this day or later, such as 11/21/2026 (month first)")
        ->type_name("DATE");
  }

  void addExport() {
    CLI::App& exporting = add(Command::Export, "export", "Write all data as one file");
    exporting.add_option("--format", exportFormat_, "json, csv, html or netscape-bookmarks")
        ->check(CLI::IsMember(namesOf(kExportFormats)).description(""))
        ->type_name("FORMAT")
        ->required();
    exporting
        .add_option("--output", arguments_.output, "The file to write; by default standard output")
        ->type_name("FILE");
    addPasswords(exporting);
    addFolderOptions(exporting);
  }

  void addPasswords(CLI::App& subcommand) {
    subcommand.add_flag("--show-passwords", showsPasswords_, "Include passwords, in clear text");
  }

  template <typename Value>
  static std::vector<std::string> namesOf(const std::map<std::string, Value>& formats) {
    std::vector<std::string> names;
    names.reserve(formats.size());
    for (const auto& [name, format] : formats) names.push_back(name);
    return names;
  }

  Answer answerTo(const CLI::ParseError& reason) const {
    if (reason.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      std::ostringstream output;
      std::ostringstream error;
      app_.exit(reason, output, error);
      return {.output = output.str(), .error = {}, .status = kStatusFine};
    }
    return usage(reason.what());
  }

  static Answer usage(const std::string& problem) {
    return {.output = {}, .error = problem, .status = kStatusOfProblem};
  }

  // False for any other word.
  [[nodiscard]] bool readKinds() {
    DetailChoice& details = arguments_.listing.details;
    std::istringstream kinds(with_);
    for (std::string kind; std::getline(kinds, kind, ',');) {
      if (kind == "notes") {
        details.notes = true;
      } else if (kind == "purchases") {
        details.purchases = true;
      } else if (kind == "logins") {
        details.logins = true;
      } else {
        return false;
      }
    }
    return true;
  }

  std::variant<Arguments, Answer> finished() {
    if (!readKinds()) return usage("--with: name notes, purchases and logins, separated by commas");
    const bool isPathEmpty = (arguments_.command == Command::Copy && arguments_.target.empty()) ||
                             arguments_.output == "" || arguments_.data == "";
    if (isPathEmpty) return usage("the name of a file or folder is empty");
    arguments_.archives = leavesOutArchives_ ? Archives::LeaveOut : Archives::Include;
    arguments_.listing.format = kListFormats.at(listFormat_);
    if (showsPasswords_) {
      arguments_.listing.details.logins = true;
      arguments_.listing.details.passwords = true;
    }
    arguments_.exportFormat = kExportFormats.at(exportFormat_);
    arguments_.passwords = showsPasswords_ ? Passwords::Show : Passwords::LeaveOut;
    if (arguments_.command == Command::Search && !arguments_.text && !arguments_.after) {
      return usage("search needs TEXT, --after or both");
    }
    return arguments_;
  }

  CLI::App app_{"Reads, checks and copies what Quorrix has recorded. It changes nothing."};
  std::map<Command, CLI::App*> subcommands_;
  Arguments arguments_;
  bool leavesOutArchives_ = false;
  bool showsPasswords_ = false;
  std::string listFormat_ = "table";
  std::string exportFormat_ = "json";
  std::string with_;
};

}  // namespace

std::variant<Arguments, Answer> readArguments(std::vector<std::string> arguments) {
  return CommandLine().read(std::move(arguments));
}

}  // namespace quorrix
