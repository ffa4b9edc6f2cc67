#include "data_tool/listing.h"

#include "data_tool/csv_listing.h"
#include "data_tool/json_listing.h"
#include "data_tool/table_listing.h"

namespace quorrix {

std::unique_ptr<Listing> makeListing(const ListingChoice& choice, const TableFrame& frame,
                                     Output& output) {
  switch (choice.format) {
    case ListFormat::Table:
      return std::make_unique<TableListing>(choice.details, frame, output);
    case ListFormat::Json:
      return std::make_unique<JsonListing>(choice.details, output);
    case ListFormat::Csv:
      return std::make_unique<CsvListing>(choice.details, output);
  }
  return nullptr;
}

}  // namespace quorrix
