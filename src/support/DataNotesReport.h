#pragma once
// The block that a run's report gives to the warnings of the data engine
// while it read its input, and the same notes as plain lines for a terminal.

#include <string>
#include <vector>

namespace tess {

struct DataNote;

//! RTF paragraphs listing the notes with their counts; empty when there are none.
std::string DataNotesRtf(const std::vector<DataNote>& notes);
//! One line per note: "/path: text (12 times)".
std::vector<std::string> DataNotesLines(const std::vector<DataNote>& notes);

} // namespace tess
