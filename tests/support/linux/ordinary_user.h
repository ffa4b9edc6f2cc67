// Tests often run as root, who may read every file. While this object exists, they run as
// a user who may not.
#pragma once

#include <unistd.h>

#include <exception>
#include <stdexcept>

namespace quorrix::test {

class OrdinaryUser {
 public:
  OrdinaryUser() : user_(::geteuid()) {
    constexpr uid_t kNobody = 65534;
    if (user_ == 0 && ::seteuid(kNobody) != 0) throw std::runtime_error("cannot leave root");
  }
  ~OrdinaryUser() {
    if (::seteuid(user_) != 0) std::terminate();
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  uid_t user_;
};

}  // namespace quorrix::test
