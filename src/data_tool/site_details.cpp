#include "data_tool/site_details.h"

#include <utility>

#include "data_tool/problem.h"
#include "datafiles/working_folder.h"
#include "records/record_file.h"

namespace quorrix {
namespace {

// Keeps a damaged file from filling the memory.
class RecordLimit {
 public:
  explicit RecordLimit(Path file) : file_(std::move(file)) {}

  void count() {
    if (++records_ > kLastRecordNumber) {
      throw Problem::ofFile(file_, "The file has more than 32,767 records.");
    }
  }

 private:
  Path file_;
  int records_ = 0;
};

}  // namespace

SiteDetailIndex::SiteDetailIndex(FolderReader& folder, const DetailChoice& choice) {
  if (choice.notes) {
    RecordLimit limit(folder.folder().path / data_file::kURLNotes);
    folder.forEachNotes([&](const NotesEntry& entry) {
      limit.count();
      details_[entry.address].notes.push_back(entry.text);
    });
  }
  if (choice.logins) {
    RecordLimit limit(folder.folder().path / data_file::kUserIDPassword);
    folder.forEachLogin([&](const LoginEntry& entry) {
      limit.count();
      details_[entry.address].logins.push_back(entry);
    });
  }
  if (choice.purchases) {
    RecordLimit limit(folder.folder().path / data_file::kPurchases);
    folder.forEachPurchase([&](const PurchaseEntry& entry) {
      limit.count();
      details_[entry.address].purchases.push_back(entry);
    });
  }
}

const SiteDetails& SiteDetailIndex::of(std::string_view address) const {
  static const SiteDetails kNone;
  const auto found = details_.find(address);
  return found == details_.end() ? kNone : found->second;
}

}  // namespace quorrix
