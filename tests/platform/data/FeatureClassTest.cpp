// Tables and feature classes of every writable format: create, insert, search with
// where clauses and spatial filters, update and delete, object IDs, identity.

#include <gtest/gtest.h>

#include "DataTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/geometry/Geometries.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"

namespace tess::test {
namespace {

constexpr std::int32_t kWgs84 = 4326;
constexpr int kRows = 10;

class FeatureClassTest : public ::testing::TestWithParam<Format> {
protected:
    void SetUp() override {
        ws = MakeWorkspace(GetParam(), dir);
        sr = SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
    }
    //! Points (i, i) with NAME "p<i>", POP i * 10 and AREA i / 4.
    std::shared_ptr<IFeatureClass> PointsClass() {
        auto fc = CreateClass(*ws, "cities", esriGeometryPoint, sr,
                              {MakeField("NAME", esriFieldTypeString, 20), MakeField("POP", esriFieldTypeInteger),
                               MakeField("AREA", esriFieldTypeDouble, 0, 16, 8)});
        auto cursor = fc->Insert(true);
        auto buffer = fc->CreateFeatureBuffer();
        const std::int32_t name = fc->FindField("NAME"), pop = fc->FindField("POP"), area = fc->FindField("AREA");
        for (int i = 0; i < kRows; ++i) {
            buffer->Shape(MakePoint(i, i));
            buffer->Value(name, "p" + std::to_string(i));
            buffer->Value(pop, i * 10);
            buffer->Value(area, i / 4.0);
            oids.push_back(cursor->InsertFeature(*buffer));
        }
        cursor->Flush();
        return fc;
    }
    std::int32_t FirstOid() const { return GetParam() == Format::Shapefile ? 0 : 1; }

