#include "GeodCommand.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <istream>
#include <memory>
#include <ostream>

#include "SpheroidChoice.h"
#include "TerminalUI.h"
#include "TextUtil.h"
#include "geodesy/GeodesyConstants.h"
#include "geodesy/Vincenty.h"
#include "platform/geometry/Point.h"

namespace tess::cli {
namespace {

using MyGeometricOperations::kVincentyPassLimit;
// WGS 1984 as the system's routines without a spheroid argument hold it.
using MyGeometricOperations::kWgs84SemiMajor;
using MyGeometricOperations::kWgs84SemiMinor;
using MyGeometricOperations::VincentyOutcome;

// Angles get this many decimal places more than distances: 1e-5 degree is about 1 m on the Earth.
constexpr int kExtraAngleDecimals = 5;
// Beyond 10 places of metres (15 of degrees) the digits are rounding noise of a double.
constexpr int kMaxPrecision = 10;
constexpr double kMaxLatitude = 90.0; // degrees
constexpr std::size_t kValuesPerProblem = 4;
// The end of a line whose solution ran out of passes: a comment for tools that read the numbers.
constexpr const char* kNotConvergedMark = "# not converged";

using Values = std::array<double, kValuesPerProblem>;

struct Kind {
    std::array<const char*, kValuesPerProblem> names;
    std::array<bool, kValuesPerProblem> latitude;
};
constexpr Kind kInverse{{"lon1", "lat1", "lon2", "lat2"}, {false, true, false, true}};
constexpr Kind kDirect{{"lon1", "lat1", "azimuth", "distance"}, {false, true, false, false}};

const Kind& KindOf(bool direct) { return direct ? kDirect : kInverse; }

std::string Expected(bool direct) {
    const Kind& kind = KindOf(direct);
    return std::string(kind.names[0]) + " " + kind.names[1] + " " + kind.names[2] + " " + kind.names[3] +
           (direct ? " (decimal degrees; the distance in the unit of the axes)" : " (decimal degrees)");
}

//! Puts the UI services of the run in place for its fault reports, and the previous ones back.
class UIScope {
public:
    explicit UIScope(std::shared_ptr<TerminalUI> ui) : ui_(ui), previous_(SetUI(std::move(ui))) {}
    ~UIScope() { SetUI(previous_); }
    UIScope(const UIScope&) = delete;
    UIScope& operator=(const UIScope&) = delete;
    TerminalUI& UI() const { return *ui_; }

private:
    std::shared_ptr<TerminalUI> ui_;
    std::shared_ptr<IUIServices> previous_;
};

std::string Fixed(double value, int decimals) {
    std::array<char, 512> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    return buffer.data();
}

//! A decimal number as users write it, "+" allowed; false for anything else.
bool ParseNumber(const std::string& word, double& value) {
    std::string_view text = word;
    if (text.size() > 1 && text.front() == '+' && text[1] != '-')
        text.remove_prefix(1);
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end;
}

//! The four values of a problem, or nothing and `problem` says what is wrong with them.
std::optional<Values> ParseProblem(const std::vector<std::string>& words, bool direct, std::string& problem) {
    const Kind& kind = KindOf(direct);
    if (words.size() != kValuesPerProblem) {
        problem = "expected " + Expected(direct) + ", found " + std::to_string(words.size()) + " value" +
                  (words.size() == 1 ? "" : "s");
        return std::nullopt;
    }
    Values values{};
    for (std::size_t i = 0; i < kValuesPerProblem; ++i) {
        const std::string& word = words[i];
        if (!ParseNumber(word, values[i])) {
            problem = std::string(kind.names[i]) + " " + Quoted(word) + " is not a number";
            return std::nullopt;
        }
        if (!std::isfinite(values[i])) {
            problem = std::string(kind.names[i]) + " " + Quoted(word) + " is not a finite number";
            return std::nullopt;
        }
        if (kind.latitude[i] && std::fabs(values[i]) > kMaxLatitude) {
            problem = std::string(kind.names[i]) + " " + word + " is outside [-90, 90]";
            return std::nullopt;
        }
    }
    return values;
}

struct Solution {
    std::string text;
    VincentyOutcome outcome;
};

class Solver {
public:
    Solver(bool direct, std::optional<Spheroid> spheroid, int precision)
        : direct_(direct), spheroid_(std::move(spheroid)), distanceDecimals_(precision),
          angleDecimals_(precision + kExtraAngleDecimals) {}

