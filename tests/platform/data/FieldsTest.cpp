// Fields through storage: the host's types, widths and precisions, dBASE names,
// fields added to and deleted from classes that hold rows.

#include <gtest/gtest.h>

#include "DataTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/detail/FieldRules.h"
#include "platform/geometry/Geometries.h"
#include "platform/system/DateTime.h"
#include "platform/system/Fault.h"

namespace tess::test {
namespace {

struct FieldCase {
    const char* name;
    esriFieldType type;
    std::int32_t length, precision, scale;
    // as read back from a shapefile
    esriFieldType readType;
    std::int32_t readLength, readPrecision, readScale;
};

// dBASE keeps numbers as text of a width and decimals; the type read back follows from them.
const FieldCase kShapefileCases[] = {
    {"SHORTDEF", esriFieldTypeSmallInteger, 0, 0, 0, esriFieldTypeSmallInteger, 2, 5, 0},
    {"LONGDEF", esriFieldTypeInteger, 0, 0, 0, esriFieldTypeInteger, 4, 10, 0},
    {"LONG3", esriFieldTypeInteger, 0, 3, 0, esriFieldTypeSmallInteger, 2, 3, 0},
    {"LONG7", esriFieldTypeInteger, 0, 7, 0, esriFieldTypeInteger, 4, 7, 0},
    {"FLOAT62", esriFieldTypeSingle, 0, 6, 2, esriFieldTypeSingle, 4, 6, 2},
    {"FLOATDEF", esriFieldTypeSingle, 0, 0, 0, esriFieldTypeDouble, 8, 13, 11},
    {"DBLDEF", esriFieldTypeDouble, 0, 0, 0, esriFieldTypeDouble, 8, 19, 11},
    {"DBL168", esriFieldTypeDouble, 0, 16, 8, esriFieldTypeDouble, 8, 16, 8},
    {"DBL1612", esriFieldTypeDouble, 0, 16, 12, esriFieldTypeDouble, 8, 16, 12},
    {"DBL80", esriFieldTypeDouble, 0, 8, 0, esriFieldTypeInteger, 4, 8, 0},
    {"TEXT30", esriFieldTypeString, 30, 0, 0, esriFieldTypeString, 30, 0, 0},
    {"TEXTDEF", esriFieldTypeString, 0, 0, 0, esriFieldTypeString, 50, 0, 0},
    {"WHEN", esriFieldTypeDate, 0, 0, 0, esriFieldTypeDate, 8, 0, 0},
};

std::vector<std::shared_ptr<IField>> CaseFields() {
    std::vector<std::shared_ptr<IField>> fields;
    for (const FieldCase& c : kShapefileCases)
        fields.push_back(MakeField(c.name, c.type, c.length, c.precision, c.scale));
    return fields;
}

TEST(ShapefileFields, TypesWidthsAndPrecisionsFollowTheDbaseRules) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    CreateClass(*ws, "typed", esriGeometryPoint, nullptr, CaseFields());
    // Read from disk again, not from the object that made the class.
    auto fc = dynamic_cast<IFeatureWorkspace&>(*ws).OpenFeatureClass("typed");
    auto fields = fc->Fields();
    ASSERT_EQ(fields->FieldCount(), 2 + static_cast<std::int32_t>(std::size(kShapefileCases)));
    EXPECT_EQ(fields->Field(0)->Name(), "FID");
    EXPECT_EQ(fields->Field(0)->Type(), esriFieldTypeOID);
    EXPECT_FALSE(fields->Field(0)->Editable());
    EXPECT_EQ(fields->Field(1)->Name(), "Shape");
    EXPECT_EQ(fields->Field(1)->GeometryDef()->GeometryType(), esriGeometryPoint);
    for (const FieldCase& c : kShapefileCases) {
        SCOPED_TRACE(c.name);
        const std::int32_t i = fields->FindField(c.name);
        ASSERT_GE(i, 0);
        auto f = fields->Field(i);
        EXPECT_EQ(f->Type(), c.readType);
        EXPECT_EQ(f->Length(), c.readLength);
        EXPECT_EQ(f->Precision(), c.readPrecision);
        EXPECT_EQ(f->Scale(), c.readScale);
    }
}

TEST(ShapefileFields, NamesAreCutToTenCharactersAndMadeUnique) {
    struct NameCase {
        const char* name;
        std::vector<std::string> taken;
        const char* expected;
    };
    const NameCase cases[] = {
        {"Population", {}, "Population"},
        {"Population_Density", {}, "Population"},
        {"LongFieldName", {"LongFieldN"}, "LongFiel_1"},
        {"LongFieldName2", {"LongFieldN", "LongFiel_1"}, "LongFiel_2"},
        {"AREA", {"area"}, "AREA_1"},
        {"km(2)", {}, "km_2_"},
    };
    for (const NameCase& c : cases)
        EXPECT_EQ(data::DbaseFieldName(c.name, c.taken), c.expected) << c.name;

    TempDir dir;
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    auto fc = CreateClass(*ws, "names", esriGeometryPoint, nullptr,
                          {MakeField("LongFieldName1", esriFieldTypeInteger),
                           MakeField("LongFieldName2", esriFieldTypeInteger)});
    EXPECT_GE(fc->FindField("LongFieldN"), 0);
    EXPECT_GE(fc->FindField("LongFiel_1"), 0);
    // A long name added later is cut too, so the host's look-up by the long name finds nothing.
    fc->AddField(MakeField("Perimeter_km", esriFieldTypeDouble, 0, 16, 8));
    EXPECT_EQ(fc->FindField("Perimeter_km"), -1);
    EXPECT_GE(fc->FindField("Perimeter_"), 0);
}

TEST(ShapefileFields, AShapefileWithoutAttributesGetsId) {
    TempDir dir;
    auto ws = MakeWorkspace(Format::Shapefile, dir);
    auto fc = CreateClass(*ws, "bare", esriGeometryPolygon, nullptr);
    ASSERT_EQ(fc->Fields()->FieldCount(), 3);
    EXPECT_EQ(fc->Fields()->Field(2)->Name(), "Id");
    EXPECT_EQ(fc->Fields()->Field(2)->Type(), esriFieldTypeInteger);
}

class DatabaseFieldsTest : public ::testing::TestWithParam<Format> {};

TEST_P(DatabaseFieldsTest, TypesAndAliasesRoundTrip) {
    TempDir dir;
    auto ws = MakeWorkspace(GetParam(), dir);
    auto alias = MakeField("POP", esriFieldTypeInteger);
    std::dynamic_pointer_cast<IFieldEdit>(alias)->AliasName("Population");
    CreateClass(*ws, "typed", esriGeometryPoint, nullptr,
                {MakeField("SMALL", esriFieldTypeSmallInteger), alias, MakeField("SINGLE", esriFieldTypeSingle),
                 MakeField("DOUBLE", esriFieldTypeDouble), MakeField("TEXT", esriFieldTypeString, 30),
                 MakeField("WHEN", esriFieldTypeDate)});
    auto fc = dynamic_cast<IFeatureWorkspace&>(*ws).OpenFeatureClass("typed");
    auto fields = fc->Fields();
    const std::vector<std::pair<std::string, esriFieldType>> expected = {
        {"SMALL", esriFieldTypeSmallInteger}, {"POP", esriFieldTypeInteger}, {"SINGLE", esriFieldTypeSingle},
        {"DOUBLE", esriFieldTypeDouble},      {"TEXT", esriFieldTypeString}, {"WHEN", esriFieldTypeDate}};
    for (const auto& [name, type] : expected) {
        SCOPED_TRACE(name);
        const std::int32_t i = fields->FindField(name);
        ASSERT_GE(i, 0);
        EXPECT_EQ(fields->Field(i)->Type(), type);
    }
    EXPECT_EQ(fields->Field(fields->FindField("TEXT"))->Length(), 30);
    EXPECT_EQ(fields->Field(0)->Type(), esriFieldTypeOID);
    EXPECT_EQ(fields->Field(0)->Name(), "OBJECTID");
    if (GetParam() == Format::FileGDB) {
        EXPECT_EQ(fields->Field(fields->FindField("POP"))->AliasName(), "Population");
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, DatabaseFieldsTest, ::testing::Values(Format::FileGDB, Format::GeoPackage),
                         [](const auto& info) { return FormatName(info.param); });

class FieldValuesTest : public ::testing::TestWithParam<Format> {};

TEST_P(FieldValuesTest, DatesTextAndLimitsOfNumbers) {
    TempDir dir;
    auto ws = MakeWorkspace(GetParam(), dir);
    auto fc = CreateClass(*ws, "measures", esriGeometryPoint, nullptr,
                          {MakeField("WHEN", esriFieldTypeDate), MakeField("TEXT", esriFieldTypeString, 10),
                           MakeField("SMALL", esriFieldTypeSmallInteger)});
    auto f = fc->CreateFeature();
    f->Shape(MakePoint(1, 1));
    const DateValue when = DateFromCalendar({2021, 3, 14, 0, 0, 0.0});
    f->Value(fc->FindField("WHEN"), when);
    f->Value(fc->FindField("TEXT"), "exactly10!");
    EXPECT_THROW(f->Value(fc->FindField("SMALL"), 40000), Fault); // beyond a 16-bit integer
    f->Value(fc->FindField("SMALL"), -123);
    f->Store();
    auto back = fc->GetFeature(f->OID());
    EXPECT_EQ(back->Value(fc->FindField("WHEN")).ToDate(), when);
    EXPECT_EQ(back->Value(fc->FindField("TEXT")).ToString(), "exactly10!");
    EXPECT_EQ(back->Value(fc->FindField("SMALL")).Type(), VarType::Integer);
    EXPECT_EQ(back->Value(fc->FindField("SMALL")).ToInteger(), -123);
}

TEST_P(FieldValuesTest, FieldsAddedToAClassWithRowsStartNullAndKeepTheRows) {
    TempDir dir;
    auto ws = MakeWorkspace(GetParam(), dir);
    auto fc = CreateClass(*ws, "grow", esriGeometryPoint, nullptr, {MakeField("KEEP", esriFieldTypeInteger)});
    {
        auto cursor = fc->Insert(true);
        auto buffer = fc->CreateFeatureBuffer();
        for (int i = 0; i < 5; ++i) {
            buffer->Shape(MakePoint(i, 0));
            buffer->Value(fc->FindField("KEEP"), i);
            cursor->InsertFeature(*buffer);
        }
    }
    fc->AddField(MakeField("Measure", esriFieldTypeDouble, 0, 16, 12));
    const std::int32_t measure = fc->FindField("Measure");
    ASSERT_GE(measure, 0);
    EXPECT_THROW(fc->AddField(MakeField("measure", esriFieldTypeDouble)), Fault);
    {
        auto cursor = fc->Update(nullptr, false);
        while (auto f = cursor->NextFeature()) {
            EXPECT_TRUE(f->Value(measure).IsNull());
            f->Value(measure, f->Value(fc->FindField("KEEP")).ToDouble() * 0.5);
            cursor->UpdateFeature(*f);
        }
    }
    auto cursor = fc->Search(nullptr, true);
    int n = 0;
    while (auto f = cursor->NextFeature()) {
        EXPECT_EQ(f->Value(measure).ToDouble(), f->Value(fc->FindField("KEEP")).ToLong() * 0.5); // halves: exact
        ++n;
    }
    EXPECT_EQ(n, 5);
    fc->DeleteField(fc->Fields()->Field(fc->FindField("KEEP")));
    EXPECT_EQ(fc->FindField("KEEP"), -1);
    EXPECT_EQ(fc->FeatureCount(nullptr), 5);
    EXPECT_THROW(fc->DeleteField(fc->Fields()->Field(0)), Fault); // the object ID stays
}

INSTANTIATE_TEST_SUITE_P(Formats, FieldValuesTest,
                         ::testing::Values(Format::Shapefile, Format::FileGDB, Format::GeoPackage),
                         [](const auto& info) { return FormatName(info.param); });

TEST(FieldObjects, CloneIsDeepAndEqual) {
    auto def = std::make_shared<GeometryDef>();
    def->GeometryType(esriGeometryPolygon);
    def->GridCount(1);
    def->GridSize(0, 10.0);
    EXPECT_THROW(def->GridSize(1), Fault);
    auto field = std::make_shared<Field>();
    field->Name("Shape");
    field->Type(esriFieldTypeGeometry);
    field->GeometryDef(def);
    auto copy = CloneAs<Field>(*field);
    EXPECT_TRUE(copy->IsEqual(*field));
    EXPECT_NE(copy->GeometryDef(), field->GeometryDef());
    std::dynamic_pointer_cast<IGeometryDefEdit>(copy->GeometryDef())->GridSize(0, 20.0);
    EXPECT_EQ(def->GridSize(0), 10.0);
    EXPECT_FALSE(copy->IsEqual(*field));

    Fields fields({field});
    EXPECT_EQ(fields.FindField("SHAPE"), 0);
    EXPECT_EQ(fields.FindField("nothing"), -1);
    EXPECT_THROW(fields.Field(3), Fault);
    fields.FieldCount(2);
    fields.Field(1, MakeField("B", esriFieldTypeInteger));
    EXPECT_EQ(fields.FindField("b"), 1);
}

} // namespace
} // namespace tess::test
