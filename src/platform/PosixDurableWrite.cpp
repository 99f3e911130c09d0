// PosixDurableWrite.cpp: exclusive creation without following links, write, fsync.
#include "platform/DurableWrite.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Framework::Platform {
namespace {

std::string Failure(const char* what, const std::filesystem::path& path) {
    return std::string(what) + " " + path.string() + ": " + std::strerror(errno);
}

} // namespace

std::string CreateFileDurably(const std::filesystem::path& path, std::string_view bytes,
                              std::filesystem::perms perms) {
    const auto mode = static_cast<mode_t>(perms & std::filesystem::perms::mask);
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (fd < 0)
        return Failure("cannot create", path);
    std::string error;
    // The umask narrowed the mode given to open; the original's mode is wanted exactly.
    if (::fchmod(fd, mode) != 0)
        error = Failure("cannot set the mode of", path);
    std::size_t done = 0;
    while (error.empty() && done < bytes.size()) {
        const ssize_t wrote = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (wrote < 0 && errno == EINTR)
            continue;
        if (wrote <= 0)
            error = Failure("cannot write", path);
        else
            done += static_cast<std::size_t>(wrote);
    }
    if (error.empty() && ::fsync(fd) != 0)
        error = Failure("cannot flush", path);
    if (::close(fd) != 0 && error.empty())
        error = Failure("cannot close", path);
    if (!error.empty())
        ::unlink(path.c_str());
    return error;
}

void SyncDirectory(const std::filesystem::path& dir) {
    const int fd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

} // namespace Framework::Platform
