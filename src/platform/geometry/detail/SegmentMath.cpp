#include "platform/geometry/detail/SegmentMath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tess::detail {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

//! Relative accuracy of numerically integrated arc lengths and moments: a few hundred
//! ulps, well below what any caller measures, and reached in a handful of panels.
constexpr double kIntegrationRelTol = 1e-13;
//! Depth limit of the adaptive integration; 2^-40 of the interval is far below any feature.
constexpr int kMaxIntegrationDepth = 40;
//! Samples for the coarse search of the nearest point on a curve before refinement.
constexpr int kNearestSamples = 64;
//! Golden-section steps after the coarse search: 0.618^80 of one sample interval.
constexpr int kNearestRefineSteps = 80;
//! Newton steps to invert arc length; each gains many digits, bisection guards the rest.
constexpr int kArcInverseSteps = 60;
//! Bezier deviation bound relative to the size of its control polygon when densifying.
constexpr double kBezierRelDeviation = 1e-5;
//! Upper bound of pieces for one densified segment, to keep a pathological input finite.
constexpr int kMaxDensifyPieces = 100000;
//! Smallest absolute tolerance of an integration: keeps the stopping test meaningful for an
//! integrand that is zero everywhere.
constexpr double kTinyTolerance = 1e-300;
//! Relative size of the leading coefficient below which a quadratic is solved as linear.
constexpr double kQuadraticDegenerate = 1e-14;
//! Arc-length inversion stops when the length is matched this close (relative): ten times the
//! accuracy of the integral itself, so that rounding cannot keep it iterating.
constexpr double kArcInverseRelTol = 10.0 * kIntegrationRelTol;

double Cross(WKSPoint p, WKSPoint q) { return p.X * q.Y - p.Y * q.X; }
WKSPoint Sub(WKSPoint p, WKSPoint q) { return {p.X - q.X, p.Y - q.Y}; }
WKSPoint Lerp(WKSPoint p, WKSPoint q, double u) { return {p.X + (q.X - p.X) * u, p.Y + (q.Y - p.Y) * u}; }
double Dist(WKSPoint p, WKSPoint q) { return std::hypot(p.X - q.X, p.Y - q.Y); }

// Gauss-Kronrod 7-15 nodes and weights (abscissae on [-1, 1], symmetric).
constexpr std::array<double, 8> kXgk = {0.991455371120812639206854697526329, 0.949107912342758524526189684047851,
                                        0.864864423359769072789712788640926, 0.741531185599394439863864773280788,
                                        0.586087235467691130294144845693013, 0.405845151377397166906606412076961,
                                        0.207784955007898467600689403773245, 0.0};
constexpr std::array<double, 8> kWgk = {0.022935322010529224963732008058970, 0.063092092629978553290700663189204,
                                        0.104790010322250183839876322541518, 0.140653259715525918745189590510238,
                                        0.169004726639267902826583426598550, 0.190350578064785409913256402421014,
                                        0.204432940075298892414161999234649, 0.209482141084727828012999174891714};
constexpr std::array<double, 4> kWg = {0.129484966168869693270611432679082, 0.279705391489276667901467771423780,
                                       0.381830050505118944950369775488975, 0.417959183673469387755102040816327};

template <class F> void GaussKronrod(F& f, double a, double b, double& kronrod, double& gauss) {
    const double c = 0.5 * (a + b);
    const double h = 0.5 * (b - a);
    const double fc = f(c);
    double k = fc * kWgk[7];
    double g = fc * kWg[3];
    for (int j = 0; j < 7; ++j) {
        const double dx = h * kXgk[j];
        const double f1 = f(c - dx);
        const double f2 = f(c + dx);
        k += kWgk[j] * (f1 + f2);
        if (j % 2 == 1) g += kWg[j / 2] * (f1 + f2);
    }
    kronrod = k * h;
    gauss = g * h;
}

template <class F> double Adaptive(F& f, double a, double b, double absTol, int depth) {
    double k = 0.0;
    double g = 0.0;
    GaussKronrod(f, a, b, k, g);
    if (std::abs(k - g) <= absTol || depth >= kMaxIntegrationDepth) return k;
    const double m = 0.5 * (a + b);
    return Adaptive(f, a, m, 0.5 * absTol, depth + 1) + Adaptive(f, m, b, 0.5 * absTol, depth + 1);
}

