// Lists one data folder, for list and search.
#pragma once

#include <functional>
#include <string>

#include "data_tool/folder_reader.h"
#include "data_tool/listing.h"
#include "data_tool/site_details.h"

namespace quorrix {

struct Sought {
  FolderReader::IsSought isRecordSought;
  // Of an address that has details, but no record.
  std::function<bool(const std::string& address)> isAddressSought;
};

// Lists the sites that are sought, in the order of the file, and then the addresses that have only
// the details of the choice, sorted. Returns whether anything was listed. Throws Problem.
bool listFolder(FolderReader& folder, const DetailChoice& choice, const Sought& sought,
                Listing& listing);

}  // namespace quorrix
