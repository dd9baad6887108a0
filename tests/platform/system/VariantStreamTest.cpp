#include "platform/system/VariantStream.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "FaultOf.h"

namespace tess {
namespace {

// One value of every kind that has a text form, with the awkward ones of each.
std::vector<Variant> EveryKind() {
    return {
        Variant(),
        Variant::Null(),
        Variant::Nothing(),
        Variant(std::int16_t{-32768}),
        Variant(std::int32_t{2147483647}),
        Variant(0.1f),
        Variant(3.0),
        Variant(0.1),
        Variant(-0.0),
        Variant(6356752.314245179),
        Variant(std::numeric_limits<double>::denorm_min()),
        Variant(std::numeric_limits<double>::infinity()),
        Variant(-std::numeric_limits<double>::infinity()),
        Variant(DateValue{45351.5}),
        Variant(true),
        Variant(false),
        Variant(""),
        Variant("C:\\data\\\"quoted\" \xC3\xA9t\xC3\xA9 \n line"),
        Variant(std::vector<Variant>{1, "a", std::vector<Variant>{2.5, Variant::Null()}}),
    };
}

void ExpectSameBits(const Variant& a, const Variant& b) {
    ASSERT_EQ(a.Type(), b.Type()) << a.TypeName();
    EXPECT_EQ(a, b) << a.TypeName();
    if (a.Type() == VarType::Double) { // -0.0 == 0.0, so compare the sign too
        EXPECT_EQ(std::signbit(a.ToDouble()), std::signbit(b.ToDouble()));
    }
}

TEST(MemoryVariantStream, ReadsBackWhatWasWritten) {
    MemoryVariantStream stream;
    for (const Variant& v : EveryKind())
        stream.Write(v);
    for (const Variant& v : EveryKind())
        ExpectSameBits(stream.Read(), v);
    EXPECT_EQ(FaultOf([&] { (void)stream.Read(); }), fault::ReadPastEnd);
    stream.Rewind();
    EXPECT_TRUE(stream.Read().IsEmpty());
}

TEST(MemoryVariantStream, TextFormRoundTripsEveryKind) {
    MemoryVariantStream stream;
    for (const Variant& v : EveryKind())
        stream.Write(v);
    (void)stream.Read(); // the position is not part of the text
    MemoryVariantStream back = MemoryVariantStream::FromText(stream.ToText());
    ASSERT_EQ(back.Count(), EveryKind().size());
    EXPECT_EQ(back.Position(), 0u);
    for (const Variant& v : EveryKind())
        ExpectSameBits(back.Read(), v);
    // NaN is not equal to itself; check its kind and that it stays NaN.
    MemoryVariantStream nan;
    nan.Write(std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(MemoryVariantStream::FromText(nan.ToText()).ReadDouble()));
}

TEST(MemoryVariantStream, TypedReadsConvertLikeAssignment) {
    MemoryVariantStream stream;
    stream.Write(3.0);
    stream.Write("C:/out");
    stream.Write(true);
    stream.Write("2.5");
    stream.Write("abc");
    stream.Write(70000);
    stream.Write(Variant::Null());
    stream.Write(std::int16_t{1});
    EXPECT_EQ(stream.ReadDouble(), 3.0);
    EXPECT_EQ(stream.ReadString(), "C:/out");
    EXPECT_TRUE(stream.ReadBool());
    EXPECT_EQ(stream.ReadLong(), 2);
    EXPECT_EQ(FaultOf([&] { (void)stream.ReadDouble(); }), fault::TypeMismatch);
    EXPECT_EQ(FaultOf([&] { (void)stream.ReadInteger(); }), fault::Overflow);
    EXPECT_EQ(FaultOf([&] { (void)stream.ReadString(); }), fault::InvalidUseOfNull);
    // A failed conversion consumed its value: the next read gets the next one.
    EXPECT_EQ(stream.ReadInteger(), 1);
    EXPECT_EQ(FaultOf([&] { (void)stream.ReadBool(); }), fault::ReadPastEnd);
}

TEST(MemoryVariantStream, ObjectsHaveNoTextForm) {
    MemoryVariantStream stream;
    stream.Write(Variant(std::make_shared<VarArray>()));
    EXPECT_EQ(FaultOf([&] { (void)stream.ToText(); }), fault::TypeMismatch);
    MemoryVariantStream badText;
    badText.Write(std::string("\xFF\xFE"));
    EXPECT_EQ(FaultOf([&] { (void)badText.ToText(); }), fault::InvalidCall);
}

TEST(MemoryVariantStream, CorruptTextIsRefused) {
    const char* const texts[] = {
        "",
        "not json",
        "[]",
        R"({"format":"other","version":1,"values":[]})",
        R"({"format":"tess.VariantStream","version":2,"values":[]})",
        R"({"format":"tess.VariantStream","version":1})",
        R"({"format":"tess.VariantStream","version":1,"values":{}})",
        R"({"format":"tess.VariantStream","version":1,"values":[{"Double":"x"}]})",
        R"({"format":"tess.VariantStream","version":1,"values":[{"Integer":40000}]})",
        R"({"format":"tess.VariantStream","version":1,"values":[{"Long":1.5}]})",
        R"({"format":"tess.VariantStream","version":1,"values":[{"Boolean":1}]})",
        R"({"format":"tess.VariantStream","version":1,"values":[{"String":2}]})",
        R"({"format":"tess.VariantStream","version":1,"values":[{"Currency":2}]})",
        R"({"format":"tess.VariantStream","version":1,"values":[{"Double":1,"Long":2}]})",
        R"({"format":"tess.VariantStream","version":1,"values":[3]})",
    };
    for (const char* text : texts)
        EXPECT_EQ(FaultOf([&] { (void)MemoryVariantStream::FromText(text); }), fault::InvalidFileFormat) << text;
    // Arrays nested beyond any real document are refused rather than recursed into.
    std::string deep = R"({"format":"tess.VariantStream","version":1,"values":[)";
    constexpr int kDepth = 1000;
    for (int i = 0; i < kDepth; ++i)
        deep += R"({"Array":[)";
    for (int i = 0; i < kDepth; ++i)
        deep += "]}";
    deep += "]}";
    EXPECT_EQ(FaultOf([&] { (void)MemoryVariantStream::FromText(deep); }), fault::InvalidFileFormat);
}

} // namespace
} // namespace tess
