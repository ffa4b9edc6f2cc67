// A record of the site file, written out for tests.
#pragma once

#include <string>

namespace quorrix::test {

// 322 bytes; the stamp ends with "~".
inline std::string siteRecord(const std::string& address, char protocolFlag = 'N',
                              const std::string& stamp = "7/1/26 8:00:00 AM~") {
  std::string record = address;
  record.resize(300, ' ');
  record += protocolFlag;
  record += stamp;
  record.resize(322, ' ');
  return record;
}

}  // namespace quorrix::test
