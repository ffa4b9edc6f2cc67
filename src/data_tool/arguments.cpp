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

// "json, csv or html"
std::string alternatives(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " or " : ", ";
    text += names[i];
  }
  return text;
}

std::string inQuotes(const std::string& text) { return '"' + text + '"'; }

template <typename Format>
using Formats = std::vector<std::pair<std::string, Format>>;

const Formats<ListFormat> kListFormats{
    {"table", ListFormat::Table}, {"json", ListFormat::Json}, {"csv", ListFormat::Csv}};
const Formats<ExportFormat> kExportFormats{{"json", ExportFormat::Json},
                                           {"csv", ExportFormat::Csv},
                                           {"html", ExportFormat::Html},
                                           {"netscape-bookmarks", ExportFormat::NetscapeBookmarks}};

template <typename Format>
std::string namesOf(const Formats<Format>& formats) {
  std::vector<std::string> names;
  names.reserve(formats.size());
  for (const auto& [name, format] : formats) names.push_back(name);
  return alternatives(names);
}

// A sentence for standard error.
struct UsageProblem {
  std::string sentence;
};

template <typename Format>
Format formatOf(const Formats<Format>& formats, const std::string& name) {
  for (const auto& [known, format] : formats) {
    if (known == name) return format;
  }
  throw UsageProblem{"There is no format " + inQuotes(name) + ". Name " + namesOf(formats) + "."};
}

std::string versionText() {
  return "quorrix-data " + std::to_string(kProgramVersion.major) + "." +
         std::to_string(kProgramVersion.minor) + "." + std::to_string(kProgramVersion.revision);
}

class CommandLine {
 public:
  CommandLine() {
    app_.name("quorrix-data");
    app_.get_formatter()->label("OPTIONS", "OPTION...");
    app_.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app_.get_formatter()->label("Positionals", "Arguments");
    app_.get_formatter()->label("REQUIRED", "");
    // If an option is given twice, the last one counts.
    app_.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app_.allow_extras();
    app_.set_version_flag("--version", versionText(), "Print the version and exit");
    app_.set_help_flag("-h,--help", "Print this help and exit");
    app_.require_subcommand(0, 1);
    app_.footer(
        "Exit status: 0 if everything is fine; 1 if check finds an error or a file that\n"
        "cannot be read, or if search finds no site; 2 if the command line is wrong, or if\n"
        "another command cannot read or write something.");
    addListing(Command::List, "list", "List the recorded sites");
    addSearch();
    addExport();
    addFolderOptions(add(Command::Check, "check", "Check every file, record and date"));
    CLI::App& copy = add(Command::Copy, "copy", "Copy all files, even while Quorrix is running");
    copy.add_option("FOLDER", arguments_.target, "The folder for the copy, new or empty")
        ->required()
        ->type_name("");
    addFolderOptions(copy);
  }

  std::variant<Arguments, Answer> read(std::vector<std::string> arguments) {
    try {
      requireValues(arguments);
      std::reverse(arguments.begin(), arguments.end());
      app_.parse(std::move(arguments));
      return finished();
    } catch (const CLI::ParseError& reason) {
      return answerTo(reason);
    } catch (const UsageProblem& problem) {
      return usage(problem.sentence);
    }
  }

 private:
  CLI::App& add(Command command, const std::string& name, const std::string& description) {
    CLI::App* const subcommand = app_.add_subcommand(name, description);
    subcommand->group("Commands");
    subcommand->allow_extras();
    subcommands_[command] = subcommand;
    return *subcommand;
  }

  void addFolderOptions(CLI::App& subcommand) {
    subcommand
        .add_option("--data", arguments_.data,
                    "The folder with the data files; by default your Quorrix data folder")
        ->type_name("FOLDER");
    subcommand.add_flag("--no-archives", leavesOutArchives_, "Leave out the archives")
        ->disable_flag_override();
  }

  CLI::App& addListing(Command command, const std::string& name, const std::string& description) {
    CLI::App& subcommand = add(command, name, description);
    subcommand.add_option("--format", listFormat_, namesOf(kListFormats) + "; by default table")
        ->type_name("FORMAT");
    subcommand
        .add_option("--with", with_,
                    "Also show these, separated by commas: notes, purchases, logins. "
                    "Addresses without a visit are included.")
        ->type_name("KINDS");
    addPasswords(subcommand);
    addFolderOptions(subcommand);
    return subcommand;
  }

  void addSearch() {
    CLI::App& search = addListing(Command::Search, "search",
                                  "List the sites whose address contains TEXT, ignoring case");
    search.add_option("TEXT", arguments_.text, "What the address contains")->type_name("");
    search
        .add_option("--after", arguments_.after,
                    "Only sites visited on this day or later, such as 11/21/2026 (month first)")
        ->type_name("DATE");
  }

  void addExport() {
    CLI::App& exporting = add(Command::Export, "export", "Write all data as one file");
    exporting.add_option("--format", exportFormat_, namesOf(kExportFormats))
        ->type_name("FORMAT")
        ->required();
    exporting
        .add_option("--output", arguments_.output, "The file to write; by default standard output")
        ->type_name("FILE");
    addPasswords(exporting);
    addFolderOptions(exporting);
  }

  void addPasswords(CLI::App& subcommand) {
    subcommand.add_flag("--show-passwords", showsPasswords_, "Include passwords, in clear text")
        ->disable_flag_override();
  }

  Answer answerTo(const CLI::ParseError& reason) {
    if (reason.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      std::ostringstream output;
      std::ostringstream error;
      app_.exit(reason, output, error);
      return {.output = output.str(), .error = {}, .status = kStatusFine};
    }
    return usage(sentenceFor(reason));
  }

