#include "GeometryTestSupport.h"

#include <cctype>
#include <numbers>
#include <sstream>
#include <stdexcept>

namespace tess::testing {

namespace {

class Parser {
public:
    explicit Parser(const std::string& s) : s_(s) {}

    std::string Word() {
        Skip();
        std::string w;
        while (i_ < s_.size() && std::isalpha(static_cast<unsigned char>(s_[i_]))) w += s_[i_++];
        return w;
    }
    void Expect(char c) {
        Skip();
        if (i_ >= s_.size() || s_[i_] != c) throw std::runtime_error("WKT: expected " + std::string(1, c) + " in " + s_);
        ++i_;
    }
    bool Accept(char c) {
        Skip();
        if (i_ < s_.size() && s_[i_] == c) {
            ++i_;
            return true;
        }
        return false;
    }
    double Number() {
        Skip();
        std::size_t used = 0;
        const double v = std::stod(s_.substr(i_), &used);
        i_ += used;
        return v;
    }
    WKSPoint Coordinate() {
        const double x = Number();
        const double y = Number();
        return {x, y};
    }
    //! "(x y, x y, ...)"
    std::vector<WKSPoint> Sequence() {
        std::vector<WKSPoint> pts;
        Expect('(');
        do {
            // MULTIPOINT may wrap each point in parentheses.
            const bool wrapped = Accept('(');
            pts.push_back(Coordinate());
            if (wrapped) Expect(')');
        } while (Accept(','));
        Expect(')');
        return pts;
    }
    //! "((...), (...))"
    std::vector<std::vector<WKSPoint>> Sequences() {
        std::vector<std::vector<WKSPoint>> all;
        Expect('(');
        do all.push_back(Sequence());
        while (Accept(','));
        Expect(')');
        return all;
    }

private:
    void Skip() {
        while (i_ < s_.size() && std::isspace(static_cast<unsigned char>(s_[i_]))) ++i_;
    }
    const std::string& s_;
    std::size_t i_ = 0;
};

template <class PartT, class Owner> void AddParts(Owner& owner, const std::vector<std::vector<WKSPoint>>& parts) {
    for (const auto& pts : parts) {
        auto part = std::make_shared<PartT>();
        part->AddWKSPoints(static_cast<std::int32_t>(pts.size()), pts.data());
        owner.AddPart(part);
    }
}

} // namespace

std::shared_ptr<IGeometry> FromWkt(const std::string& wkt) {
    Parser p(wkt);
    std::string kind = p.Word();
    for (char& c : kind) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (kind == "POINT") {
        const auto pts = p.Sequence();
        return std::make_shared<Point>(pts[0].X, pts[0].Y);
    }
    if (kind == "MULTIPOINT") {
        auto mp = std::make_shared<Multipoint>();
        const auto pts = p.Sequence();
        mp->AddWKSPoints(static_cast<std::int32_t>(pts.size()), pts.data());
        return mp;
    }
    if (kind == "LINESTRING") {
        auto line = std::make_shared<Polyline>();
        AddParts<Path>(*line, {p.Sequence()});
        return line;
    }
    if (kind == "MULTILINESTRING") {
        auto line = std::make_shared<Polyline>();
        AddParts<Path>(*line, p.Sequences());
        return line;
    }
    if (kind == "POLYGON") {
        auto polygon = std::make_shared<Polygon>();
        AddParts<Ring>(*polygon, p.Sequences());
        return polygon;
    }
    if (kind == "MULTIPOLYGON") {
        auto polygon = std::make_shared<Polygon>();
        p.Expect('(');
        do AddParts<Ring>(*polygon, p.Sequences());
        while (p.Accept(','));
        p.Expect(')');
        return polygon;
    }
    throw std::runtime_error("WKT: unsupported " + wkt);
}

std::vector<std::vector<WKSPoint>> PartsOf(const IGeometry& g) {
    std::vector<std::vector<WKSPoint>> parts;
    if (const auto* src = dynamic_cast<const IGeometryCollection*>(&g)) {
        for (std::int32_t i = 0; i < src->GeometryCount(); ++i) {
            const auto part = std::dynamic_pointer_cast<IPointCollection>(src->Geometry(i));
            std::vector<WKSPoint> pts(static_cast<std::size_t>(part ? part->PointCount() : 0));
            if (!pts.empty()) part->QueryWKSPoints(0, part->PointCount(), pts.data());
            if (!part) {
                const auto pt = std::dynamic_pointer_cast<IPoint>(src->Geometry(i));
                pts.push_back({pt->X(), pt->Y()});
            }
            parts.push_back(std::move(pts));
        }
    }
    return parts;
}

std::shared_ptr<Polygon> CirclePolygon(double cx, double cy, double r, bool clockwise) {
    CircularArc arc;
    arc.ConstructCircle(Point(cx, cy), r, !clockwise);
    auto ring = std::make_shared<Ring>();
    ring->AddSegment(arc);
    auto polygon = std::make_shared<Polygon>();
    polygon->AddPart(ring);
    return polygon;
}

} // namespace tess::testing