    Solution Solve(const Values& v) const {
        using namespace MyGeometricOperations;
        VincentyOutcome outcome = VincentyOutcome::Faulted;
        if (!direct_) {
            double azimuth1 = 0;
            double azimuth2 = 0;
            const double distance =
                spheroid_ ? DistanceVincentyNumbers2(v[0], v[1], v[2], v[3], azimuth1, azimuth2,
                                                     spheroid_->semiMajor, spheroid_->semiMinor, &outcome)
                          : DistanceVincentyNumbers(v[0], v[1], v[2], v[3], azimuth1, azimuth2, &outcome);
            return {Fixed(distance, distanceDecimals_) + " " + Fixed(azimuth1, angleDecimals_) + " " +
                        Fixed(azimuth2, angleDecimals_),
                    outcome};
        }
        const Point start(v[0], v[1]);
        Point end;
        double farAzimuth = 0;
        PointLineVincentyPerPoint2(start, v[3], v[2], end, farAzimuth,
                                   spheroid_ ? spheroid_->semiMajor : kWgs84SemiMajor,
                                   spheroid_ ? spheroid_->semiMinor : kWgs84SemiMinor, &outcome);
        return {Fixed(end.X(), angleDecimals_) + " " + Fixed(end.Y(), angleDecimals_) + " " +
                    Fixed(farAzimuth, angleDecimals_),
                outcome};
    }

private:
    bool direct_;
    std::optional<Spheroid> spheroid_;
    int distanceDecimals_;
    int angleDecimals_;
};

//! Answers one problem on the output; `where` starts the messages ("line 4: "). True when answered.
bool AnswerProblem(const Solver& solver, const std::vector<std::string>& words, bool direct,
                   const std::string& where, Console& console) {
    std::string problem;
    const std::optional<Values> values = ParseProblem(words, direct, problem);
    if (!values) {
        console.err << "tessarine: " << where << problem << '\n';
        console.out << "error\n";
        return false;
    }
    const Solution solution = solver.Solve(*values);
    switch (solution.outcome) {
    case VincentyOutcome::Settled:
        console.out << solution.text << '\n';
        return true;
    case VincentyOutcome::PassesSpent:
        console.err << "tessarine: " << where << "not converged in " << kVincentyPassLimit
                    << " passes (nearly antipodal positions); the values of the last pass can be off by "
                       "many kilometres\n";
        console.out << solution.text << ' ' << kNotConvergedMark << '\n';
        return true;
    case VincentyOutcome::Faulted:
        break;
    }
    console.err << "tessarine: " << where << "no solution: the arithmetic failed (see the fault report)\n";
    console.out << "error\n";
    return false;
}

constexpr const char* kGroupFooter = R"(
Positions are longitude before latitude, in decimal degrees. The solutions are the system's own
(Vincenty's formulae, at most 40 passes); "tessarine geod inverse --help" tells the details.

Examples:
  tessarine geod inverse -77.0365 38.8977 2.2945 48.8584
  tessarine geod direct 0 0 90 111319.49
  tessarine geod spheroids
)";

// What inverse and direct share: input lines, failures, the antipodal warning, exit codes.
constexpr const char* kProblemRules = R"(
Without positions on the command line, one problem is read from each line of the input (blanks
or commas between the numbers); blank lines and lines starting with "#" pass through unchanged.
A problem that cannot be solved (a latitude outside [-90, 90], a value that is no finite number,
an arithmetic fault) gets the line "error" and a message on stderr; the other lines are still
answered.
Nearly antipodal positions: the iteration may use up its 40 passes without settling, and the
values of the last pass can then be off by many kilometres ("0 0 180 0" comes out 100 km short).
Such a line ends in "# not converged", and a warning goes to stderr.
Exit codes: 0 every line answered (marked lines included), 1 a line got "error", 2 bad usage.
)";

constexpr const char* kInverseFooter = R"(
Prints "distance azimuth1 azimuth2": the distance in the unit of the spheroid's axes (metres for
every spheroid of the catalogue), azimuth1 at the first position, and azimuth2 the direction of
travel at the second position (not the azimuth back), in degrees from 0 to 360.
)";

