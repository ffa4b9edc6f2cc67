// The code page in which the tests' texts are stored, unless a test says otherwise.
#pragma once

#include "platform/code_page.h"

namespace quorrix::test {

inline const CodePage& westernCodePage() {
  static const CodePage codePage(1252);
  return codePage;
}

}  // namespace quorrix::test
