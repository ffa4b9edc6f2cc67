// A table for people: a line for each site, and its details in indented lines below it. The
// address is the last column, so no line has to wait for the longest address.
#pragma once

#include <string>

#include "data_tool/listing.h"

namespace quorrix {

class TableListing final : public Listing {
 public:
  TableListing(const DetailChoice& choice, const TableFrame& frame, Output& output)
      : choice_(choice), frame_(frame), output_(output) {}

  void begin() override;
  void add(const SiteEntry& site, const std::string& archive, const SiteDetails& details) override;
  void end() override {}

 private:
  void addLine(std::string visited, std::string scheme, const std::string& archive,
               const std::string& address);
  void addDetail(const char* name, const std::string& text);
  void write(const std::string& line);

  DetailChoice choice_;
  TableFrame frame_;
  Output& output_;
};

}  // namespace quorrix
