// A JSON array that is written item by item, each in a line of its own.
#pragma once

#include <string_view>

#include "data_tool/output.h"

namespace quorrix {

class JsonItems {
 public:
  // Begins the array.
  explicit JsonItems(Output& output);

  // Must be called before an item is written.
  void next();
  void add(std::string_view item);
  void end();

 private:
  Output& output_;
  bool isEmpty_ = true;
};

}  // namespace quorrix
