#include "platform/srs/PrjFile.h"

#include <cpl_string.h>
#include <ogr_spatialref.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/srs/Backend.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

const char* const kSource = "tess.PrjFile";

std::string NormalPath(std::string path) {
    for (char& c : path)
        if (c == '\\')
            c = '/';
    return path;
}

[[noreturn]] void WriteFailed(const std::string& path, const std::string& why) {
    throw ReferenceFault(fault::DataFailed, kSource, "Cannot write the projection file " + path + ": " + why);
}

} // namespace

std::shared_ptr<ISpatialReference> ReadPrjFile(const std::string& path) {
    const std::string file = NormalPath(path);
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return srs::MakeUnknown();
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in && !in.eof())
        throw ReferenceFault(fault::DataFailed, kSource, "Cannot read the projection file " + file);

    // Old-style .prj files hold keyword lines; the engine reads both kinds from lines.
    CPLStringList lines(CSLTokenizeStringComplex(text.str().c_str(), "\r\n", FALSE, FALSE));
    srs::EnsureEngineConfigured();
    srs::QuietErrors quiet;
    srs::OgrPtr sr(new OGRSpatialReference());
    if (lines.empty() || sr->importFromESRI(lines.List()) != OGRERR_NONE || sr->IsEmpty())
        throw ReferenceFault(fault::SpatialReferenceFailed, kSource,
                    quiet.LastMessage("The projection file " + file + " cannot be read"));
    return srs::Wrap(std::move(sr));
}

void WritePrjFile(const std::string& path, const ISpatialReference& sr) {
    const std::string file = NormalPath(path);
    const std::string text = srs::EngineOf(sr) ? sr.ExportToESRI() : std::string();
    std::error_code error;
    if (text.empty()) {
        std::filesystem::remove(file, error);
        if (error)
            WriteFailed(file, error.message());
        return;
    }
    // Write beside the target and rename over it, so no reader sees half a file.
    std::string temporary = file + ".XXXXXX";
    const int fd = mkstemp(temporary.data());
    if (fd < 0)
        WriteFailed(file, std::strerror(errno));
    const ssize_t written = ::write(fd, text.data(), text.size());
    const int closed = ::close(fd);
    if (written != static_cast<ssize_t>(text.size()) || closed != 0) {
        const std::string why = std::strerror(errno);
        std::filesystem::remove(temporary, error);
        WriteFailed(file, why);
    }
    std::filesystem::permissions(temporary,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write |
                                     std::filesystem::perms::group_read | std::filesystem::perms::others_read,
                                 error);
    std::filesystem::rename(temporary, file, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        WriteFailed(file, "cannot replace the file");
    }
}

} // namespace tess
