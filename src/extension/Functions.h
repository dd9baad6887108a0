#pragma once
// Helpers of the function factory.

#include <cstdint>
#include <memory>

namespace tess {

class Collection;
class IGPName;

namespace Functions {

//! The name object of the function at a position of the collection (from 1). A missing entry,
//! or an entry that is no function, goes to the caller as a fault with this routine's line.
std::shared_ptr<IGPName> GetFunctionName(const Collection& functions, std::int32_t index);

} // namespace Functions
} // namespace tess
