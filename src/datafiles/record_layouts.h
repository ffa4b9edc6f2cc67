// The records of notes.dat, info.dat and purchases.dat. Each begins with the
// key of its site's node in the tree; a deleted record is all blanks.
#pragma once

#include <cstddef>

#include "datafiles/site_address.h"
#include "datafiles/text_field.h"

namespace quorrix {

// The room that every entry box leaves in its field for the terminator or at least one
// blank. Without it the fields could not be read back.
inline constexpr std::size_t kFieldMargin = 1;

inline constexpr FieldLayout kSiteKey{0, kMaxAddressLength};

namespace notes_record {
inline constexpr FieldLayout kNotesText{300, 1024};  // line breaks as CR LF, no terminator
inline constexpr std::size_t kLength = 1324;

static_assert(kNotesText.offset == kSiteKey.end());
static_assert(kLength == kNotesText.end());
}  // namespace notes_record

// Both are in clear text, as typed. The password comes first.
namespace user_id_password_record {
inline constexpr FieldLayout kPassword{300, 30};
inline constexpr FieldLayout kUserID{330, 30};
inline constexpr std::size_t kLength = 360;

static_assert(kPassword.offset == kSiteKey.end());
static_assert(kUserID.offset == kPassword.end());
static_assert(kLength == kUserID.end());
}  // namespace user_id_password_record

// Every field after the site key holds the entered text and one "~".
namespace purchase_record {
inline constexpr FieldLayout kDateStamp{300, 25};
inline constexpr FieldLayout kPrice{325, 12};
inline constexpr FieldLayout kPaymentMethod{337, 50};
inline constexpr FieldLayout kItem{387, 50};
inline constexpr FieldLayout kDescription{437, 100};  // may hold line breaks, CR LF
inline constexpr FieldLayout kQuantity{537, 5};
inline constexpr std::size_t kLength = 542;

static_assert(kDateStamp.offset == kSiteKey.end());
static_assert(kPrice.offset == kDateStamp.end());
static_assert(kPaymentMethod.offset == kPrice.end());
static_assert(kItem.offset == kPaymentMethod.end());
static_assert(kDescription.offset == kItem.end());
static_assert(kQuantity.offset == kDescription.end());
static_assert(kLength == kQuantity.end());
}  // namespace purchase_record

}  // namespace quorrix
