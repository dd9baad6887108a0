// Selection sets: sets of object IDs over one class, searched, updated and combined.

#include <gtest/gtest.h>

#include "DataTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/Row.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/geometry/Geometries.h"
#include "platform/system/Fault.h"

namespace tess::test {
namespace {

constexpr int kRows = 20;

class SelectionSetTest : public ::testing::TestWithParam<Format> {
protected:
    void SetUp() override {
        ws = MakeWorkspace(GetParam(), dir);
        fc = CreateClass(*ws, "grid", esriGeometryPoint, nullptr, {MakeField("VAL", esriFieldTypeInteger)});
        auto cursor = fc->Insert(true);
        auto buffer = fc->CreateFeatureBuffer();
        for (int i = 0; i < kRows; ++i) {
            buffer->Shape(MakePoint(i % 5, i / 5));
            buffer->Value(fc->FindField("VAL"), i);
            cursor->InsertFeature(*buffer);
        }
    }
    std::int32_t Oid(int i) const { return (GetParam() == Format::Shapefile ? 0 : 1) + i; }
    std::vector<std::int32_t> Walk(ICursor& cursor) {
        std::vector<std::int32_t> oids;
        while (auto row = cursor.NextRow())
            oids.push_back(row->OID());
        return oids;
    }
    std::shared_ptr<IQueryFilter> Where(const std::string& clause) {
        auto filter = std::make_shared<QueryFilter>();
        filter->WhereClause(clause);
        return filter;
    }

    TempDir dir;
    std::shared_ptr<IWorkspace> ws;
    std::shared_ptr<IFeatureClass> fc;
};

TEST_P(SelectionSetTest, SelectCountAndSearchInOidOrder) {
    auto set = fc->Select(Where("VAL >= 15 OR VAL = 3"), esriSelectionTypeIDSet, esriSelectionOptionNormal, nullptr);
    EXPECT_EQ(set->Count(), 6);
    auto ids = set->IDs();
    std::vector<std::int32_t> listed;
    for (std::int32_t id = ids->Next(); id != -1; id = ids->Next())
        listed.push_back(id);
    const std::vector<std::int32_t> expected = {Oid(3), Oid(15), Oid(16), Oid(17), Oid(18), Oid(19)};
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(Walk(*set->Search(nullptr, true)), expected);
    EXPECT_EQ(Walk(*set->Search(Where("VAL > 16"), false)), (std::vector<std::int32_t>{Oid(17), Oid(18), Oid(19)}));
    // Feature classes hand out feature cursors.
    auto features = std::dynamic_pointer_cast<IFeatureCursor>(set->Search(nullptr, true));
    ASSERT_TRUE(features);
    EXPECT_TRUE(features->NextFeature()->Shape());
}

TEST_P(SelectionSetTest, SpatialFilterWithinASelection) {
    auto set = fc->Select(Where("VAL < 10"), esriSelectionTypeIDSet, esriSelectionOptionNormal, nullptr);
    auto filter = std::make_shared<SpatialFilter>();
    filter->Geometry(MakePolygon({Square(0, 0, 2, true)})); // x and y in [0, 2], boundaries included
    filter->SpatialRel(esriSpatialRelIntersects);
    // Rows 0..9 lie at y 0 and 1, x 0..4: x <= 2 keeps 3 of each row.
    EXPECT_EQ(Walk(*set->Search(filter, true)).size(), 6u);
    auto narrowed = set->Select(filter, esriSelectionTypeIDSet, esriSelectionOptionNormal, nullptr);
    EXPECT_EQ(narrowed->Count(), 6);
}

TEST_P(SelectionSetTest, UpdateThroughASelectionChangesOnlyItsRows) {
    auto set = std::dynamic_pointer_cast<ISelectionSet2>(
        fc->Select(Where("VAL < 4"), esriSelectionTypeIDSet, esriSelectionOptionNormal, nullptr));
    ASSERT_TRUE(set);
    {
        auto cursor = set->Update(nullptr, false);
        while (auto row = cursor->NextRow()) {
            row->Value(fc->FindField("VAL"), 1000);
            cursor->UpdateRow(*row);
        }
    }
    EXPECT_EQ(fc->FeatureCount(Where("VAL = 1000")), 4);
    EXPECT_EQ(fc->FeatureCount(nullptr), kRows);
}

TEST_P(SelectionSetTest, AddRemoveCombineAndOptions) {
    auto a = fc->Select(Where("VAL < 5"), esriSelectionTypeIDSet, esriSelectionOptionNormal, nullptr);
    auto b = fc->Select(Where("VAL >= 3 AND VAL < 8"), esriSelectionTypeIDSet, esriSelectionOptionNormal, nullptr);
    std::shared_ptr<ISelectionSet> result;
    a->Combine(b, esriSetUnion, result);
    EXPECT_EQ(result->Count(), 8);
    a->Combine(b, esriSetIntersection, result);
    EXPECT_EQ(result->Count(), 2);
    a->Combine(b, esriSetDifference, result);
    EXPECT_EQ(result->Count(), 3);
    a->Combine(b, esriSetSymDifference, result);
    EXPECT_EQ(result->Count(), 6);

    a->Add(Oid(19));
    a->Add(Oid(19));
    EXPECT_EQ(a->Count(), 6);
    a->RemoveList({Oid(0), Oid(1)});
    a->AddList({Oid(10), Oid(2)});
    EXPECT_EQ(Walk(*a->Search(nullptr, true)), (std::vector<std::int32_t>{Oid(2), Oid(3), Oid(4), Oid(10), Oid(19)}));

    EXPECT_EQ(fc->Select(nullptr, esriSelectionTypeIDSet, esriSelectionOptionOnlyOne, nullptr)->Count(), 1);
    EXPECT_EQ(fc->Select(nullptr, esriSelectionTypeIDSet, esriSelectionOptionEmpty, nullptr)->Count(), 0);
    auto empty = MakeSelectionSet(std::dynamic_pointer_cast<ITable>(fc));
    EXPECT_EQ(empty->Count(), 0);
    EXPECT_EQ(empty->Search(nullptr, true)->NextRow(), nullptr);
}

TEST_P(SelectionSetTest, RowsDeletedAfterSelectingAreSkipped) {
    auto set = fc->Select(Where("VAL < 3"), esriSelectionTypeIDSet, esriSelectionOptionNormal, nullptr);
    fc->GetFeature(Oid(1))->Delete();
    std::vector<std::int32_t> values;
    auto cursor = set->Search(nullptr, true);
    while (auto row = cursor->NextRow())
        values.push_back(row->Value(fc->FindField("VAL")).ToLong());
    if (GetParam() == Format::Shapefile) {
        // A saved change packs a shapefile, as the host packs it: the FIDs after the deleted row
        // move down by one, so the same FIDs now name the next rows.
        EXPECT_EQ(values, (std::vector<std::int32_t>{0, 2, 3}));
        EXPECT_EQ(fc->FeatureCount(nullptr), kRows - 1);
    } else {
        EXPECT_EQ(values, (std::vector<std::int32_t>{0, 2}));
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, SelectionSetTest,
                         ::testing::Values(Format::Shapefile, Format::FileGDB, Format::GeoPackage),
                         [](const auto& info) { return FormatName(info.param); });

} // namespace
} // namespace tess::test
