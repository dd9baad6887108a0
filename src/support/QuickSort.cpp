#include "support/QuickSort.h"

#include <utility>

#include "frame/ErrorHandling.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

constexpr const char* kSource = "QuickSort";

void SortRange(std::vector<std::string>& a, std::int32_t first, std::int32_t last) {
    // The smaller side recurses and the larger one loops, which keeps the stack
    // logarithmic on any input; the sides are disjoint, so the order in which
    // they are sorted does not change the result.
    while (first < last) {
        const std::string pivot = a[static_cast<std::size_t>(first + (last - first) / 2)];
        std::int32_t i = first;
        std::int32_t j = last;
        while (i <= j) {
            while (a[static_cast<std::size_t>(i)] < pivot)
                ++i;
            while (pivot < a[static_cast<std::size_t>(j)])
                --j;
            if (i <= j) {
                std::swap(a[static_cast<std::size_t>(i)], a[static_cast<std::size_t>(j)]);
                ++i;
                --j;
            }
        }
        if (j - first < last - i) {
            SortRange(a, first, j);
            first = i;
        } else {
            SortRange(a, i, last);
            last = j;
        }
    }
}

} // namespace

void StringsAscending(std::vector<std::string>& items, std::int32_t first, std::int32_t last) {
    TrappedVoid("StringsAscending ", [&] {
        if (first >= last)
            return;
        if (first < 0 || static_cast<std::size_t>(last) >= items.size())
            throw Fault(fault::OutOfRange, kSource, "Subscript out of range");
        SortRange(items, first, last);
    });
}

} // namespace tess
