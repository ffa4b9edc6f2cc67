#include "platform/failure.h"

#include <new>
#include <stdexcept>

namespace quorrix {

int currentFailureNumber() noexcept {
  try {
    throw;
  } catch (const Failure& raised) {
    return raised.number();
  } catch (const std::bad_alloc&) {
    return failure::kOutOfMemory;
  } catch (const std::out_of_range&) {
    return failure::kIndexOutOfRange;
  } catch (const std::overflow_error&) {
    return failure::kOverflow;
  } catch (...) {
    return failure::kUnknown;
  }
}

}  // namespace quorrix
