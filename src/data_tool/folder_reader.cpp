#include "data_tool/folder_reader.h"

#include "datafiles/record_layouts.h"
#include "datafiles/site_record.h"
#include "datafiles/working_folder.h"

namespace quorrix {

void FolderReader::forEachSite(const std::function<void(const SiteEntry&)>& visit) {
  forEachSite([](std::uint64_t, std::span<const char>) { return true; }, visit);
}

void FolderReader::forEachSite(const IsSought& isSought,
                               const std::function<void(const SiteEntry&)>& visit) {
  SiteEntry entry;
  reader_.forEach(folder_.path / data_file::kNodes, site_record::kLength,
                  [&](std::uint64_t number, std::span<const char> record) {
                    if (isSought(number, record) && readSite(codePage_, record, entry))
                      visit(entry);
                    return true;
                  });
}

void FolderReader::forEachNotes(const std::function<void(const NotesEntry&)>& visit) {
  NotesEntry entry;
  reader_.forEach(folder_.path / data_file::kURLNotes, notes_record::kLength,
                  [&](std::uint64_t, std::span<const char> record) {
                    if (readNotes(codePage_, record, entry)) visit(entry);
                    return true;
                  });
}

void FolderReader::forEachLogin(const std::function<void(const LoginEntry&)>& visit) {
  LoginEntry entry;
  reader_.forEach(folder_.path / data_file::kUserIDPassword, user_id_password_record::kLength,
                  [&](std::uint64_t, std::span<const char> record) {
                    if (readLogin(codePage_, record, entry)) visit(entry);
                    return true;
                  });
}

void FolderReader::forEachPurchase(const std::function<void(const PurchaseEntry&)>& visit) {
  PurchaseEntry entry;
  reader_.forEach(folder_.path / data_file::kPurchases, purchase_record::kLength,
                  [&](std::uint64_t, std::span<const char> record) {
                    if (readPurchase(codePage_, record, entry)) visit(entry);
                    return true;
                  });
}

}  // namespace quorrix