constexpr const char* kDirectFooter = R"(
Prints "lon2 lat2 azimuth2": the position reached after distance (in the unit of the spheroid's
axes) along azimuth (degrees), and the direction of travel there. lon2 is not brought back into
[-180, 180]: a line across the 180th meridian gives values beyond it.
)";

constexpr const char* kInverseExamples = R"(
Examples:
  tessarine geod inverse -77.0365 38.8977 2.2945 48.8584
  tessarine geod inverse -p 2 --spheroid GRS80 10 50 11 51
  tessarine geod inverse --spheroid "Mars 2000" < pairs.txt
  tessarine geod inverse --spheroid 6378137,f=1/298.257223563 0 0 1 1
)";

constexpr const char* kDirectExamples = R"(
Examples:
  tessarine geod direct 0 0 90 111319.49
  tessarine geod direct --spheroid EPSG:7019 10 50 45 100000
  tessarine geod direct --spheroid 6378137,6356752.314245 -p 6 10 50 45 100000
)";

constexpr const char* kSpheroidsFooter = R"(
Lists the catalogue that --spheroid names: group (custom, planetary, Earth), code, name, and the
semi-major and semi-minor axes in metres. Custom spheroids come from spheroids.dat beside the
extension, one "name,a,b,note" per line.
Besides these, --spheroid takes EPSG:CODE or ESRI:CODE, the ellipsoid names of PROJ strings
(WGS84, GRS80, clrk66, intl...), two axes a,b, or a,f=1/RF.

Examples:
  tessarine geod spheroids
  tessarine geod spheroids | grep -i mars
)";

constexpr const char* kSpheroidHelp =
    "Catalogue name or code, EPSG:CODE, PROJ ellipsoid name (GRS80), a,b or a,f=1/RF (default WGS 1984)";

} // namespace

ExitCode RunGeod(const GeodOptions& options, Console& console) {
    if (options.precision < 0 || options.precision > kMaxPrecision) {
        console.err << "tessarine: -p/--precision takes 0 to " << kMaxPrecision << " decimal places, not "
                    << options.precision << '\n';
        return ExitCode::Usage;
    }
    UIScope scope(std::make_shared<TerminalUI>(console, Answer::No, ProgressStyle::None));
    std::optional<Spheroid> spheroid;
    if (!options.spheroid.empty()) {
        std::string problem;
        spheroid = ParseSpheroid(options.spheroid, problem);
        if (!spheroid) {
            console.err << "tessarine: " << problem << '\n';
            return ExitCode::Usage;
        }
    }
    const Solver solver(options.direct, spheroid, options.precision);
    const std::string command = options.direct ? "geod direct" : "geod inverse";

    if (!options.values.empty()) {
        if (options.values.size() != kValuesPerProblem) {
            console.err << "tessarine: " << command << " takes " << Expected(options.direct)
                        << ", or none to read problems from the input\n";
            return ExitCode::Usage;
        }
        return AnswerProblem(solver, options.values, options.direct, command + ": ", console) ? ExitCode::Success
                                                                                        : ExitCode::Failed;
    }

    bool failed = false;
    std::string line;
    for (int number = 1; std::getline(console.in, line); ++number) {
        const std::string trimmed = Trim(line);
        if (trimmed.empty() || trimmed.front() == '#') {
            console.out << line << '\n';
            continue;
        }
        if (!AnswerProblem(solver, SplitAny(trimmed, " \t,"), options.direct, "line " + std::to_string(number) + ": ",
                    console))
            failed = true;
        console.out.flush();
    }
    return failed ? ExitCode::Failed : ExitCode::Success;
}

