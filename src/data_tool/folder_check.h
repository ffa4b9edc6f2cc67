// Checks all files of a data folder. Changes nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "data_tool/data_folder.h"
#include "data_tool/finding.h"
#include "data_tool/problem.h"
#include "data_tool/record_reader.h"

namespace quorrix {

class FolderCheck {
 public:
  // `finding` receives each finding with the path of its file, in the order of the files and of
  // their bytes; `problem` receives a file that cannot be opened.
  struct Reports {
    std::function<void(const Path& file, const Finding& finding)> finding;
    std::function<void(const Problem& problem)> problem;
  };

  FolderCheck(FileSystem& files, RecordReader& reader, Reports reports);

  void check(const DataFolder& folder);

  // Of all folders so far.
  [[nodiscard]] std::uint64_t filesChecked() const { return filesChecked_; }
  [[nodiscard]] std::uint64_t recordsChecked() const { return recordsChecked_; }

 private:
  struct RecordFormat;

  void checkRecordFile(const Path& path, const RecordFormat& format);
  void checkRecords(const Path& path, const RecordFormat& format, std::uint64_t length);
  void checkLoadFile(const DataFolder& folder);
  void remarkUnfinishedCopies(const Path& folder);
  void error(const Path& file, std::optional<std::uint64_t> record,
             std::optional<std::uint64_t> byte, const std::string& what);
  void remark(const Path& file, std::optional<std::uint64_t> record,
              std::optional<std::uint64_t> byte, const std::string& what);

  FileSystem& files_;
  RecordReader& reader_;
  Reports reports_;
  std::uint64_t filesChecked_ = 0;
  std::uint64_t recordsChecked_ = 0;
};

}  // namespace quorrix