  std::string sentenceFor(const CLI::ParseError& reason) const {
    if (dynamic_cast<const CLI::RequiredError*>(&reason) != nullptr) {
      if (parsedCommand() == subcommands_.at(Command::Copy)) return "Name the folder for the copy.";
      return "Name a format: --format " + namesOf(kExportFormats) + ".";
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&reason) == nullptr) {
      return "The command line cannot be understood.";
    }
    // CLI11's own text begins with the option's name, but with a flag's name without "--".
    const std::string text = reason.what();
    const std::string name = text.substr(0, text.find_first_of(": "));
    if (name.starts_with('-')) return inQuotes(name) + " needs a value.";
    return inQuotes("--" + name) + " takes no value.";
  }

  // Null without a command.
  CLI::App* parsedCommand() const {
    for (const auto& [command, subcommand] : subcommands_) {
      if (subcommand->parsed()) return subcommand;
    }
    return nullptr;
  }

  // CLI11 would take the word after "--option=" as the value.
  void requireValues(const std::vector<std::string>& arguments) const {
    for (const std::string& word : arguments) {
      if (word == "--") return;
      if (!word.starts_with("--") || !word.ends_with('=')) continue;
      const std::string name = word.substr(0, word.size() - 1);
      if (takesValue(name)) throw UsageProblem{inQuotes(name) + " needs a value."};
    }
  }

  // Whether an option of any command has this name and a value.
  bool takesValue(const std::string& name) const {
    return std::any_of(subcommands_.begin(), subcommands_.end(), [&](const auto& entry) {
      const CLI::Option* const option = entry.second->get_option_no_throw(name);
      return option != nullptr && option->get_items_expected_min() > 0;
    });
  }

  static Answer usage(const std::string& problem) {
    return {.output = {}, .error = problem, .status = kStatusOfProblem};
  }

  // What CLI11 could not assign, without the "--" after which everything is a word.
  static std::vector<std::string> othersOf(const CLI::App& app) {
    std::vector<std::string> others = app.remaining();
    std::erase(others, "--");
    return others;
  }

  void requireNothingElse(const CLI::App* command) const {
    const auto isOption = [](const std::string& word) { return word.starts_with('-'); };
    const std::vector<std::string> before = othersOf(app_);
    if (!before.empty() && isOption(before.front())) {
      throw UsageProblem{"Unknown option " + inQuotes(before.front()) +
                         ". Options follow the command."};
    }
    if (!before.empty())
      throw UsageProblem{"There is no command " + inQuotes(before.front()) + "."};
    if (command == nullptr) return;
    const std::vector<std::string> others = othersOf(*command);
    if (others.empty()) return;
    const std::string& name = command->get_name();
    const auto option = std::find_if(others.begin(), others.end(), isOption);
    if (option != others.end()) {
      throw UsageProblem{inQuotes(*option) + " is not an option of " + name + "."};
    }
    throw UsageProblem{name + " does not accept " + inQuotes(others.front()) + "."};
  }

  void readKinds() {
    if (!with_) return;
    DetailChoice& details = arguments_.listing.details;
    std::istringstream kinds(*with_ + ",");  // so that nothing after the last comma is a kind, too
    for (std::string kind; std::getline(kinds, kind, ',');) {
      if (kind == "notes") {
        details.notes = true;
      } else if (kind == "purchases") {
        details.purchases = true;
      } else if (kind == "logins") {
        details.logins = true;
      } else {
        throw UsageProblem{inQuotes(kind) +
                           " is not a kind for --with. Use notes, purchases or logins, "
                           "separated by commas."};
      }
    }
  }

  Arguments finished() {
    const CLI::App* const command = parsedCommand();
    requireNothingElse(command);
    if (!command) throw UsageProblem{"Name a command: list, search, export, check or copy."};
    for (const auto& [value, subcommand] : subcommands_) {
      if (subcommand == command) arguments_.command = value;
    }
    if (with_ == "") throw UsageProblem{inQuotes("--with") + " needs a value."};
    if (arguments_.after == "") throw UsageProblem{inQuotes("--after") + " needs a value."};
    readKinds();
    const bool isPathEmpty = (arguments_.command == Command::Copy && arguments_.target.empty()) ||
                             arguments_.output == "" || arguments_.data == "";
    if (isPathEmpty) throw UsageProblem{"The name of a file or folder is empty."};
    arguments_.archives = leavesOutArchives_ ? Archives::LeaveOut : Archives::Include;
    arguments_.listing.format = formatOf(kListFormats, listFormat_);
    if (showsPasswords_) {
      arguments_.listing.details.logins = true;
      arguments_.listing.details.passwords = true;
    }
    arguments_.exportFormat = formatOf(kExportFormats, exportFormat_);
    const bool isOfBookmarks = arguments_.command == Command::Export &&
                               arguments_.exportFormat == ExportFormat::NetscapeBookmarks;
    if (showsPasswords_ && isOfBookmarks) {
      throw UsageProblem{"Bookmarks contain no passwords. Leave out --show-passwords."};
    }
    arguments_.passwords = showsPasswords_ ? Passwords::Show : Passwords::LeaveOut;
    if (arguments_.command == Command::Search && !arguments_.text && !arguments_.after) {
      throw UsageProblem{"search needs TEXT, --after or both."};
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
  std::optional<std::string> with_;
};

}  // namespace

std::variant<Arguments, Answer> readArguments(std::vector<std::string> arguments) {
  return CommandLine().read(std::move(arguments));
}

}  // namespace quorrix
