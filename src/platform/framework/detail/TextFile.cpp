#include "platform/framework/detail/TextFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/system/Fault.h"

namespace tess::detail {
namespace {

constexpr const char* kSource = "TextFile";
constexpr mode_t kNewFileMode = 0644; // rw-r--r--

[[noreturn]] void Fail(std::int32_t number, const std::string& what, const std::string& path, int error) {
    throw Fault(number, kSource, what + " '" + path + "': " + std::strerror(error));
}

std::string FolderOf(const std::string& path) {
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

std::string ReadTextFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;
        Fail(error == ENOENT ? fault::NotFound : fault::DataFailed, "Cannot open", path, error);
    }
    struct stat info {};
    if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
        ::close(fd);
        Fail(fault::DataFailed, "Cannot read", path, EISDIR);
    }
    std::string text;
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n == 0)
            break;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            const int error = errno;
            ::close(fd);
            Fail(fault::DataFailed, "Cannot read", path, error);
        }
        text.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return text;
}

void WriteTextFileAtomically(const std::string& path, const std::string& text) {
    std::string temp = path + ".tmp-XXXXXX";
    const int fd = ::mkstemp(temp.data());
    if (fd < 0)
        Fail(fault::DataFailed, "Cannot write", path, errno);
    // mkstemp makes the file private; a replaced file keeps its own mode.
    struct stat old {};
    ::fchmod(fd, ::stat(path.c_str(), &old) == 0 ? (old.st_mode & 07777) : kNewFileMode);
    auto abandon = [&](int error) {
        ::close(fd);
        ::unlink(temp.c_str());
        Fail(fault::DataFailed, "Cannot write", path, error);
    };
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t n = ::write(fd, rest.data(), rest.size());
        if (n < 0) {
            if (errno == EINTR)
                continue;
            abandon(errno);
        }
        rest.remove_prefix(static_cast<std::size_t>(n));
    }
    if (::fsync(fd) != 0)
        abandon(errno);
    if (::close(fd) != 0) {
        const int error = errno;
        ::unlink(temp.c_str());
        Fail(fault::DataFailed, "Cannot write", path, error);
    }
    if (::rename(temp.c_str(), path.c_str()) != 0) {
        const int error = errno;
        ::unlink(temp.c_str());
        Fail(fault::DataFailed, "Cannot write", path, error);
    }
    // The rename is durable only once the folder's entry is on disk.
    const int dir = ::open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
}

} // namespace tess::detail
