#include "support/DataNotesReport.h"

#include "platform/data/DataNotes.h"
#include "support/ReportTemplates.h"

namespace tess {
namespace {

std::string Counted(const DataNote& note) {
    return note.count == 1 ? std::string() : std::to_string(note.count) + " x ";
}

} // namespace

std::string DataNotesRtf(const std::vector<DataNote>& notes) {
    if (notes.empty())
        return {};
    const std::string crlf(kReportLineBreak);
    std::string block = R"(\pard\b Warnings:\b0\par)" + crlf;
    for (const DataNote& note : notes)
        block += "  " + RtfText(Counted(note) + note.text + "  (" + note.dataset + ")") + R"(\par)" + crlf;
    block += R"(\b ---------------------------------------------\b0\par)" + crlf;
    return block;
}

std::vector<std::string> DataNotesLines(const std::vector<DataNote>& notes) {
    std::vector<std::string> lines;
    for (const DataNote& note : notes)
        lines.push_back(note.dataset + ": " + note.text +
                        (note.count == 1 ? std::string() : " (" + std::to_string(note.count) + " times)"));
    return lines;
}

} // namespace tess
