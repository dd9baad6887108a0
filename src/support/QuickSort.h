#pragma once
// In-place sort of strings by their binary order.

#include <cstdint>
#include <string>
#include <vector>

namespace tess {

//! Sorts items first..last (inclusive, from 0) ascending by byte order. A quicksort with the
//! middle element as pivot: equal strings may change places. A range outside the array is
//! reported as a fault and leaves the array as it stands.
void StringsAscending(std::vector<std::string>& items, std::int32_t first, std::int32_t last);

} // namespace tess
