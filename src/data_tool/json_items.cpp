#include "data_tool/json_items.h"

namespace quorrix {

JsonItems::JsonItems(Output& output) : output_(output) { output_.write("["); }

void JsonItems::next() {
  output_.write(isEmpty_ ? "\n" : ",\n");
  isEmpty_ = false;
}

void JsonItems::add(std::string_view item) {
  next();
  output_.write(item);
}

void JsonItems::end() { output_.write(isEmpty_ ? "]" : "\n]"); }

}  // namespace quorrix