//! Integral of f over [a, b] to about kIntegrationRelTol relative to the integral of |f|.
template <class F> double Integrate(F f, double a, double b) {
    if (a == b) return 0.0;
    auto absf = [&f](double x) { return std::abs(f(x)); };
    double k = 0.0;
    double g = 0.0;
    GaussKronrod(absf, a, b, k, g);
    const double tol = std::max(std::abs(k) * kIntegrationRelTol, kTinyTolerance);
    return Adaptive(f, a, b, tol, 0);
}

// Gauss-Legendre 5 points: exact for polynomials up to degree 9 (Bezier area and moments).
constexpr std::array<double, 5> kGl5x = {-0.906179845938663992797626878299393, -0.538469310105683091036314420700208,
                                         0.0, 0.538469310105683091036314420700208,
                                         0.906179845938663992797626878299393};
constexpr std::array<double, 5> kGl5w = {0.236926885056189087514264040719918, 0.478628670499366468041291514835638,
                                         0.568888888888888888888888888888889, 0.478628670499366468041291514835638,
                                         0.236926885056189087514264040719918};

double ConicB(const CurveParams& c) { return c.semiMajor * c.ratio; }

WKSPoint ConicDerivative(const CurveParams& c, double t) {
    const double cr = std::cos(c.rotation);
    const double sr = std::sin(c.rotation);
    const double dx = -c.semiMajor * std::sin(t);
    const double dy = ConicB(c) * std::cos(t);
    return {cr * dx - sr * dy, sr * dx + cr * dy};
}

WKSPoint BezierPoint(const SegmentView& s, double u) {
    const double v = 1.0 - u;
    const double b0 = v * v * v;
    const double b1 = 3.0 * v * v * u;
    const double b2 = 3.0 * v * u * u;
    const double b3 = u * u * u;
    const WKSPoint& p1 = s.curve->p1;
    const WKSPoint& p2 = s.curve->p2;
    return {b0 * s.from.X + b1 * p1.X + b2 * p2.X + b3 * s.to.X, b0 * s.from.Y + b1 * p1.Y + b2 * p2.Y + b3 * s.to.Y};
}

WKSPoint BezierDerivative(const SegmentView& s, double u) {
    const double v = 1.0 - u;
    const WKSPoint a = Sub(s.curve->p1, s.from);
    const WKSPoint b = Sub(s.curve->p2, s.curve->p1);
    const WKSPoint c = Sub(s.to, s.curve->p2);
    return {3.0 * (v * v * a.X + 2.0 * v * u * b.X + u * u * c.X), 3.0 * (v * v * a.Y + 2.0 * v * u * b.Y + u * u * c.Y)};
}

//! dP/du for u in [0, 1].
WKSPoint Derivative(const SegmentView& s, double u) {
    if (!s.curve) return Sub(s.to, s.from);
    if (s.curve->kind == SegKind::Bezier) return BezierDerivative(s, u);
    const WKSPoint d = ConicDerivative(*s.curve, s.curve->fromParam + u * s.curve->sweep);
    return {d.X * s.curve->sweep, d.Y * s.curve->sweep};
}

double Speed(const SegmentView& s, double u) {
    const WKSPoint d = Derivative(s, u);
    return std::hypot(d.X, d.Y);
}

//! Angle a in the swept range of the conic (all of it for a full turn).
bool InSweep(const CurveParams& c, double t) {
    if (std::abs(c.sweep) >= kTwoPi) return true;
    double rel = c.sweep >= 0.0 ? t - c.fromParam : c.fromParam - t;
    rel = std::fmod(rel, kTwoPi);
    if (rel < 0.0) rel += kTwoPi;
    return rel <= std::abs(c.sweep);
}

void AddPoint(WKSEnvelope& box, WKSPoint p) {
    box.XMin = std::min(box.XMin, p.X);
    box.YMin = std::min(box.YMin, p.Y);
    box.XMax = std::max(box.XMax, p.X);
    box.YMax = std::max(box.YMax, p.Y);
}

//! Roots in (0, 1) of q2 u^2 + q1 u + q0.
int QuadraticRoots01(double q2, double q1, double q0, double roots[2]) {
    int n = 0;
    auto keep = [&](double r) {
        if (r > 0.0 && r < 1.0) roots[n++] = r;
    };
    const double scale = std::max({std::abs(q2), std::abs(q1), std::abs(q0)});
    if (scale == 0.0) return 0;
    if (std::abs(q2) <= kQuadraticDegenerate * scale) {
        if (q1 != 0.0) keep(-q0 / q1);
        return n;
    }
    const double disc = q1 * q1 - 4.0 * q2 * q0;
    if (disc < 0.0) return 0;
    const double sq = std::sqrt(disc);
    // The stable pair of formulas avoids cancellation.
    const double q = -0.5 * (q1 + (q1 >= 0.0 ? sq : -sq));
    if (q != 0.0) {
        keep(q / q2);
        keep(q0 / q);
    } else {
        keep(0.0);
    }
    return n;
}

} // namespace

