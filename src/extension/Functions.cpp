#include "extension/Functions.h"

#include "extension/GPFunctionFactory.h"
#include "frame/ErrorHandling.h"
#include "platform/system/Collection.h"
#include "platform/system/Fault.h"

namespace tess::Functions {

std::shared_ptr<IGPName> GetFunctionName(const Collection& functions, std::int32_t index) {
    return TrappedNested("GetFunctionName ", [&] {
        auto function = functions.Item(index).As<IGPFunction>();
        if (!function)
            throw Fault(fault::ObjectNotSet, "Functions", "Object variable or With block variable not set");
        return function->FullName();
    });
}

} // namespace tess::Functions
