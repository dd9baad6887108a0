// `tessarine geod` against an independent geodesic solution (GeographicLib),
// and its handling of input lines and spheroids.

#include <gtest/gtest.h>

#include <GeographicLib/Geodesic.hpp>

#include <cmath>
#include <sstream>

#include "CliApp.h"

namespace tess::cli {
namespace {

// Printed resolution is 1e-4 m and 1e-9 degree; the solutions are good to 0.1 mm and a few
// micrometres sideways, so the checks allow 0.2 mm in distance and 1e-8 degree in angles.
constexpr double kDistanceTolerance = 2e-4; // metres
constexpr double kAngleTolerance = 1e-8;    // degrees
constexpr double kWgs84A = 6378137.0;
constexpr double kWgs84F = 1 / 298.257223563;

struct Output {
    int code;
    std::vector<std::vector<double>> rows;
    std::vector<std::string> lines;
    std::string err;
};

Output Geod(const std::vector<std::string>& args, const std::string& input = "") {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    Console console{in, out, err, false, false};
    Output result{RunTessarine(args, console), {}, {}, err.str()};
    std::istringstream lines(out.str());
    for (std::string line; std::getline(lines, line);) {
        result.lines.push_back(line);
        std::istringstream words(line);
        std::vector<double> row;
        for (double value; words >> value;)
            row.push_back(value);
        result.rows.push_back(row);
    }
    return result;
}

double Azimuth360(double azimuth) { return azimuth < 0 ? azimuth + 360 : azimuth; }

struct Line {
    double lon1, lat1, lon2, lat2;
};

// Short, long, across the 180 meridian, near a pole, along a meridian.
const Line kLines[] = {
    {-77.0365, 38.8977, 2.2945, 48.8584}, {151.2093, -33.8688, -0.1276, 51.5072}, {179.5, 10, -179.5, 11},
    {10, 89.9, 100, 89.8},                {5, -40, 5, 40},
};

TEST(GeodInverse, AgreesWithAnIndependentSolution) {
    const GeographicLib::Geodesic wgs84(kWgs84A, kWgs84F);
    for (const Line& line : kLines) {
        double s12, azi1, azi2;
        wgs84.Inverse(line.lat1, line.lon1, line.lat2, line.lon2, s12, azi1, azi2);
        const Output out = Geod({"geod", "inverse", std::to_string(line.lon1), std::to_string(line.lat1),
                                 std::to_string(line.lon2), std::to_string(line.lat2)});
        ASSERT_EQ(out.code, 0) << out.err;
        ASSERT_EQ(out.rows.size(), 1u);
        ASSERT_EQ(out.rows[0].size(), 3u);
        EXPECT_NEAR(out.rows[0][0], s12, kDistanceTolerance) << line.lon1 << " " << line.lat1;
        EXPECT_NEAR(out.rows[0][1], Azimuth360(azi1), kAngleTolerance);
        EXPECT_NEAR(out.rows[0][2], Azimuth360(azi2), kAngleTolerance);
    }
}

TEST(GeodInverse, OneDegreeOfTheEquatorAndIdenticalPoints) {
    const Output out = Geod({"geod", "inverse"}, "0 0 1 0\n10 20 10 20\n");
    ASSERT_EQ(out.code, 0) << out.err;
    ASSERT_EQ(out.rows.size(), 2u);
    EXPECT_NEAR(out.rows[0][0], 111319.49, 0.005); // metres, to the centimetre
    EXPECT_EQ(out.lines[0].substr(out.lines[0].find(' ')), " 90.000000000 90.000000000");
    EXPECT_EQ(out.lines[1], "0.0000 0.000000000 0.000000000");
}

TEST(GeodDirect, AgreesWithAnIndependentSolution) {
    const GeographicLib::Geodesic wgs84(kWgs84A, kWgs84F);
    struct Problem {
        double lon, lat, azimuth, distance;
    };
    for (const Problem& p : {Problem{0, 0, 90, 111319.49}, Problem{-70, -45, 30, 2500000},
                             Problem{170, 60, 80, 1000000}, Problem{12, 55, 200, 12345.678}}) {
        double lat2, lon2, azi2;
        wgs84.Direct(p.lat, p.lon, p.azimuth, p.distance, lat2, lon2, azi2);
        const Output out = Geod({"geod", "direct", std::to_string(p.lon), std::to_string(p.lat),
                                 std::to_string(p.azimuth), std::to_string(p.distance)});
        ASSERT_EQ(out.code, 0) << out.err;
        ASSERT_EQ(out.rows.at(0).size(), 3u);
        // The longitude is not brought back into [-180, 180]: compare modulo a turn.
        EXPECT_NEAR(std::remainder(out.rows[0][0] - lon2, 360.0), 0.0, kAngleTolerance) << p.lon;
        EXPECT_NEAR(out.rows[0][1], lat2, kAngleTolerance);
        EXPECT_NEAR(out.rows[0][2], Azimuth360(azi2), kAngleTolerance);
    }
}

TEST(Geod, SpheroidsByNameCodeAndAxesAgree) {
    // Mars 2000: a = 3396190 m, b = 3376200 m.
    const GeographicLib::Geodesic mars(3396190.0, (3396190.0 - 3376200.0) / 3396190.0);
    double s12, azi1, azi2;
    mars.Inverse(18.4, -4.5, -5.4, 137.4, s12, azi1, azi2); // latitude first
    const std::string line = "-4.5 18.4 137.4 -5.4\n";
    const Output byName = Geod({"geod", "inverse", "--spheroid", "mars 2000"}, line);
    const Output byConstant = Geod({"geod", "inverse", "--spheroid", "esriSRSpheroid_Mars2000"}, line);
    const Output byCode = Geod({"geod", "inverse", "--spheroid", "107905"}, line);
    const Output byAxes = Geod({"geod", "inverse", "--spheroid", "3396190,3376200"}, line);
    ASSERT_EQ(byName.code, 0) << byName.err;
    // Vincenty's series are cut for the Earth's flattening; Mars is 1.76 times flatter, and this
    // 8,300 km line is 0.25 mm off the exact solution. 1 mm bounds it with room for rounding.
    constexpr double kMarsDistanceTolerance = 1e-3; // metres
    EXPECT_NEAR(byName.rows.at(0).at(0), s12, kMarsDistanceTolerance);
    EXPECT_EQ(byConstant.lines, byName.lines);
    EXPECT_EQ(byCode.lines, byName.lines);
    EXPECT_EQ(byAxes.lines, byName.lines);

    const Output listed = Geod({"geod", "spheroids"});
    ASSERT_EQ(listed.code, 0);
    bool found = false;
    for (const std::string& l : listed.lines)
        found = found || (l.find("107905") != std::string::npos && l.find("3396190.0000") != std::string::npos);
    EXPECT_TRUE(found);
}

TEST(Geod, InputLinesKeepTheirPlaces) {
    // Comments and blank lines pass through; a bad line gets "error", the others go on.
    const Output out = Geod({"geod", "inverse"}, "# from to\n0,0, 1,0\n\n1 2 3\n0 0 0 1\n");
    EXPECT_EQ(out.code, 1);
    ASSERT_EQ(out.lines.size(), 5u);
    EXPECT_EQ(out.lines[0], "# from to");
    EXPECT_EQ(out.rows[1].size(), 3u);
    EXPECT_EQ(out.lines[2], "");
    EXPECT_EQ(out.lines[3], "error");
    EXPECT_EQ(out.rows[4].size(), 3u);
    EXPECT_NE(out.err.find("line 4"), std::string::npos) << out.err;
}

} // namespace
} // namespace tess::cli
