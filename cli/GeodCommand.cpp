#include "GeodCommand.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <istream>
#include <memory>
#include <optional>
#include <ostream>

#include "SpheroidChoice.h"
#include "TerminalUI.h"
#include "TextUtil.h"
#include "geodesy/Vincenty.h"
#include "platform/geometry/Point.h"

namespace tess::cli {
namespace {

// WGS 1984 as the system's routines without a spheroid argument hold it.
constexpr double kWgs84SemiMajor = 6378137.0;         // metres
constexpr double kWgs84SemiMinor = 6356752.31424518;  // metres
// Printed resolution: 0.1 mm in distance, and 1e-9 degree (about 0.1 mm on the Earth) in angles,
// the accuracy of the solutions themselves.
constexpr int kDistanceDecimals = 4;
constexpr int kAngleDecimals = 9;
constexpr std::size_t kValuesPerProblem = 4;

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
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    return buffer.data();
}

std::optional<std::array<double, kValuesPerProblem>> ParseProblem(const std::vector<std::string>& words) {
    if (words.size() != kValuesPerProblem)
        return std::nullopt;
    std::array<double, kValuesPerProblem> values{};
    for (std::size_t i = 0; i < kValuesPerProblem; ++i) {
        const std::string& word = words[i];
        const char* end = word.data() + word.size();
        const auto [stop, error] = std::from_chars(word.data(), end, values[i]);
        if (error != std::errc() || stop != end || !std::isfinite(values[i]))
            return std::nullopt;
    }
    return values;
}

class Solver {
public:
    Solver(bool direct, std::optional<Spheroid> spheroid) : direct_(direct), spheroid_(std::move(spheroid)) {}

    std::string Solve(const std::array<double, kValuesPerProblem>& v) const {
        using namespace MyGeometricOperations;
        if (!direct_) {
            double azimuth1 = 0;
            double azimuth2 = 0;
            const double distance =
                spheroid_ ? DistanceVincentyNumbers2(v[0], v[1], v[2], v[3], azimuth1, azimuth2,
                                                     spheroid_->semiMajor, spheroid_->semiMinor)
                          : DistanceVincentyNumbers(v[0], v[1], v[2], v[3], azimuth1, azimuth2);
            return Fixed(distance, kDistanceDecimals) + " " + Fixed(azimuth1, kAngleDecimals) + " " +
                   Fixed(azimuth2, kAngleDecimals);
        }
        const Point start(v[0], v[1]);
        Point end;
        double farAzimuth = 0;
        PointLineVincentyPerPoint2(start, v[3], v[2], end, farAzimuth,
                                   spheroid_ ? spheroid_->semiMajor : kWgs84SemiMajor,
                                   spheroid_ ? spheroid_->semiMinor : kWgs84SemiMinor);
        return Fixed(end.X(), kAngleDecimals) + " " + Fixed(end.Y(), kAngleDecimals) + " " +
               Fixed(farAzimuth, kAngleDecimals);
    }

    const char* Expected() const {
        return direct_ ? "lon1 lat1 azimuth distance" : "lon1 lat1 lon2 lat2";
    }

private:
    bool direct_;
    std::optional<Spheroid> spheroid_;
};

} // namespace

ExitCode RunGeod(const GeodOptions& options, Console& console) {
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
    const Solver solver(options.direct, spheroid);

    if (!options.values.empty()) {
        const auto problem = ParseProblem(options.values);
        if (!problem) {
            console.err << "tessarine: geod " << (options.direct ? "direct" : "inverse") << " takes "
                        << solver.Expected() << " (decimal degrees)\n";
            return ExitCode::Usage;
        }
        console.out << solver.Solve(*problem) << '\n';
        return scope.UI().ErrorShown() ? ExitCode::Failed : ExitCode::Success;
    }

    bool failed = false;
    std::string line;
    for (int number = 1; std::getline(console.in, line); ++number) {
        const std::string trimmed = Trim(line);
        if (trimmed.empty() || trimmed.front() == '#') {
            console.out << line << '\n';
            continue;
        }
        const auto problem = ParseProblem(SplitAny(trimmed, " \t,"));
        if (!problem) {
            console.err << "tessarine: line " << number << ": expected " << solver.Expected()
                        << " (decimal degrees)\n";
            console.out << "error\n";
            failed = true;
            continue;
        }
        console.out << solver.Solve(*problem) << '\n';
        console.out.flush();
    }
    return failed || scope.UI().ErrorShown() ? ExitCode::Failed : ExitCode::Success;
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

} // namespace tess::cli