Affine Affine::Scaling(WKSPoint o, double sx, double sy) {
    return {sx, 0.0, o.X - sx * o.X, 0.0, sy, o.Y - sy * o.Y};
}

Affine Affine::Rotation(WKSPoint o, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {c, -s, o.X - c * o.X + s * o.Y, s, c, o.Y - s * o.X - c * o.Y};
}

DensifyLimits DefaultDensifyLimits() { return {kRadiansPerDegree, 0.0}; }

WKSPoint ConicPoint(const CurveParams& c, double t) {
    const double cr = std::cos(c.rotation);
    const double sr = std::sin(c.rotation);
    const double x = c.semiMajor * std::cos(t);
    const double y = ConicB(c) * std::sin(t);
    return {c.p1.X + cr * x - sr * y, c.p1.Y + sr * x + cr * y};
}

CurveParams MakeConic(WKSPoint center, double rotation, double semiMajor, double ratio, double fromAngle,
                      double centralAngle, bool circular) {
    CurveParams c;
    c.kind = circular ? SegKind::Circular : SegKind::Elliptic;
    c.p1 = center;
    c.semiMajor = semiMajor;
    c.ratio = circular ? 1.0 : ratio;
    c.rotation = circular ? 0.0 : rotation;
    // Polar angle to the parameter of the ellipse: tan t = tan(theta) / ratio, same quadrant.
    auto param = [&](double theta) {
        return circular ? theta : std::atan2(std::sin(theta), c.ratio * std::cos(theta));
    };
    c.fromParam = param(fromAngle);
    if (std::abs(centralAngle) >= kTwoPi) {
        c.sweep = centralAngle > 0.0 ? kTwoPi : -kTwoPi;
    } else if (circular) {
        c.sweep = centralAngle;
    } else if (centralAngle == 0.0) {
        c.sweep = 0.0;
    } else {
        double d = param(fromAngle + centralAngle) - c.fromParam;
        if (centralAngle > 0.0) {
            while (d <= 0.0) d += kTwoPi;
            while (d > kTwoPi) d -= kTwoPi;
        } else {
            while (d >= 0.0) d -= kTwoPi;
            while (d < -kTwoPi) d += kTwoPi;
        }
        c.sweep = d;
    }
    return c;
}

double Length(const SegmentView& s) {
    if (!s.curve) return Dist(s.from, s.to);
    switch (s.curve->kind) {
    case SegKind::Circular:
        return s.curve->semiMajor * std::abs(s.curve->sweep);
    case SegKind::Elliptic:
    case SegKind::Bezier:
        return Integrate([&s](double u) { return Speed(s, u); }, 0.0, 1.0);
    case SegKind::Line:
        break;
    }
    return Dist(s.from, s.to);
}

double LengthToParameter(const SegmentView& s, double u) {
    if (u <= 0.0) return 0.0;
    if (!s.curve) return Dist(s.from, s.to) * std::min(u, 1.0);
    if (s.curve->kind == SegKind::Circular) return s.curve->semiMajor * std::abs(s.curve->sweep) * std::min(u, 1.0);
    return Integrate([&s](double v) { return Speed(s, v); }, 0.0, std::min(u, 1.0));
}

WKSPoint PointAtParameter(const SegmentView& s, double u) {
    if (u <= 0.0) return s.from;
    if (u >= 1.0) return s.to;
    if (!s.curve) return Lerp(s.from, s.to, u);
    if (s.curve->kind == SegKind::Bezier) return BezierPoint(s, u);
    return ConicPoint(*s.curve, s.curve->fromParam + u * s.curve->sweep);
}

