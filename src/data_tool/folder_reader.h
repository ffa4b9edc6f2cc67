// The entries of one data folder, in the order of its files.
#pragma once

#include <functional>

#include "data_tool/data_folder.h"
#include "data_tool/entries.h"
#include "data_tool/record_reader.h"
#include "platform/code_page.h"

namespace quorrix {

class FolderReader {
 public:
  // All must outlive this.
  FolderReader(RecordReader& reader, const CodePage& codePage, const DataFolder& folder)
      : reader_(reader), codePage_(codePage), folder_(folder) {}

  [[nodiscard]] const DataFolder& folder() const { return folder_; }

  // Each visits all entries of one file. The entry is valid only during the call. A missing file
  // has no entries. All throw Problem.
  void forEachSite(const std::function<void(const SiteEntry&)>& visit);
  void forEachNotes(const std::function<void(const NotesEntry&)>& visit);
  void forEachLogin(const std::function<void(const LoginEntry&)>& visit);
  void forEachPurchase(const std::function<void(const PurchaseEntry&)>& visit);

  // The sites for whose records `isSought` is true.
  using IsSought = std::function<bool(std::uint64_t number, std::span<const char> record)>;
  void forEachSite(const IsSought& isSought, const std::function<void(const SiteEntry&)>& visit);

 private:
  RecordReader& reader_;
  const CodePage& codePage_;
  const DataFolder& folder_;
};

}  // namespace quorrix
