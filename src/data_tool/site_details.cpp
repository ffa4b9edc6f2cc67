#include "data_tool/site_details.h"

namespace quorrix {

SiteDetailIndex::SiteDetailIndex(FolderReader& folder, const DetailChoice& choice) {
  if (choice.notes) {
    folder.forEachNotes([this](const NotesEntry& entry) {
      auto& notes = details_[entry.address].notes;
      if (!notes) notes = entry.text;
    });
  }
  if (choice.logins) {
    folder.forEachLogin([this](const LoginEntry& entry) {
      auto& login = details_[entry.address].login;
      if (!login) login = entry;
    });
  }
  if (choice.purchases) {
    folder.forEachPurchase(
        [this](const PurchaseEntry& entry) { details_[entry.address].purchases.push_back(entry); });
  }
}

const SiteDetails& SiteDetailIndex::of(const std::string& address) const {
  static const SiteDetails kNone;
  const auto found = details_.find(address);
  return found == details_.end() ? kNone : found->second;
}

}  // namespace quorrix
