// The catalogue as its consumers read it: rows per combination, combo flags,
// and the null writer's cells with their six exceptions.

#include <gtest/gtest.h>

#include "calculator/MeasureCatalogue.h"

namespace tess {
namespace {

struct Combination {
    esriGeometryType shape;
    std::int32_t kind;
    std::size_t rows;
};

TEST(MeasureCatalogue, EachCombinationHasItsOptionsNumberedFromOne) {
    const Combination combinations[] = {
        {esriGeometryPoint, spatial_kind::Unknown, 1},     {esriGeometryPoint, spatial_kind::Projected, 2},
        {esriGeometryPoint, spatial_kind::Geographic, 1},  {esriGeometryMultipoint, spatial_kind::Unknown, 2},
        {esriGeometryMultipoint, spatial_kind::Projected, 3}, {esriGeometryMultipoint, spatial_kind::Geographic, 2},
        {esriGeometryPolyline, spatial_kind::Unknown, 7},  {esriGeometryPolyline, spatial_kind::Projected, 11},
        {esriGeometryPolyline, spatial_kind::Geographic, 8}, {esriGeometryPolygon, spatial_kind::Unknown, 5},
        {esriGeometryPolygon, spatial_kind::Projected, 8}, {esriGeometryPolygon, spatial_kind::Geographic, 5},
    };
    std::size_t total = 0;
    for (const Combination& c : combinations) {
        const auto rows = CatalogueRows(c.shape, c.kind);
        ASSERT_EQ(rows.size(), c.rows) << c.shape << "/" << c.kind;
        for (std::size_t i = 0; i < rows.size(); ++i)
            EXPECT_EQ(rows[i]->id, static_cast<std::int16_t>(i + 1));
        total += rows.size();
    }
    EXPECT_EQ(total, 55U);
    EXPECT_EQ(MeasureCatalogue().size(), 55U);
    EXPECT_TRUE(CatalogueRows(esriGeometryEnvelope, spatial_kind::Geographic).empty());
}

TEST(MeasureCatalogue, OptionTwoMeansSomethingElseInEveryCombination) {
    EXPECT_STREQ(FindMeasureRow(esriGeometryPoint, spatial_kind::Projected, 2)->caption, "Longitude / Latitude");
    EXPECT_STREQ(FindMeasureRow(esriGeometryMultipoint, spatial_kind::Unknown, 2)->caption, "Number of Points");
    EXPECT_STREQ(FindMeasureRow(esriGeometryPolyline, spatial_kind::Projected, 2)->caption, "Spheroidal Length");
    EXPECT_STREQ(FindMeasureRow(esriGeometryPolygon, spatial_kind::Projected, 2)->caption, "Spherical Area");
    EXPECT_EQ(FindMeasureRow(esriGeometryPoint, spatial_kind::Geographic, 2), nullptr);
    // The geographic polyline's plain "Midpoint" is the spheroidal one, and slow.
    const MeasureRow* midpoint = FindMeasureRow(esriGeometryPolyline, spatial_kind::Geographic, 3);
    EXPECT_STREQ(midpoint->caption, "Midpoint");
    EXPECT_EQ(midpoint->measure, Measure::SphMidpoint);
    EXPECT_TRUE(midpoint->slow);
    EXPECT_FALSE(FindMeasureRow(esriGeometryPolyline, spatial_kind::Projected, 8)->slow);
}

TEST(MeasureCatalogue, ComboFlagsFollowTheFieldsOfTheRows) {
    const ComboFlags flags = ComboUseFlagsFor(esriGeometryPolyline, spatial_kind::Geographic);
    ComboFlags expected{};
    for (int index : {0, 2, 3, 4, 5, 6, 7, 8, 10, 12, 13})
        expected[static_cast<std::size_t>(index)] = true;
    EXPECT_EQ(flags, expected);
    EXPECT_EQ(ComboUseFlagsFor(esriGeometryEnvelope, spatial_kind::Unknown), ComboFlags{});
    EXPECT_EQ(ComboName(1, 1), "cbx12");
    EXPECT_EQ(ComboName(11, 0), "cbx111");
    EXPECT_EQ(ComboIndex(7, 0), 12);
    EXPECT_EQ(ComboIndex(7, 1), -1);
}

TEST(MeasureCatalogue, NullCellsMatchTheFieldsExceptSixPolylineMeasures) {
    int exceptions = 0;
    for (const MeasureRow& row : MeasureCatalogue()) {
        const std::uint8_t all = row.FieldCount() == 2 ? 3 : 1;
        if (row.nullFields == all)
            continue;
        ++exceptions;
        EXPECT_EQ(row.shapeKind, esriGeometryPolyline) << row.caption;
        EXPECT_EQ(row.nullFields, 0) << row.caption;
    }
    EXPECT_EQ(exceptions, 6);
}

} // namespace
} // namespace tess
