#include "platform/srs/SpatialReferenceEnvironment.h"

#include <ogr_spatialref.h>
#include <proj.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "platform/srs/Backend.h"
#include "platform/srs/PrjFile.h"
#include "platform/srs/Spheroid.h"
#include "platform/srs/Transform.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

const char* const kSource = "tess.SpatialReferenceEnvironment";
// Authorities asked for a code, in this order; ESRI holds the planetary and ESRI-only codes.
const char* const kAuthorities[] = {"EPSG", "ESRI"};

[[noreturn]] void UnknownCode(const char* what, std::int32_t code) {
    throw ReferenceFault(fault::SpatialReferenceFailed, kSource,
                std::string("The ") + what + " code " + std::to_string(code) + " is not known.");
}

// One engine context per thread: contexts are not shareable between threads.
class ProjContext {
public:
    ProjContext() : ctx_(proj_context_create()) {
        proj_context_set_enable_network(ctx_, 0);
        proj_log_level(ctx_, PJ_LOG_NONE);
    }
    ~ProjContext() { proj_context_destroy(ctx_); }
    ProjContext(const ProjContext&) = delete;
    ProjContext& operator=(const ProjContext&) = delete;
    PJ_CONTEXT* get() const { return ctx_; }

private:
    PJ_CONTEXT* ctx_;
};

PJ_CONTEXT* Context() {
    thread_local ProjContext context;
    return context.get();
}

struct PjDeleter {
    void operator()(PJ* pj) const { proj_destroy(pj); }
};
using PjPtr = std::unique_ptr<PJ, PjDeleter>;

PjPtr FromDatabase(std::int32_t code, PJ_CATEGORY category) {
    const std::string text = std::to_string(code);
    for (const char* authority : kAuthorities) {
        PjPtr object(proj_create_from_database(Context(), authority, text.c_str(), category, 0, nullptr));
        if (object)
            return object;
    }
    return nullptr;
}

// The object's name in the ESRI flavour of WKT: the first quoted text of its export.
std::string EsriName(const PJ* object) {
    const char* wkt = proj_as_wkt(Context(), object, PJ_WKT1_ESRI, nullptr);
    const std::string text = wkt ? wkt : "";
    const auto open = text.find('"');
    const auto close = open == std::string::npos ? open : text.find('"', open + 1);
    if (close == std::string::npos)
        return proj_get_name(object) ? proj_get_name(object) : "";
    return text.substr(open + 1, close - open - 1);
}

std::shared_ptr<Spheroid> SpheroidOf(const PJ* ellipsoid, std::int32_t code) {
    double a = 0.0;
    double b = 0.0;
    int computed = 0;
    double inverseFlattening = 0.0;
    if (!proj_ellipsoid_get_parameters(Context(), ellipsoid, &a, &b, &computed, &inverseFlattening))
        return nullptr;
    return std::make_shared<Spheroid>(EsriName(ellipsoid), a, b, code);
}

std::int32_t CodeOf(const PJ* object) {
    const char* code = proj_get_id_code(object, 0);
    return code ? static_cast<std::int32_t>(std::strtol(code, nullptr, 10)) : 0;
}

//! Lower-case letters and digits only: "mod_airy", "MOD-AIRY" and "modairy" meet.
std::string NameKey(std::string_view text) {
    std::string key;
    for (const char c : text)
        if (std::isalnum(static_cast<unsigned char>(c)))
            key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return key;
}

// "EPSG:7030": the ellipsoid of that authority's database, and no other.
std::shared_ptr<Spheroid> SpheroidOfAuthority(const std::string& text) {
    const auto colon = text.find(':');
    std::string authority = text.substr(0, colon);
    std::transform(authority.begin(), authority.end(), authority.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const std::string code = text.substr(colon + 1);
    if (authority.empty() || code.empty())
        return nullptr;
    PjPtr ellipsoid(
        proj_create_from_database(Context(), authority.c_str(), code.c_str(), PJ_CATEGORY_ELLIPSOID, 0, nullptr));
    return ellipsoid ? SpheroidOf(ellipsoid.get(), CodeOf(ellipsoid.get())) : nullptr;
}

// "clrk66": an ellipsoid of the engine's built-in list, read back from a reference made with it.
std::shared_ptr<Spheroid> SpheroidOfEngineName(const std::string& text) {
    const std::string key = NameKey(text);
    if (key.empty())
        return nullptr;
    for (const PJ_ELLPS* entry = proj_list_ellps(); entry && entry->id; ++entry) {
        if (NameKey(entry->id) != key)
            continue;
        const std::string definition = std::string("+proj=longlat +ellps=") + entry->id + " +type=crs";
        PjPtr crs(proj_create(Context(), definition.c_str()));
        PjPtr ellipsoid(crs ? proj_get_ellipsoid(Context(), crs.get()) : nullptr);
        return ellipsoid ? SpheroidOf(ellipsoid.get(), CodeOf(ellipsoid.get())) : nullptr;
    }
    return nullptr;
}

std::shared_ptr<ISpatialReference> ReferenceFromCode(std::int32_t code, const char* what) {
    srs::EnsureEngineConfigured();
    srs::QuietErrors quiet;
    srs::OgrPtr sr(new OGRSpatialReference());
    if (code > 0 && sr->importFromEPSG(code) == OGRERR_NONE)
        return srs::Wrap(std::move(sr));
    sr.reset(new OGRSpatialReference());
    const std::string esri = "ESRI:" + std::to_string(code);
    if (code > 0 &&
        sr->SetFromUserInput(esri.c_str(), OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) ==
            OGRERR_NONE)
        return srs::Wrap(std::move(sr));
    UnknownCode(what, code);
}

} // namespace

