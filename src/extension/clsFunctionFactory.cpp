#include "extension/clsFunctionFactory.h"

#include "extension/Functions.h"
#include "frame/ErrorHandling.h"
#include "platform/system/Collection.h"
#include "platform/system/UID.h"

namespace tess {
namespace {
// Entries of the collection that GetFunctionNames lists.
constexpr std::int32_t kFirstListedFunction = 1;
constexpr std::int32_t kLastListedFunction = 2;
} // namespace

clsFunctionFactory::clsFunctionFactory() : functions_(std::make_unique<Collection>()) {}

clsFunctionFactory::~clsFunctionFactory() = default;

std::shared_ptr<IUID> clsFunctionFactory::CLSID() {
    return Trapped("IGPFunctionFactory_CLSID ", std::shared_ptr<IUID>(),
                   [] { return std::shared_ptr<IUID>(std::make_shared<UID>(ProgID)); });
}

std::string clsFunctionFactory::Name() { return "Tessarine Toolset"; }

std::string clsFunctionFactory::Alias() { return "Tessarine_FunctionFactory"; }

std::shared_ptr<IGPFunction> clsFunctionFactory::GetFunction(const std::string& name) {
    return Trapped("IGPFunctionFactory_GetFunction ", std::shared_ptr<IGPFunction>(), [&] {
        const std::string requested = name; // taken and never used: no function is handed out
        (void)requested;
        return std::shared_ptr<IGPFunction>();
    });
}

std::shared_ptr<IGPName> clsFunctionFactory::GetFunctionName(const std::string& name) {
    return Trapped("IGPFunctionFactory_GetFunctionName ", std::shared_ptr<IGPName>(), [&] {
        const std::string requested = name;
        (void)requested;
        return std::shared_ptr<IGPName>();
    });
}

std::shared_ptr<IEnumGPName> clsFunctionFactory::GetFunctionNames() {
    return Trapped("IGPFunctionFactory_GetFunctionNames ", std::shared_ptr<IEnumGPName>(), [&] {
        auto names = std::make_shared<EnumGPName>();
        for (std::int32_t index = kFirstListedFunction; index <= kLastListedFunction; ++index)
            names->Add(Functions::GetFunctionName(*functions_, index));
        return std::shared_ptr<IEnumGPName>(names);
    });
}

std::shared_ptr<IEnumGPEnvironment> clsFunctionFactory::GetFunctionEnvironments() { return nullptr; }

} // namespace tess
