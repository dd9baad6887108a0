// The geoprocessing factory shell: its answers, the nothing it hands out, and
// the reported fault of listing an empty collection.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "ExtensionTestSupport.h"
#include "extension/clsFunctionFactory.h"
#include "platform/system/Collection.h"
#include "platform/system/UID.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

class FunctionName final : public IGPName {
public:
    explicit FunctionName(std::string n) : name_(std::move(n)) {}
    std::string Name() const override { return name_; }
    std::string DisplayName() const override { return name_; }
    std::string Category() const override { return "Tessarine"; }

private:
    std::string name_;
};

class NamedFunction final : public IGPFunction {
public:
    explicit NamedFunction(std::string name) : name_(std::move(name)) {}
    std::string Name() const override { return name_; }
    std::shared_ptr<IGPName> FullName() const override { return std::make_shared<FunctionName>(name_); }

private:
    std::string name_;
};

class FunctionFactoryTest : public test::ScriptedUITest {
protected:
    clsFunctionFactory factory;
};

TEST_F(FunctionFactoryTest, AnswersForItself) {
    auto clsid = factory.CLSID();
    ASSERT_TRUE(clsid);
    EXPECT_EQ(clsid->Value(), "Tessarine.clsFunctionFactory");
    EXPECT_EQ(factory.Name(), "Tessarine Toolset");
    EXPECT_EQ(factory.Alias(), "Tessarine_FunctionFactory");
    EXPECT_EQ(factory.GetFunctionEnvironments(), nullptr);
}

TEST_F(FunctionFactoryTest, HandsOutNoFunctionWhateverTheName) {
    factory.Functions().Add(Variant(std::static_pointer_cast<IGPFunction>(std::make_shared<NamedFunction>("x"))));
    for (const char* name : {"", "x", "CalcGeometry", "Tessarine_CalcGeometry"}) {
        EXPECT_EQ(factory.GetFunction(name), nullptr) << name;
        EXPECT_EQ(factory.GetFunctionName(name), nullptr) << name;
    }
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(FunctionFactoryTest, ListingTheEmptyCollectionReportsTheFaultOnceAndGivesNothing) {
    EXPECT_EQ(factory.GetFunctionNames(), nullptr);
    const auto errors = ui_->Errors();
    ASSERT_EQ(errors.size(), 1u);
    // The factory's member on top, the helper that met the missing entry right below it.
    const auto outer = errors[0].find("IGPFunctionFactory_GetFunctionNames ");
    const auto inner = errors[0].find("GetFunctionName ");
    ASSERT_NE(outer, std::string::npos);
    ASSERT_NE(inner, std::string::npos);
    EXPECT_LT(outer, inner);
}

TEST_F(FunctionFactoryTest, ListsTheNamesOfTheFirstTwoFunctions) {
    for (const char* name : {"first", "second", "third"})
        factory.Functions().Add(
            Variant(std::static_pointer_cast<IGPFunction>(std::make_shared<NamedFunction>(name))));
    auto names = factory.GetFunctionNames();
    ASSERT_TRUE(names);
    names->Reset();
    std::vector<std::string> listed;
    while (auto name = names->Next())
        listed.push_back(name->Name());
    EXPECT_EQ(listed, (std::vector<std::string>{"first", "second"}));

    // One function only: the second entry is missing, and that is the reported fault.
    clsFunctionFactory single;
    single.Functions().Add(Variant(std::static_pointer_cast<IGPFunction>(std::make_shared<NamedFunction>("one"))));
    EXPECT_EQ(single.GetFunctionNames(), nullptr);
    EXPECT_EQ(ui_->Errors().size(), 1u);
}

} // namespace
} // namespace tess