WKSPoint PointAtDistance(const SegmentView& s, double d) {
    if (d <= 0.0) return s.from;
    const double length = Length(s);
    if (d >= length || length == 0.0) return d >= length ? s.to : s.from;
    if (!s.curve || s.curve->kind == SegKind::Circular) return PointAtParameter(s, d / length);
    // Invert the arc length: Newton on u, kept inside a shrinking bracket.
    double lo = 0.0;
    double hi = 1.0;
    double u = d / length;
    for (int i = 0; i < kArcInverseSteps; ++i) {
        const double f = LengthToParameter(s, u) - d;
        if (std::abs(f) <= length * kArcInverseRelTol) break;
        if (f > 0.0)
            hi = u;
        else
            lo = u;
        const double v = Speed(s, u);
        double next = v > 0.0 ? u - f / v : 0.5 * (lo + hi);
        if (!(next > lo && next < hi)) next = 0.5 * (lo + hi);
        u = next;
    }
    return PointAtParameter(s, u);
}

WKSPoint TangentAt(const SegmentView& s, double u) {
    WKSPoint d = Derivative(s, u);
    double n = std::hypot(d.X, d.Y);
    if (n == 0.0 && s.curve && s.curve->kind == SegKind::Bezier) {
        // A control point on its end: the limit direction is along the next distinct control point.
        const WKSPoint candidates[2] = {u < 0.5 ? Sub(s.curve->p2, s.from) : Sub(s.to, s.curve->p1),
                                        Sub(s.to, s.from)};
        for (const WKSPoint& c : candidates) {
            if (std::hypot(c.X, c.Y) > 0.0) {
                d = c;
                break;
            }
        }
        n = std::hypot(d.X, d.Y);
    }
    if (n == 0.0) return {0.0, 0.0};
    return {d.X / n, d.Y / n};
}

void ExtendEnvelope(const SegmentView& s, WKSEnvelope& box) {
    AddPoint(box, s.from);
    AddPoint(box, s.to);
    if (!s.curve) return;
    if (s.curve->kind == SegKind::Bezier) {
        const WKSPoint a = Sub(s.curve->p1, s.from);
        const WKSPoint b = Sub(s.curve->p2, s.curve->p1);
        const WKSPoint c = Sub(s.to, s.curve->p2);
        double roots[2];
        int n = QuadraticRoots01(a.X - 2.0 * b.X + c.X, 2.0 * (b.X - a.X), a.X, roots);
        for (int i = 0; i < n; ++i) AddPoint(box, BezierPoint(s, roots[i]));
        n = QuadraticRoots01(a.Y - 2.0 * b.Y + c.Y, 2.0 * (b.Y - a.Y), a.Y, roots);
        for (int i = 0; i < n; ++i) AddPoint(box, BezierPoint(s, roots[i]));
        return;
    }
    const CurveParams& c = *s.curve;
    const double cr = std::cos(c.rotation);
    const double sr = std::sin(c.rotation);
    const double a = c.semiMajor;
    const double b = ConicB(c);
    const double tx = std::atan2(-b * sr, a * cr); // dx/dt = 0
    const double ty = std::atan2(b * cr, a * sr);  // dy/dt = 0
    for (double t : {tx, tx + kPi, ty, ty + kPi}) {
        if (InSweep(c, t)) AddPoint(box, ConicPoint(c, t));
    }
}

AreaTerms AreaIntegrals(const SegmentView& s, WKSPoint o) {
    AreaTerms r;
    if (!s.curve) {
        const WKSPoint p = Sub(s.from, o);
        const WKSPoint q = Sub(s.to, o);
        const double cross = Cross(p, q);
        r.area = 0.5 * cross;
        r.mx = cross * (p.X + q.X) / 6.0;
        r.my = cross * (p.Y + q.Y) / 6.0;
        return r;
    }
    // Integrand at parameter u: position P relative to o and P x dP/du.
    auto at = [&s, o](double u, WKSPoint& p) {
        p = Sub(PointAtParameter(s, u), o);
        return Cross(p, Derivative(s, u));
    };
    if (s.curve->kind == SegKind::Bezier) {
        for (int i = 0; i < 5; ++i) {
            const double u = 0.5 * (kGl5x[i] + 1.0);
            const double w = 0.5 * kGl5w[i];
            WKSPoint p;
            const double cross = at(u, p);
            r.area += w * 0.5 * cross;
            r.mx += w * p.X * cross / 3.0;
            r.my += w * p.Y * cross / 3.0;
        }
        return r;
    }
    // Conic: the area term in closed form (the sector sweep plus the centre's share);
    // the moments numerically.
    const CurveParams& c = *s.curve;
    const WKSPoint centre = Sub(c.p1, o);
    const WKSPoint chord = Sub(ConicPoint(c, c.fromParam + c.sweep), ConicPoint(c, c.fromParam));
    r.area = 0.5 * (Cross(centre, chord) + c.semiMajor * ConicB(c) * c.sweep);
    r.mx = Integrate(
        [&at](double u) {
            WKSPoint p;
            const double cross = at(u, p);
            return p.X * cross / 3.0;
        },
        0.0, 1.0);
    r.my = Integrate(
        [&at](double u) {
            WKSPoint p;
            const double cross = at(u, p);
            return p.Y * cross / 3.0;
        },
        0.0, 1.0);
    return r;
}

