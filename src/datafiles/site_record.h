// The record of the site file, nodes.dat: the address, its scheme, and the time of the
// last visit.
#pragma once

#include <array>
#include <cstddef>

#include "datafiles/site_address.h"
#include "datafiles/text_field.h"

namespace quorrix {

namespace site_record {
inline constexpr FieldLayout kSiteAddress{0, 300};  // stored form; empty if there is no site
inline constexpr FieldLayout kProtocolFlag{300, 1};
inline constexpr FieldLayout kAccessStamp{301, 21};  // the stamp's text and its "~"
inline constexpr std::size_t kLength = 322;

static_assert(kSiteAddress.width == kMaxAddressLength);
static_assert(kProtocolFlag.offset == kSiteAddress.end());
static_assert(kAccessStamp.offset == kProtocolFlag.end());
static_assert(kLength == kAccessStamp.end());
}  // namespace site_record

using SiteRecord = std::array<char, site_record::kLength>;

}  // namespace quorrix