std::shared_ptr<IGeographicCoordinateSystem>
SpatialReferenceEnvironment::CreateGeographicCoordinateSystem(std::int32_t code) const {
    auto geographic =
        std::dynamic_pointer_cast<IGeographicCoordinateSystem>(ReferenceFromCode(code, "geographic coordinate system"));
    if (!geographic)
        throw ReferenceFault(fault::SpatialReferenceFailed, kSource,
                    "The code " + std::to_string(code) + " is not a geographic coordinate system.");
    return geographic;
}

std::shared_ptr<IProjectedCoordinateSystem>
SpatialReferenceEnvironment::CreateProjectedCoordinateSystem(std::int32_t code) const {
    auto projected =
        std::dynamic_pointer_cast<IProjectedCoordinateSystem>(ReferenceFromCode(code, "projected coordinate system"));
    if (!projected)
        throw ReferenceFault(fault::SpatialReferenceFailed, kSource,
                    "The code " + std::to_string(code) + " is not a projected coordinate system.");
    return projected;
}

std::shared_ptr<ISpheroid> SpatialReferenceEnvironment::CreateSpheroid(std::int32_t code) const {
    srs::EnsureEngineConfigured();
    PjPtr ellipsoid = code > 0 ? FromDatabase(code, PJ_CATEGORY_ELLIPSOID) : nullptr;
    std::shared_ptr<Spheroid> spheroid = ellipsoid ? SpheroidOf(ellipsoid.get(), code) : nullptr;
    if (!spheroid)
        UnknownCode("spheroid", code);
    return spheroid;
}

std::shared_ptr<IDatum> SpatialReferenceEnvironment::CreateDatum(std::int32_t code) const {
    srs::EnsureEngineConfigured();
    PjPtr datum = code > 0 ? FromDatabase(code, PJ_CATEGORY_DATUM) : nullptr;
    if (!datum)
        UnknownCode("datum", code);
    PjPtr ellipsoid(proj_get_ellipsoid(Context(), datum.get()));
    if (!ellipsoid && proj_get_type(datum.get()) == PJ_TYPE_DATUM_ENSEMBLE) {
        // An ensemble's members share one ellipsoid.
        PjPtr member(proj_datum_ensemble_get_member(Context(), datum.get(), 0));
        if (member)
            ellipsoid.reset(proj_get_ellipsoid(Context(), member.get()));
    }
    std::shared_ptr<Spheroid> spheroid = ellipsoid ? SpheroidOf(ellipsoid.get(), CodeOf(ellipsoid.get())) : nullptr;
    if (!spheroid)
        UnknownCode("datum", code);
    return std::make_shared<Datum>(EsriName(datum.get()), std::move(spheroid), code);
}

std::shared_ptr<ISpatialReference>
SpatialReferenceEnvironment::CreateESRISpatialReferenceFromPRJFile(const std::string& path) const {
    return ReadPrjFile(path);
}

std::shared_ptr<ISpatialReference> SpatialReferenceEnvironment::CreateFromWkt(const std::string& text) const {
    return FromWkt(text);
}

std::shared_ptr<IUnknownCoordinateSystem> SpatialReferenceEnvironment::CreateUnknown() const {
    return srs::MakeUnknown();
}

std::shared_ptr<ISpheroid> SpatialReferenceEnvironment::FindSpheroid(const std::string& text) const {
    srs::EnsureEngineConfigured();
    try {
        return text.find(':') != std::string::npos ? SpheroidOfAuthority(text) : SpheroidOfEngineName(text);
    } catch (const Fault&) {
        return nullptr; // axes that no spheroid can have
    }
}

} // namespace tess
