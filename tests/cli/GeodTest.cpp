// `tessarine geod` against an independent geodesic solution (GeographicLib),
// and its handling of input lines and spheroids.

#include <gtest/gtest.h>

#include <GeographicLib/Geodesic.hpp>

#include <array>
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

TEST(Geod, EveryProblemThatCannotBeSolvedGetsErrorAndTheOthersAnAnswer) {
    // Out of range, not finite, not a number, and an arithmetic fault (latitudes so close that
    // sinSigma underflows to 0): each line "error", never a fallback value.
    const Output inverse = Geod({"geod", "inverse"}, "0 95 10 10\n0 0 1 0\n0 nan 1 1\n1 1 inf 2\n"
                                                      "0 0 0 1e-300\n10 -90.5 0 0\n10 -90 0 90\n");
    EXPECT_EQ(inverse.code, 1);
    ASSERT_EQ(inverse.lines.size(), 7u);
    for (std::size_t i : {0u, 2u, 3u, 4u, 5u})
        EXPECT_EQ(inverse.lines[i], "error") << i;
    EXPECT_EQ(inverse.rows[1].size(), 3u);
    EXPECT_EQ(inverse.rows[6].size(), 3u); // the poles themselves are positions
    EXPECT_NE(inverse.err.find("line 1: lat1 95 is outside [-90, 90]"), std::string::npos) << inverse.err;
    EXPECT_NE(inverse.err.find("line 3: lat1 \"nan\" is not a finite number"), std::string::npos);
    EXPECT_NE(inverse.err.find("line 5: no solution"), std::string::npos);
    EXPECT_NE(inverse.err.find("line 6: lat1 -90.5"), std::string::npos);

    const Output direct = Geod({"geod", "direct"}, "0 0 90 far\n0 0 90 1000\n0 91 90 1000\n+10 +50 +45 +1e5\n");
    EXPECT_EQ(direct.code, 1);
    ASSERT_EQ(direct.lines.size(), 4u);
    EXPECT_EQ(direct.lines[0], "error");
    EXPECT_EQ(direct.rows[1].size(), 3u);
    EXPECT_EQ(direct.lines[2], "error");
    EXPECT_EQ(direct.rows[3].size(), 3u);
    EXPECT_NE(direct.err.find("line 1: distance \"far\" is not a number"), std::string::npos) << direct.err;

    // One problem on the command line: the same answer; a wrong count is bad usage.
    const Output one = Geod({"geod", "inverse", "0", "95", "10", "10"});
    EXPECT_EQ(one.code, 1);
    EXPECT_EQ(one.lines, std::vector<std::string>{"error"});
    EXPECT_NE(one.err.find("geod inverse: lat1 95 is outside"), std::string::npos) << one.err;
    EXPECT_EQ(Geod({"geod", "direct", "0", "0", "90"}).code, 2);
}

TEST(Geod, PrecisionSetsTheDecimalsOfMetresAndFiveMoreOfDegrees) {
    const Output two = Geod({"geod", "inverse", "-p", "2", "0", "0", "1", "0"});
    ASSERT_EQ(two.code, 0) << two.err;
    EXPECT_EQ(two.lines.at(0), "111319.49 90.0000000 90.0000000");
    const Output none = Geod({"geod", "direct", "--precision", "0"}, "0 0 90 111319.49\n");
    EXPECT_EQ(none.lines.at(0), "1.00000 0.00000 90.00000");
    const Output ten = Geod({"geod", "inverse", "-p", "10", "0", "0", "1", "0"});
    EXPECT_EQ(ten.lines.at(0).substr(ten.lines[0].find(' ')), " 90.000000000000000 90.000000000000000");
    for (const char* bad : {"-1", "11"})
        EXPECT_EQ(Geod({"geod", "inverse", "-p", bad, "0", "0", "1", "0"}).code, 2) << bad;
}

TEST(Geod, LinesThatDidNotConvergeAreMarkedAndWarnedAbout) {
    const GeographicLib::Geodesic wgs84(kWgs84A, kWgs84F);
    // Around the antipode of (0, 0) and of (30, 40): some settle, some do not. A line that is not
    // marked must be right; a marked one is allowed any error, and 0 0 180 0 is 100 km short.
    std::string input = "0 0 180 0\n";
    std::vector<std::array<double, 4>> problems{{0, 0, 180, 0}};
    for (int i = -6; i <= 6; ++i)
        for (const auto& [lon, lat] : {std::pair{0.0, 0.0}, std::pair{30.0, 40.0}}) {
            const std::array<double, 4> p{lon, lat, lon + 179.6 + 0.07 * i, -lat + 0.03 * i};
            problems.push_back(p);
            input += std::to_string(p[0]) + " " + std::to_string(p[1]) + " " + std::to_string(p[2]) + " " +
                     std::to_string(p[3]) + "\n";
        }
    const Output out = Geod({"geod", "inverse"}, input);
    EXPECT_EQ(out.code, 0) << out.err;
    ASSERT_EQ(out.lines.size(), problems.size());
    int marked = 0;
    for (std::size_t i = 0; i < problems.size(); ++i) {
        const auto& p = problems[i];
        double s12, azi1, azi2;
        wgs84.Inverse(p[1], p[0], p[3], p[2], s12, azi1, azi2);
        const bool isMarked = out.lines[i].ends_with(" # not converged");
        if (isMarked) {
            ++marked;
            EXPECT_NE(out.err.find("line " + std::to_string(i + 1) + ": not converged"), std::string::npos);
        } else {
            EXPECT_NEAR(out.rows[i].at(0), s12, kDistanceTolerance) << out.lines[i];
        }
    }
    EXPECT_TRUE(out.lines[0].ends_with(" # not converged")) << out.lines[0];
    EXPECT_GT(20003931.4586 - out.rows[0].at(0), 90000.0); // metres: why the mark is there
    EXPECT_GT(marked, 1);
    EXPECT_LT(marked, static_cast<int>(problems.size()));

    const Output one = Geod({"geod", "inverse", "0", "0", "180", "0"});
    EXPECT_EQ(one.code, 0);
    EXPECT_NE(one.err.find("geod inverse: not converged in 40 passes"), std::string::npos) << one.err;
}