    TempDir dir;
    std::shared_ptr<IWorkspace> ws;
    std::shared_ptr<ISpatialReference> sr;
    std::vector<std::int32_t> oids;
};

std::shared_ptr<IQueryFilter> Where(const std::string& clause) {
    auto filter = std::make_shared<QueryFilter>();
    filter->WhereClause(clause);
    return filter;
}

TEST_P(FeatureClassTest, InsertedRowsReadBackWithTheirOidsValuesAndShapes) {
    auto fc = PointsClass();
    // Shapefiles number rows from 0 (FID), geodatabases and GeoPackages from 1.
    for (int i = 0; i < kRows; ++i)
        EXPECT_EQ(oids[static_cast<std::size_t>(i)], FirstOid() + i);
    EXPECT_EQ(fc->FeatureCount(nullptr), kRows);

    auto cursor = fc->Search(nullptr, false);
    int n = 0;
    while (auto f = cursor->NextFeature()) {
        EXPECT_EQ(f->OID(), FirstOid() + n);
        EXPECT_EQ(f->Value(fc->FindField("NAME")).ToString(), "p" + std::to_string(n));
        EXPECT_EQ(f->Value(fc->FindField("POP")).ToLong(), n * 10);
        EXPECT_EQ(f->Value(fc->FindField("AREA")).ToDouble(), n / 4.0); // quarters are exact in decimal text
        auto point = std::dynamic_pointer_cast<IPoint>(f->Shape());
        ASSERT_TRUE(point);
        EXPECT_EQ(point->X(), n); // coordinates are stored as doubles: exact
        EXPECT_EQ(point->Y(), n);
        EXPECT_EQ(f->Value(fc->FindField(fc->OIDFieldName())).ToLong(), f->OID());
        ++n;
    }
    EXPECT_EQ(n, kRows);
    EXPECT_EQ(cursor->NextFeature(), nullptr);
}

TEST_P(FeatureClassTest, WhereClausesAndFieldLookupIgnoreCase) {
    auto fc = PointsClass();
    EXPECT_EQ(fc->FeatureCount(Where("POP > 45")), 5);
    EXPECT_EQ(fc->FeatureCount(Where("pop >= 30 AND name <> 'p4'")), 6);
    EXPECT_EQ(fc->FindField("pop"), fc->FindField("POP"));
    EXPECT_EQ(fc->FindField("no_such_field"), -1);
    auto table = std::dynamic_pointer_cast<ITable>(fc);
    ASSERT_TRUE(table);
    EXPECT_EQ(table->RowCount(Where("NAME = 'p3'")), 1);
}

TEST_P(FeatureClassTest, UnreadableWhereClauseIsAFaultNamingTheTable) {
    auto fc = PointsClass();
    try {
        fc->Search(Where("NO_SUCH_FIELD > 1"), true);
        FAIL() << "no fault";
    } catch (const Fault& f) {
        EXPECT_NE(f.Description().find("cities"), std::string::npos) << f.Description();
    }
}

TEST_P(FeatureClassTest, IntersectsFilterIsExactAndCountsBoundaries) {
    auto fc = PointsClass();
    auto filter = std::make_shared<SpatialFilter>();
    // Triangle (0,0) (0,4) (4,0): (0,0) is a vertex, (1,1) inside, (2,2) on the hypotenuse;
    // (3,3) lies inside the triangle's box but outside the triangle.
    filter->Geometry(MakePolygon({{{0, 0}, {0, 4}, {4, 0}, {0, 0}}}));
    filter->SpatialRel(esriSpatialRelIntersects);
    EXPECT_EQ(fc->FeatureCount(filter), 3);
    filter->SpatialRel(esriSpatialRelEnvelopeIntersects);
    EXPECT_EQ(fc->FeatureCount(filter), 5);
    filter->SpatialRel(esriSpatialRelIntersects);
    filter->WhereClause("POP > 0");
    EXPECT_EQ(fc->FeatureCount(filter), 2);
}

TEST_P(FeatureClassTest, UpdateCursorRewritesAndDeletesRows) {
    auto fc = PointsClass();
    {
        auto cursor = fc->Update(Where("POP >= 50"), false);
        while (auto f = cursor->NextFeature()) {
            if (f->Value(fc->FindField("POP")).ToLong() == 90) {
                cursor->DeleteFeature();
                continue;
            }
            f->Value(fc->FindField("NAME"), "big");
            f->Shape(MakePoint(100, 200));
            cursor->UpdateFeature(*f);
        }
    }
    EXPECT_EQ(fc->FeatureCount(nullptr), kRows - 1);
    EXPECT_EQ(fc->FeatureCount(Where("NAME = 'big'")), 4);
    auto moved = fc->GetFeature(FirstOid() + 5);
    auto point = std::dynamic_pointer_cast<IPoint>(moved->Shape());
    EXPECT_EQ(point->X(), 100);
    EXPECT_EQ(point->Y(), 200);
    EXPECT_THROW(fc->GetFeature(FirstOid() + 9), Fault);
}

TEST_P(FeatureClassTest, RecyclingCursorsHandBackOneRowObject) {
    auto fc = PointsClass();
    auto recycling = fc->Search(nullptr, true);
    auto a = recycling->NextFeature();
    auto b = recycling->NextFeature();
    EXPECT_EQ(a, b);
    EXPECT_EQ(b->OID(), FirstOid() + 1);
    auto fresh = fc->Search(nullptr, false);
    auto c = fresh->NextFeature();
    auto d = fresh->NextFeature();
    EXPECT_NE(c, d);
    EXPECT_EQ(c->OID(), FirstOid());
    // A shape kept by the caller is not overwritten by the next row.
    auto keep = recycling->NextFeature()->Shape();
    recycling->NextFeature();
    EXPECT_EQ(std::dynamic_pointer_cast<IPoint>(keep)->X(), 2);
}

TEST_P(FeatureClassTest, StoreOfNewAndFetchedRows) {
    auto fc = PointsClass();
    auto feature = fc->CreateFeature();
    EXPECT_FALSE(feature->HasOID());
    feature->Shape(MakePoint(7.5, -3.25));
    feature->Value(fc->FindField("NAME"), "stored");
    feature->Store();
    EXPECT_TRUE(feature->HasOID());
    EXPECT_EQ(feature->OID(), FirstOid() + kRows);
    auto again = fc->GetFeature(feature->OID());
    EXPECT_EQ(again->Value(fc->FindField("NAME")).ToString(), "stored");
    again->Value(fc->FindField("POP"), 12345);
    again->Store();
    EXPECT_EQ(fc->GetFeature(feature->OID())->Value(fc->FindField("POP")).ToLong(), 12345);
    again->Delete();
    EXPECT_EQ(fc->FeatureCount(nullptr), kRows);
}

TEST_P(FeatureClassTest, ValuesConvertToTheFieldTypeOrFault) {
    auto fc = PointsClass();
    auto feature = fc->CreateFeature();
    feature->Value(fc->FindField("POP"), "42");
    EXPECT_EQ(feature->Value(fc->FindField("POP")).Type(), VarType::Long);
    EXPECT_THROW(feature->Value(fc->FindField("POP"), "abc"), Fault);
    EXPECT_THROW(feature->Value(fc->FindField(fc->OIDFieldName()), 5), Fault);
    EXPECT_THROW(feature->Value(99, 5), Fault);
    feature->Value(fc->FindField("AREA"), Variant::Null());
    EXPECT_TRUE(feature->Value(fc->FindField("AREA")).IsNull());
}

TEST_P(FeatureClassTest, OpeningIsByNameInAnyCaseAndFailsWhenAbsent) {
    auto fc = PointsClass();
    auto& fws = dynamic_cast<IFeatureWorkspace&>(*ws);
    EXPECT_EQ(fws.OpenFeatureClass("CITIES"), fc);
    EXPECT_EQ(std::dynamic_pointer_cast<IFeatureClass>(fws.OpenTable("cities")), fc);
    EXPECT_THROW(fws.OpenFeatureClass("towns"), Fault);
    EXPECT_THROW(fws.OpenTable("towns"), Fault);
    EXPECT_THROW(CreateClass(*ws, "cities", esriGeometryPoint, sr), Fault);
}

TEST_P(FeatureClassTest, DatasetIdentityInTheHostsWords) {
    auto fc = PointsClass();
    auto ds = std::dynamic_pointer_cast<IDataset>(fc);
    ASSERT_TRUE(ds);
    EXPECT_EQ(ds->Name(), "cities");
    EXPECT_EQ(ds->Workspace(), ws);
    const std::map<Format, std::string> categories = {{Format::Shapefile, "Shapefile Feature Class"},
                                                      {Format::FileGDB, "File Geodatabase Feature Class"},
                                                      {Format::GeoPackage, "GeoPackage Feature Class"}};
    EXPECT_EQ(ds->Category(), categories.at(GetParam()));
    EXPECT_EQ(ds->Type(), esriDTFeatureClass);
    auto props = ds->PropertySet();
    EXPECT_EQ(props->GetProperty("DATABASE").ToString(), ws->PathName());
    if (GetParam() == Format::FileGDB)
        EXPECT_EQ(props->GetProperty("Datafile Format").ToLong(), 0);
    else
        EXPECT_THROW(props->GetProperty("Datafile Format"), Fault);
    auto info = std::dynamic_pointer_cast<IObjectClassInfo2>(fc);
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->CanBypassEditSession());
    auto versioned = std::dynamic_pointer_cast<IVersionedObject>(fc);
    ASSERT_TRUE(versioned);
    EXPECT_FALSE(versioned->IsRegisteredAsVersioned());
    EXPECT_EQ(fc->ShapeType(), esriGeometryPoint);
    EXPECT_EQ(fc->FeatureType(), esriFTSimple);
}

TEST_P(FeatureClassTest, DeletedClassIsGone) {
    auto fc = PointsClass();
    auto& fws = dynamic_cast<IFeatureWorkspace&>(*ws);
    std::dynamic_pointer_cast<IDataset>(fc)->Delete();
    EXPECT_THROW(fws.OpenFeatureClass("cities"), Fault);
    EXPECT_TRUE(ws->DatasetNames(esriDTFeatureClass).empty());
    auto recreated = CreateClass(*ws, "cities", esriGeometryPolygon, sr);
    EXPECT_EQ(recreated->ShapeType(), esriGeometryPolygon);
}

TEST_P(FeatureClassTest, ExtentAndReferenceOfTheClass) {
    auto fc = PointsClass();
    auto geo = std::dynamic_pointer_cast<IGeoDataset>(fc);
    ASSERT_TRUE(geo);
    auto extent = geo->Extent();
    EXPECT_EQ(extent->XMin(), 0);
    EXPECT_EQ(extent->YMax(), kRows - 1);
    EXPECT_EQ(geo->SpatialReference()->Name(), "GCS_WGS_1984");
}

TEST_P(FeatureClassTest, TablesWithoutShapes) {
    auto& fws = dynamic_cast<IFeatureWorkspace&>(*ws);
    auto fields = std::make_shared<Fields>();
    fields->AddField(MakeField("OBJECTID", esriFieldTypeOID));
    fields->AddField(MakeField("LABEL", esriFieldTypeString, 12));
    auto table = fws.CreateTable("notes", fields, nullptr, nullptr, "");
    auto row = table->CreateRow();
    row->Value(table->FindField("LABEL"), "first");
    row->Store();
    EXPECT_EQ(table->RowCount(nullptr), 1);
    EXPECT_THROW(fws.OpenFeatureClass("notes"), Fault);
    EXPECT_EQ(dynamic_cast<IFeatureClass*>(table.get()), nullptr);
    EXPECT_EQ(ws->DatasetNames(esriDTTable), std::vector<std::string>{"notes"});
}

INSTANTIATE_TEST_SUITE_P(Formats, FeatureClassTest,
                         ::testing::Values(Format::Shapefile, Format::FileGDB, Format::GeoPackage),
                         [](const auto& info) { return FormatName(info.param); });

} // namespace
} // namespace tess::test
