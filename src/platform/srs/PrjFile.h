#pragma once
// .prj files: the ESRI flavour of WKT on one line, next to a dataset.

#include <memory>
#include <string>

namespace tess {

class ISpatialReference;

//! A missing file gives an unknown reference; a file that cannot be read as a
//! reference is a Fault (fault::SpatialReferenceFailed) naming the path.
std::shared_ptr<ISpatialReference> ReadPrjFile(const std::string& path);

//! Writes the reference as ESRI WKT, through a temporary file and a rename so
//! that a reader never sees half a file. An unknown reference writes no file
//! (and removes a stale one). Throws a Fault naming the path on failure.
void WritePrjFile(const std::string& path, const ISpatialReference& sr);

} // namespace tess
