#include "platform/failure.h"

#include <cstdio>
#include <new>
#include <stdexcept>

namespace quorrix {

Failure::Failure(int number) noexcept : number_(number) {
  std::snprintf(text_.data(), text_.size(), "Failure %d", number);
}

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
