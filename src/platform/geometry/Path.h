#pragma once
// Path: one connected run of segments, the part of a polyline.

#include "platform/geometry/detail/PathBase.h"

namespace tess {

//! Vertices are stored contiguously; Vertices() gives them to measuring code without
//! allocation or a virtual call per vertex (see detail::PathBase).
class Path final : public detail::PathBase<IPath> {
public:
    Path() = default;
    esriGeometryType GeometryType() const override { return esriGeometryPath; }
    std::shared_ptr<IClone> Clone() const override;
};

} // namespace tess
