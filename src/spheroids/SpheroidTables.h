#pragma once
// Text of the platform spheroid tables (SpheroidTables.cpp).

namespace tess::USGS_Functions::detail {
extern const char* const kPlanetTable;
extern const char* const kCommonEarthTable;
} // namespace tess::USGS_Functions::detail
