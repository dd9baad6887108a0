#pragma once
// Internal to this folder: the references' link to the coordinate engine.
// Declares engine types only by name; the engine's headers stay in the .cpp files.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/srs/SpatialReference.h"

class OGRSpatialReference;

namespace tess::srs {

struct OgrDeleter {
    void operator()(OGRSpatialReference* sr) const;
};
using OgrPtr = std::unique_ptr<OGRSpatialReference, OgrDeleter>;

//! Keeps the engine off the network and its messages off stderr; runs once per process.
void EnsureEngineConfigured();

//! While alive, engine errors are collected instead of printed.
class QuietErrors {
public:
    QuietErrors();
    ~QuietErrors();
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;
    //! The engine's last error message, or fallback when it said nothing.
    std::string LastMessage(const std::string& fallback) const;
};

//! XY precision of a reference, in its coordinate units.
struct Precision {
    double resolution;
    double tolerance;
    double falseX;
    double falseY;
};

//! The reference for an engine object: geographic, projected or (local systems) unknown.
//! Geocentric and other kinds are a SpatialReferenceFailed Fault.
std::shared_ptr<ISpatialReference> Wrap(OgrPtr sr);
std::shared_ptr<IUnknownCoordinateSystem> MakeUnknown();

//! The engine object behind a reference (axes in GIS order); nullptr for unknown references
//! and for references not made by this folder.
const OGRSpatialReference* EngineOf(const ISpatialReference& sr);
//! WKT2:2019 of a reference, kept from its creation; empty for unknown.
const std::string& Wkt2Of(const ISpatialReference& sr);

} // namespace tess::srs