double NearestParameter(const SegmentView& s, WKSPoint p, WKSPoint& nearest) {
    auto d2 = [&s, p](double u) {
        const WKSPoint q = PointAtParameter(s, u);
        return (q.X - p.X) * (q.X - p.X) + (q.Y - p.Y) * (q.Y - p.Y);
    };
    if (!s.curve) {
        const WKSPoint d = Sub(s.to, s.from);
        const double len2 = d.X * d.X + d.Y * d.Y;
        double u = len2 > 0.0 ? ((p.X - s.from.X) * d.X + (p.Y - s.from.Y) * d.Y) / len2 : 0.0;
        u = std::clamp(u, 0.0, 1.0);
        nearest = PointAtParameter(s, u);
        return u;
    }
    if (s.curve->kind == SegKind::Circular && s.curve->sweep != 0.0) {
        const CurveParams& c = *s.curve;
        const double theta = std::atan2(p.Y - c.p1.Y, p.X - c.p1.X);
        if ((p.X != c.p1.X || p.Y != c.p1.Y) && InSweep(c, theta)) {
            double rel = c.sweep >= 0.0 ? theta - c.fromParam : c.fromParam - theta;
            rel = std::fmod(rel, kTwoPi);
            if (rel < 0.0) rel += kTwoPi;
            const double u = std::clamp(rel / std::abs(c.sweep), 0.0, 1.0);
            nearest = PointAtParameter(s, u);
            return u;
        }
        const double u = d2(0.0) <= d2(1.0) ? 0.0 : 1.0;
        nearest = PointAtParameter(s, u);
        return u;
    }
    // Coarse samples, then golden-section search around the best one.
    int best = 0;
    double bestD = d2(0.0);
    for (int i = 1; i <= kNearestSamples; ++i) {
        const double dd = d2(static_cast<double>(i) / kNearestSamples);
        if (dd < bestD) {
            bestD = dd;
            best = i;
        }
    }
    double lo = std::max(0.0, static_cast<double>(best - 1) / kNearestSamples);
    double hi = std::min(1.0, static_cast<double>(best + 1) / kNearestSamples);
    const double g = 0.5 * (std::sqrt(5.0) - 1.0);
    double x1 = hi - g * (hi - lo);
    double x2 = lo + g * (hi - lo);
    double f1 = d2(x1);
    double f2 = d2(x2);
    for (int i = 0; i < kNearestRefineSteps; ++i) {
        if (f1 < f2) {
            hi = x2;
            x2 = x1;
            f2 = f1;
            x1 = hi - g * (hi - lo);
            f1 = d2(x1);
        } else {
            lo = x1;
            x1 = x2;
            f1 = f2;
            x2 = lo + g * (hi - lo);
            f2 = d2(x2);
        }
    }
    double u = 0.5 * (lo + hi);
    if (bestD < d2(u)) u = static_cast<double>(best) / kNearestSamples;
    nearest = PointAtParameter(s, u);
    return u;
}

