// PosixFile.h: the one way files are opened for reading on POSIX systems, shared by the
// whole-file read and the module mapping.
#pragma once

#include "platform/Platform.h"

#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Framework::Platform {

// Opens path read-only and returns the descriptor when it names a regular file of at most
// kMaxFileSize bytes (size then receives its size); -1 otherwise, as for a missing file.
// A plain open of a FIFO waits for a writer and one of some devices for a carrier, so the
// open itself never blocks, and the kind and size are taken from the opened descriptor:
// no other file can be put in the checked one's place between the check and the read.
// The descriptor returned blocks again, so that reads are the usual complete ones.
inline int OpenResourceFile(const char* path, std::uint64_t& size) {
    size = 0;
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0)
        return -1;
    struct stat info {};
    const int flags = ::fcntl(fd, F_GETFL);
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size < 0 ||
        static_cast<std::uint64_t>(info.st_size) > kMaxFileSize || flags < 0 ||
        ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK) != 0) {
        ::close(fd);
        return -1;
    }
    size = static_cast<std::uint64_t>(info.st_size);
    return fd;
}

} // namespace Framework::Platform
