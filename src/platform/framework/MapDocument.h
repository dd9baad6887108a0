#pragma once
// The map document file (*.map.json): maps with their layers, tables, spatial
// reference, extent and graphics; the page layout; the active view; and the
// extensions' persisted settings. The format is described in docs/map-document.md.

#include <memory>
#include <string>

namespace tess {

class MxDocument;

inline constexpr const char* kMapDocumentExtension = ".map.json";

//! Reads a document. Layers whose data is missing are kept, not Valid, and save back as they
//! came. Faults name the path: a missing file (fault::NotFound), a file that cannot be read
//! (fault::DataFailed), text that is not a map document (fault::InvalidFileFormat).
std::shared_ptr<MxDocument> ReadMapDocument(const std::string& path);

//! Writes the document through a temporary file and a rename, so that the old file stays whole
//! until the new one is complete. Workspace paths inside the document's folder are written
//! relative to it. A Fault (fault::DataFailed) names the path when the file cannot be written.
void WriteMapDocument(const MxDocument& document, const std::string& path);

} // namespace tess