ExitCode ListSpheroids(Console& console) {
    UIScope scope(std::make_shared<TerminalUI>(console, Answer::No, ProgressStyle::None));
    for (const Spheroid& spheroid : SpheroidCatalogue()) {
        std::array<char, 160> line{};
        std::snprintf(line.data(), line.size(), "%-9s %-7s %-42s %16.4f %16.4f", spheroid.group.c_str(),
                      spheroid.code.empty() ? "-" : spheroid.code.c_str(), spheroid.name.c_str(),
                      spheroid.semiMajor, spheroid.semiMinor);
        console.out << Trim(line.data()) << '\n';
    }
    return scope.UI().ErrorShown() ? ExitCode::Failed : ExitCode::Success;
}

GeodCommandLine::GeodCommandLine(CLI::App& parent) {
    group_ = parent.add_subcommand("geod", "Geodesic distances and positions on a spheroid (Vincenty)");
    group_->require_subcommand(0, 1);
    group_->footer(kGroupFooter);
    struct Subcommand {
        const char* word;
        bool direct;
        const char* what;
        std::array<const char*, kValues> help;
        const char* footer;
        const char* examples;
    };
    const Subcommand subcommands[] = {
        {"inverse", false, "Distance and azimuths between two positions",
         {"Longitude of the first position (degrees)", "Latitude of the first position (degrees)",
          "Longitude of the second position (degrees)", "Latitude of the second position (degrees)"},
         kInverseFooter, kInverseExamples},
        {"direct", true, "The position at a distance and azimuth from a start",
         {"Longitude of the start (degrees)", "Latitude of the start (degrees)",
          "Azimuth at the start (degrees clockwise from north)", "Distance (unit of the spheroid's axes)"},
         kDirectFooter, kDirectExamples},
    };
    for (const Subcommand& s : subcommands) {
        CLI::App* sub = group_->add_subcommand(s.word, s.what);
        Problem& problem = problems_[sub];
        problem.options.direct = s.direct;
        const Kind& kind = KindOf(s.direct);
        for (std::size_t i = 0; i < kValues; ++i)
            sub->add_option(kind.names[i], problem.words[i], s.help[i])->type_name("");
        sub->add_option("--spheroid", problem.options.spheroid, kSpheroidHelp)->type_name("SPHEROID");
        sub->add_option("-p,--precision", problem.options.precision,
                        "Decimal places of distances; angles get N+5 (default 4: 0.1 mm and 1e-9 degree)")
            ->type_name("N");
        sub->footer(std::string(s.footer) + kProblemRules + s.examples);
    }
    spheroids_ = group_->add_subcommand("spheroids", "List the spheroid catalogue (group, code, name, a, b)");
    spheroids_->footer(kSpheroidsFooter);
}

std::optional<ExitCode> GeodCommandLine::Dispatch(Console& console) {
    if (*spheroids_)
        return ListSpheroids(console);
    for (auto& [sub, problem] : problems_) {
        if (!*sub)
            continue;
        GeodOptions options = problem.options;
        // Positionals fill in order: the ones given are the first.
        const Kind& kind = KindOf(options.direct);
        for (std::size_t i = 0; i < kValues; ++i)
            if (sub->get_option(kind.names[i])->count() > 0)
                options.values.push_back(problem.words[i]);
        return RunGeod(options, console);
    }
    return std::nullopt;
}

} // namespace tess::cli
