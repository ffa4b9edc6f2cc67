// The command line of quorrix-data.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "data_tool/data_folder.h"
#include "data_tool/export.h"
#include "data_tool/listing.h"

namespace quorrix {

enum class Command { List, Search, Export, Check, Copy };

// Texts are as they were given, in UTF-8.
struct Arguments {
  Command command = Command::List;
  std::optional<std::string> data;  // nullopt for the default folder
  Archives archives = Archives::Include;
  ListingChoice listing;             // list and search
  std::optional<std::string> text;   // search
  std::optional<std::string> after;  // search
  ExportFormat exportFormat = ExportFormat::Json;
  Passwords passwords = Passwords::LeaveOut;  // export
  std::optional<std::string> output;          // export; nullopt for standard output
  std::string target;                         // copy
};

// What to print instead of running a command.
struct Answer {
  std::string output;
  std::string error;  // what is wrong with the command line, or empty
  int status;
};

[[nodiscard]] std::variant<Arguments, Answer> readArguments(std::vector<std::string> arguments);

}  // namespace quorrix