void Densify(const SegmentView& s, const DensifyLimits& limits, std::vector<WKSPoint>& out) {
    if (!s.curve) {
        out.push_back(s.to);
        return;
    }
    int n = 1;
    if (s.curve->kind == SegKind::Bezier) {
        const WKSPoint p0 = s.from, p1 = s.curve->p1, p2 = s.curve->p2, p3 = s.to;
        // Turning of the control polygon bounds the turning of the curve.
        double turn = 0.0;
        const WKSPoint legs[3] = {Sub(p1, p0), Sub(p2, p1), Sub(p3, p2)};
        for (int i = 0; i < 2; ++i) {
            if (std::hypot(legs[i].X, legs[i].Y) > 0.0 && std::hypot(legs[i + 1].X, legs[i + 1].Y) > 0.0)
                turn += std::abs(std::atan2(Cross(legs[i], legs[i + 1]),
                                            legs[i].X * legs[i + 1].X + legs[i].Y * legs[i + 1].Y));
        }
        // Chord deviation of n equal parameter steps is at most 3/4 max|second difference| / n^2.
        const double dd = std::max(std::hypot(p0.X - 2 * p1.X + p2.X, p0.Y - 2 * p1.Y + p2.Y),
                                   std::hypot(p1.X - 2 * p2.X + p3.X, p1.Y - 2 * p2.Y + p3.Y));
        const double size = std::hypot(legs[0].X, legs[0].Y) + std::hypot(legs[1].X, legs[1].Y) +
                            std::hypot(legs[2].X, legs[2].Y);
        const double dev = limits.maxDeviation > 0.0 ? limits.maxDeviation : kBezierRelDeviation * size;
        if (dev > 0.0) n = std::max(n, static_cast<int>(std::ceil(std::sqrt(0.75 * dd / dev))));
        n = std::max(n, static_cast<int>(std::ceil(turn / limits.maxAngleStep)));
    } else {
        const double sweep = std::abs(s.curve->sweep);
        n = std::max(n, static_cast<int>(std::ceil(sweep / limits.maxAngleStep)));
        if (limits.maxDeviation > 0.0 && limits.maxDeviation < s.curve->semiMajor) {
            const double step = 2.0 * std::acos(1.0 - limits.maxDeviation / s.curve->semiMajor);
            if (step > 0.0) n = std::max(n, static_cast<int>(std::ceil(sweep / step)));
        }
    }
    n = std::min(n, kMaxDensifyPieces);
    for (int i = 1; i < n; ++i) out.push_back(PointAtParameter(s, static_cast<double>(i) / n));
    out.push_back(s.to);
}

CurveParams TransformCurve(const CurveParams& in, const Affine& m) {
    CurveParams c = in;
    if (c.kind == SegKind::Line) return c;
    if (c.kind == SegKind::Bezier) {
        c.p1 = m.Apply(in.p1);
        c.p2 = m.Apply(in.p2);
        return c;
    }
    c.p1 = m.Apply(in.p1);
    // New linear part: A * R(rotation) * diag(a, b).
    const double cr = std::cos(in.rotation);
    const double sr = std::sin(in.rotation);
    const double a = in.semiMajor;
    const double b = ConicB(in);
    double m00 = (m.a * cr + m.b * sr) * a;
    double m01 = (-m.a * sr + m.b * cr) * b;
    double m10 = (m.d * cr + m.e * sr) * a;
    double m11 = (-m.d * sr + m.e * cr) * b;
    double t0 = in.fromParam;
    double sweep = in.sweep;
    if (m00 * m11 - m01 * m10 < 0.0) {
        // A reflection: M u(t) = (M J) u(-t) with J = diag(1, -1).
        m01 = -m01;
        m11 = -m11;
        t0 = -t0;
        sweep = -sweep;
    }
    // M = R(phi) diag(s1, s2) R(theta).
    const double e = 0.5 * (m00 + m11);
    const double f = 0.5 * (m00 - m11);
    const double g = 0.5 * (m10 + m01);
    const double h = 0.5 * (m10 - m01);
    const double q = std::hypot(e, h);
    const double r = std::hypot(f, g);
    const double s1 = q + r;
    const double s2 = q - r;
    const double a1 = std::atan2(g, f);
    const double a2 = std::atan2(h, e);
    const double theta = 0.5 * (a2 - a1);
    const double phi = 0.5 * (a2 + a1);
    c.semiMajor = s1;
    c.ratio = s1 > 0.0 ? s2 / s1 : 1.0;
    c.rotation = phi;
    c.fromParam = t0 + theta;
    c.sweep = sweep;
    // Relative difference of the axes below which a transformed circle stays a circle.
    constexpr double kCircleTolerance = 1e-12;
    if (in.kind == SegKind::Circular) {
        if (std::abs(s1 - s2) <= kCircleTolerance * s1) {
            c.ratio = 1.0;
            c.fromParam += phi;
            c.rotation = 0.0;
        } else {
            c.kind = SegKind::Elliptic;
        }
    }
    return c;
}

CurveParams ReverseCurve(const CurveParams& in) {
    CurveParams c = in;
    if (c.kind == SegKind::Bezier) {
        std::swap(c.p1, c.p2);
    } else if (c.kind != SegKind::Line) {
        c.fromParam = in.fromParam + in.sweep;
        c.sweep = -in.sweep;
    }
    return c;
}

} // namespace tess::detail
