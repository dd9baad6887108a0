#include "platform/system/Arrays.h"

#include "platform/system/Fault.h"

namespace tess::detail {

void ThrowArrayIndex(const char* source, std::int32_t index, std::size_t count) {
    throw Fault(fault::OutOfRange, source,
                "Subscript out of range: index " + std::to_string(index) + " of " + std::to_string(count) +
                    " items");
}

} // namespace tess::detail
