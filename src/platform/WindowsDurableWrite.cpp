// WindowsDurableWrite.cpp: CREATE_NEW (which fails on any existing name, links
// included), write, FlushFileBuffers.
#include "platform/DurableWrite.h"

#include <windows.h>

namespace Framework::Platform {
namespace {

std::string Failure(const char* what, const std::filesystem::path& path) {
    return std::string(what) + " " + path.string() + ": error " + std::to_string(::GetLastError());
}

} // namespace

std::string CreateFileDurably(const std::filesystem::path& path, std::string_view bytes,
                              std::filesystem::perms perms) {
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return Failure("cannot create", path);
    std::string error;
    std::size_t done = 0;
    while (error.empty() && done < bytes.size()) {
        const DWORD chunk =
            static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1u << 30));
        DWORD wrote = 0;
        if (!::WriteFile(file, bytes.data() + done, chunk, &wrote, nullptr) || wrote == 0)
            error = Failure("cannot write", path);
        else
            done += wrote;
    }
    if (error.empty() && !::FlushFileBuffers(file))
        error = Failure("cannot flush", path);
    ::CloseHandle(file);
    if (error.empty()) {
        // Windows keeps only the read-only flag of a file's mode.
        std::error_code ec;
        std::filesystem::permissions(path, perms, ec);
    }
    if (!error.empty())
        ::DeleteFileW(path.c_str());
    return error;
}

void SyncDirectory(const std::filesystem::path&) {
    // NTFS orders the rename with the data flushed before it; there is no directory flush.
}

} // namespace Framework::Platform
