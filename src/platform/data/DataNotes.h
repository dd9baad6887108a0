#pragma once
// Warnings about data that did not stop the work: what the storage engine
// said while reading (a ring left open, characters it could not convert...)
// and what a run had to change on the way (a field's name). A failed read is
// a Fault; a warning is noted here, counted per dataset and text, for the run
// to list in its report and the host to show.

#include <cstdint>
#include <string>
#include <vector>

namespace tess {

struct DataNote {
    std::string dataset;    //!< the path of the dataset read
    std::string text;       //!< the engine's words
    std::int64_t count = 0; //!< how often it was given
};

//! The notes since the last ClearDataNotes, in the order first given.
std::vector<DataNote> DataNotes();
void ClearDataNotes();
//! Adds one warning; a text already noted for the dataset only counts up.
void AddDataNote(const std::string& dataset, const std::string& text);

} // namespace tess
