// The rows of the table, by topic.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "bench/measure.h"

namespace bench {

using Children = std::map<std::string, std::function<std::vector<double>()>>;

std::vector<Row> windowRows();
std::vector<Row> selectionRows();
std::vector<Row> copyRows();
std::vector<Row> downloadRows();
std::vector<Row> unpackingRows();
std::vector<Row> moduleRows();

// What these rows do in a process of its own.
Children windowChildren();
Children selectionChildren();
Children moduleChildren();

}  // namespace bench
