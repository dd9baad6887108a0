#pragma once
// The extension as a tool factory of the geoprocessing framework. It is a shell:
// it answers for itself and lists the functions of its collection, but it hands
// out no working tool; the commands are the way to the extension's work.

#include <memory>
#include <string>

#include "extension/GPFunctionFactory.h"

namespace tess {

class Collection;

class clsFunctionFactory final : public IGPFunctionFactory {
public:
    static constexpr const char* ProgID = "Tessarine.clsFunctionFactory";

    clsFunctionFactory();
    ~clsFunctionFactory() override;

    //! A UID with the value Tessarine.clsFunctionFactory.
    std::shared_ptr<IUID> CLSID() override;
    //! "Tessarine Toolset".
    std::string Name() override;
    //! "Tessarine_FunctionFactory".
    std::string Alias() override;
    //! Nothing, for any name.
    std::shared_ptr<IGPFunction> GetFunction(const std::string& name) override;
    //! Nothing, for any name.
    std::shared_ptr<IGPName> GetFunctionName(const std::string& name) override;
    //! The names of entries 1 and 2 of the collection. Nothing fills the collection, so this
    //! reports the fault of the missing entry and answers nothing.
    std::shared_ptr<IEnumGPName> GetFunctionNames() override;
    //! Nothing.
    std::shared_ptr<IEnumGPEnvironment> GetFunctionEnvironments() override;

    //! The function objects the names are taken from (IGPFunction items).
    Collection& Functions() { return *functions_; }

private:
    std::unique_ptr<Collection> functions_;
};

} // namespace tess
