// Checks single records of the data files against their formats. Nothing that Quorrix itself
// writes is an error.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>

#include "data_tool/finding.h"

namespace quorrix {

// `offset` counts from the beginning of the record.
using ReportInRecord =
    std::function<void(FindingKind kind, std::size_t offset, const std::string& what)>;
using CheckRecord = void (*)(std::span<const char> record, const ReportInRecord& report);

// A record that is all blanks was deleted, and is fine.
void checkSiteRecord(std::span<const char> record, const ReportInRecord& report);
void checkNotesRecord(std::span<const char> record, const ReportInRecord& report);
void checkUserIDPasswordRecord(std::span<const char> record, const ReportInRecord& report);
void checkPurchaseRecord(std::span<const char> record, const ReportInRecord& report);

}  // namespace quorrix