TEST(Geod, SpheroidByFlatteningPlatformCodeAndEngineName) {
    const std::string line = "10 50 11 51.5\n";
    const Output byFlattening = Geod({"geod", "inverse", "--spheroid", "6378137,f=1/298.257223563"}, line);
    ASSERT_EQ(byFlattening.code, 0) << byFlattening.err;
    EXPECT_EQ(Geod({"geod", "inverse", "--spheroid", "WGS84"}, line).lines, byFlattening.lines);
    EXPECT_EQ(Geod({"geod", "inverse", "--spheroid", "epsg:7030"}, line).lines, byFlattening.lines);
    EXPECT_EQ(Geod({"geod", "inverse", "--spheroid", "6378137,f=0.0033528106647474805"}, line).lines,
              byFlattening.lines);

    // GRS 1980 differs from WGS 1984 by 0.1 mm in b: the solution must be GRS 1980's own.
    const GeographicLib::Geodesic grs80(6378137.0, 1 / 298.257222101);
    double s12, azi1, azi2;
    grs80.Inverse(50, 10, 51.5, 11, s12, azi1, azi2);
    const Output byName = Geod({"geod", "inverse", "-p", "6", "--spheroid", "grs80"}, line);
    ASSERT_EQ(byName.code, 0) << byName.err;
    EXPECT_NEAR(byName.rows.at(0).at(0), s12, 1e-5); // metres: a 190 km line, Vincenty within 10 um
    const Output clarke = Geod({"geod", "inverse", "--spheroid", "clrk66"}, line);
    EXPECT_EQ(clarke.lines, Geod({"geod", "inverse", "--spheroid", "Clarke 1866"}, line).lines);
}

TEST(Geod, SpheroidNumbersThatAreNoAxesAreRefusedWithTheFormToWrite) {
    struct Case {
        const char* text;
        const char* hint;
    };
    const Case cases[] = {
        {"6378137,298.257223563", "write 6378137,f=1/298.257223563"},
        {"6378137,0.0033528", "write 6378137,f=0.0033528"},
        {"6356752,6378137", "comes first: 6378137,6356752"},
        {"6378137,3000000", "b lies between a/2 and a"},
        {"6378137,f=1/1.5", "f from 0 to 1/2"},
        {"6378137,f=2/3", "f from 0 to 1/2"},
        {"-1,1", "a,f=1/RF"},
        {"6378137", "no spheroid has this code (a sphere of this radius is 6378137,6378137)"},
        {"EPSG:4326", "no spheroid has this code"},
        {"nonsense", "no spheroid has this name"},
    };
    for (const Case& c : cases) {
        const Output out = Geod({"geod", "inverse", "--spheroid", c.text, "0", "0", "1", "1"});
        EXPECT_EQ(out.code, 2) << c.text;
        EXPECT_TRUE(out.lines.empty()) << c.text;
        EXPECT_NE(out.err.find(c.hint), std::string::npos) << c.text << ": " << out.err;
    }
}

TEST(Geod, EachSubcommandHasItsOwnHelp) {
    const Output inverse = Geod({"geod", "inverse", "--help"});
    const Output direct = Geod({"geod", "direct", "--help"});
    const Output spheroids = Geod({"geod", "spheroids", "--help"});
    auto text = [](const Output& out) {
        std::string all;
        for (const std::string& line : out.lines)
            all += line + "\n";
        return all;
    };
    const std::string inverseText = text(inverse), directText = text(direct), spheroidsText = text(spheroids);
    EXPECT_NE(inverseText.find("Prints \"distance azimuth1 azimuth2\""), std::string::npos) << inverseText;
    EXPECT_NE(inverseText.find("# not converged"), std::string::npos);
    EXPECT_NE(inverseText.find("(default 4"), std::string::npos);
    EXPECT_NE(inverseText.find("(default WGS 1984)"), std::string::npos);
    EXPECT_NE(directText.find("Prints \"lon2 lat2 azimuth2\""), std::string::npos) << directText;
    EXPECT_EQ(directText.find("distance azimuth1 azimuth2"), std::string::npos);
    EXPECT_NE(spheroidsText.find("semi-minor axes in metres"), std::string::npos) << spheroidsText;
    EXPECT_EQ(spheroidsText.find("azimuth"), std::string::npos);
    EXPECT_EQ(inverseText.find("values("), std::string::npos);
}

} // namespace
} // namespace tess::cli
