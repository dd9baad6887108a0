// Arrays, keyed collections, property sets and class identifiers.
#include <gtest/gtest.h>

#include <functional>

#include "platform/system/Arrays.h"
#include "platform/system/Collection.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"
#include "platform/system/UID.h"
#include "FaultOf.h"

namespace tess {
namespace {

template <class A>
class ArrayTest : public ::testing::Test {};

template <class A, class T>
struct ArrayKind {
    using Array = A;
    static T Value(int i);
};
template <>
Variant ArrayKind<VarArray, Variant>::Value(int i) { return Variant(i); }
template <>
std::string ArrayKind<StrArray, std::string>::Value(int i) { return std::to_string(i); }
template <>
std::int32_t ArrayKind<LongArray, std::int32_t>::Value(int i) { return i; }
template <>
double ArrayKind<DoubleArray, double>::Value(int i) { return i + 0.5; }

using ArrayKinds = ::testing::Types<ArrayKind<VarArray, Variant>, ArrayKind<StrArray, std::string>,
                                    ArrayKind<LongArray, std::int32_t>, ArrayKind<DoubleArray, double>>;
TYPED_TEST_SUITE(ArrayTest, ArrayKinds);

TYPED_TEST(ArrayTest, IndexesFromZeroAndFaultsOutside) {
    typename TypeParam::Array a;
    for (int i = 0; i < 3; ++i)
        a.Add(TypeParam::Value(i));
    EXPECT_EQ(a.Count(), 3);
    EXPECT_EQ(a.Element(0), TypeParam::Value(0));
    a.Element(2, TypeParam::Value(9));
    EXPECT_EQ(a.Element(2), TypeParam::Value(9));
    a.Insert(1, TypeParam::Value(7));
    a.Insert(4, TypeParam::Value(8)); // at Count: appends
    EXPECT_EQ(a.Element(1), TypeParam::Value(7));
    EXPECT_EQ(a.Element(4), TypeParam::Value(8));
    a.Remove(0);
    EXPECT_EQ(a.Element(0), TypeParam::Value(7));
    for (int bad : {-1, 4})
        EXPECT_EQ(FaultOf([&] { (void)a.Element(bad); }), fault::OutOfRange) << bad;
    EXPECT_EQ(FaultOf([&] { a.Element(4, TypeParam::Value(0)); }), fault::OutOfRange);
    EXPECT_EQ(FaultOf([&] { a.Insert(5, TypeParam::Value(0)); }), fault::OutOfRange);
    EXPECT_EQ(FaultOf([&] { a.Remove(4); }), fault::OutOfRange);
    a.RemoveAll();
    EXPECT_EQ(a.Count(), 0);
    EXPECT_EQ(FaultOf([&] { (void)a.Element(0); }), fault::OutOfRange);
}

TEST(VarArray, HoldsObjectsBesideValues) {
    auto inner = std::make_shared<VarArray>();
    inner->Add("x");
    VarArray a;
    a.Add(1.5);
    a.Add(std::static_pointer_cast<IVariantArray>(inner));
    EXPECT_EQ(a.Element(1).As<VarArray>(), inner);
}

TEST(Collection, KeysIgnoreCaseAndIndexesStartAtOne) {
    Collection c;
    c.Add(Variant("moon row"), "Moon");
    c.Add(Variant(2.0));
    c.Add(Variant("mars row"), "Mars");
    EXPECT_EQ(c.Count(), 3);
    EXPECT_EQ(c.Item("MOON").ToString(), "moon row");
    EXPECT_TRUE(c.Exists("mars"));
    EXPECT_FALSE(c.Exists("Venus"));
    EXPECT_EQ(c.Item(1).ToString(), "moon row");
    EXPECT_EQ(c.Item(2).ToDouble(), 2.0);
    EXPECT_EQ(FaultOf([&] { c.Add(Variant(0), "mOOn"); }), fault::DuplicateKey);
    EXPECT_EQ(FaultOf([&] { (void)c.Item("Venus"); }), fault::InvalidCall);
    EXPECT_EQ(FaultOf([&] { (void)c.Item(0); }), fault::OutOfRange);
    EXPECT_EQ(FaultOf([&] { (void)c.Item(4); }), fault::OutOfRange);
    c.Remove("moon");
    EXPECT_EQ(c.Item(1).ToDouble(), 2.0);
    c.Remove(1);
    EXPECT_EQ(c.Item(1).ToString(), "mars row");
    c.Add(Variant(1), "Moon"); // a removed key is free again
    EXPECT_EQ(c.Count(), 2);
}

TEST(PropertySet, NamesIgnoreCaseAndKeepOrder) {
    PropertySet p;
    p.SetProperty("DATABASE", "C:/data");
    p.SetProperty("Datafile Format", 1);
    p.SetProperty("database", "D:/other");
    EXPECT_EQ(p.Count(), 2);
    EXPECT_EQ(p.GetProperty("Database").ToString(), "D:/other");
    EXPECT_EQ(p.GetProperty("DATAFILE FORMAT").ToLong(), 1);
    std::vector<std::string> names;
    std::vector<Variant> values;
    p.GetAllProperties(names, values);
    EXPECT_EQ(names, (std::vector<std::string>{"DATABASE", "Datafile Format"}));
    try {
        (void)p.GetProperty("Missing");
        FAIL();
    } catch (const Fault& f) {
        EXPECT_EQ(f.Number(), fault::NotFound);
        EXPECT_NE(f.Description().find("Missing"), std::string::npos);
    }
    PropertySet q;
    q.SetProperty("datafile format", 1);
    q.SetProperty("Database", "D:/other");
    EXPECT_TRUE(p.IsEqual(q));
    q.SetProperty("Database", "E:/");
    EXPECT_FALSE(p.IsEqual(q));
    p.RemoveProperty("DataBase");
    EXPECT_EQ(p.Count(), 1);
}

TEST(UID, ProgIdsAndGuids) {
    UID uid;
    uid.Value("Tessarine.clsExtension");
    EXPECT_EQ(uid.Value(), "Tessarine.clsExtension");
    EXPECT_FALSE(uid.IsGuid());
    uid.Value("{bd6262bc-d9d4-4b93-87e0-e442702d93e6}");
    EXPECT_EQ(uid.Value(), "{BD6262BC-D9D4-4B93-87E0-E442702D93E6}");
    EXPECT_TRUE(uid.IsGuid());
    for (const char* bad : {"", "{BD6262BC-D9D4-4B93-87E0-E442702D93E}", "{not-a-guid}", "two words", "1abc"})
        EXPECT_EQ(FaultOf([&] { uid.Value(bad); }), fault::InvalidCall) << bad;
    EXPECT_EQ(uid.Value(), "{BD6262BC-D9D4-4B93-87E0-E442702D93E6}"); // a refused value changes nothing
    UID same("{BD6262BC-D9D4-4B93-87E0-E442702D93E6}");
    EXPECT_TRUE(uid.Compare(same));
    same.SubType(2);
    EXPECT_FALSE(uid.Compare(same));
}

} // namespace
} // namespace tess
