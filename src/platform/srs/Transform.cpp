#include "platform/srs/Transform.h"

#include <ogr_spatialref.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "platform/srs/Backend.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

const char* const kSource = "tess.TransformCoordinates";
// Transformations kept per thread; a workflow uses a handful of pairs, so the
// cache is simply emptied when it grows past this.
constexpr std::size_t kCachedPairs = 32;

struct TransformDeleter {
    void operator()(OGRCoordinateTransformation* t) const { OGRCoordinateTransformation::DestroyCT(t); }
};
using TransformPtr = std::unique_ptr<OGRCoordinateTransformation, TransformDeleter>;

OGRCoordinateTransformation& TransformationFor(const ISpatialReference& from, const ISpatialReference& to) {
    thread_local std::map<std::pair<std::string, std::string>, TransformPtr> cache;
    auto key = std::make_pair(srs::Wkt2Of(from), srs::Wkt2Of(to));
    if (auto it = cache.find(key); it != cache.end())
        return *it->second;
    srs::QuietErrors quiet;
    TransformPtr transform(OGRCreateCoordinateTransformation(srs::EngineOf(from), srs::EngineOf(to)));
    if (!transform)
        throw ReferenceFault(fault::SpatialReferenceFailed, kSource,
                    quiet.LastMessage("No transformation from " + from.Name() + " to " + to.Name()));
    if (cache.size() >= kCachedPairs)
        cache.clear();
    return *cache.emplace(std::move(key), std::move(transform)).first->second;
}

bool IsBlankText(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isspace(c) != 0; });
}

} // namespace

void TransformCoordinates(const ISpatialReference& from, const ISpatialReference& to, double* x, double* y,
                          std::size_t n) {
    const OGRSpatialReference* source = srs::EngineOf(from);
    const OGRSpatialReference* target = srs::EngineOf(to);
    if (n == 0 || !source || !target)
        return;
    if (srs::Wkt2Of(from) == srs::Wkt2Of(to))
        return;
    OGRCoordinateTransformation& transform = TransformationFor(from, to);
    std::vector<int> success(n, FALSE);
    srs::QuietErrors quiet;
    // The engine answers TRUE when any point made it; each point's own flag and
    // a finite result are what count.
    transform.Transform(static_cast<int>(n), x, y, nullptr, nullptr, success.data());
    std::size_t index = 0;
    while (index < n && success[index] && std::isfinite(x[index]) && std::isfinite(y[index]))
        ++index;
    if (index == n)
        return;
    throw ReferenceFault(fault::SpatialReferenceFailed, kSource,
                quiet.LastMessage("The point " + std::to_string(index) + " cannot be projected from " + from.Name() +
                                  " to " + to.Name()));
}

std::string ExportToWkt(const ISpatialReference& sr) { return srs::Wkt2Of(sr); }

std::shared_ptr<ISpatialReference> FromWkt(const std::string& text) {
    srs::EnsureEngineConfigured();
    if (IsBlankText(text))
        return srs::MakeUnknown();
    srs::QuietErrors quiet;
    srs::OgrPtr sr(new OGRSpatialReference());
    if (sr->SetFromUserInput(text.c_str(), OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) !=
        OGRERR_NONE)
        throw ReferenceFault(fault::SpatialReferenceFailed, "tess.FromWkt",
                    quiet.LastMessage("The coordinate system text cannot be read"));
    return srs::Wrap(std::move(sr));
}

} // namespace tess
