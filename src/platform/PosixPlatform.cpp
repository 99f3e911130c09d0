// The POSIX implementation of the platform interface.
#include "base/Unicode.h"
#include "platform/MappedModule.h"
#include "platform/Platform.h"
#include "platform/PosixFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cwchar>
#include <fcntl.h>
#include <limits.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Framework::Platform {
namespace {

QanStringT<char> Narrow(const QanStringT<wchar_t>& path) {
    return Utf8::Encode(path);
}

bool StatPath(const QanStringT<wchar_t>& path, struct stat& info) {
    if (path.empty())
        return false;
    return ::stat(Narrow(path).c_str(), &info) == 0;
}

// Reading a large file into fresh memory costs more in page faults than in copying: ask
// for huge pages over the whole 2 MiB blocks of the buffer. Only a hint; refused quietly.
void PreferLargePages(char* buffer, std::uint64_t size) {
#if defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t kHugePage = std::uintptr_t{2} << 20;
    if (size < 2 * kHugePage)
        return;
    const auto begin = reinterpret_cast<std::uintptr_t>(buffer);
    const std::uintptr_t first = (begin + kHugePage - 1) & ~(kHugePage - 1);
    const std::uintptr_t last = (begin + size) & ~(kHugePage - 1);
    if (last > first)
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
    (void)buffer;
    (void)size;
#endif
}

// A descriptor from OpenResourceFile, closed when it goes out of scope (when it is open).
struct OpenedFile {
    explicit OpenedFile(int descriptor) : fd(descriptor) {}
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile() {
        if (fd >= 0)
            ::close(fd);
    }
    const int fd;
};

bool HasSeparator(const wchar_t* name) {
    return std::wcschr(name, L'/') != nullptr;
}

class PosixPlatform final : public IPlatform {
public:
    std::unique_ptr<char[]> ReadFileInfoBuffer(const wchar_t* path,
                                               std::uint64_t& size) const override {
        return ReadWhole(path, size, nullptr);
    }

    std::unique_ptr<char[]> ReadFileInfoBuffer(
        const wchar_t* path, std::uint64_t& size,
        const std::function<void(const char*, std::size_t, std::size_t)>& arrived) const override {
        return ReadWhole(path, size, &arrived);
    }

    bool ReadFileInPieces(const wchar_t* path,
                          const std::function<bool(std::string_view)>& piece) const override {
        if (!path || !*path)
            return false;
        std::uint64_t length = 0;
        const OpenedFile closer{OpenResourceFile(Utf8::Encode(path).c_str(), length)};
        if (closer.fd < 0)
            return false;
        constexpr std::size_t kPiece = std::size_t{1} << 20;
        const std::unique_ptr<char[]> buffer(new char[kPiece]);
        std::uint64_t done = 0;
        while (done < length) {
            const ssize_t got =
                ::read(closer.fd, buffer.get(),
                       static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, length - done)));
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                return false; // the file shrank or failed while it was read
            done += static_cast<std::uint64_t>(got);
            if (!piece(std::string_view(buffer.get(), static_cast<std::size_t>(got))))
                return false;
        }
        return length > 0 || piece(std::string_view());
    }

    UnreadFile WhyUnread(const wchar_t* path) const override {
        struct stat info {};
        if (!StatPath(path, info))
            return UnreadFile::Missing;
        if (!S_ISREG(info.st_mode))
            return UnreadFile::NotRegularFile;
        if (info.st_size < 0 || static_cast<std::uint64_t>(info.st_size) > kMaxFileSize)
            return UnreadFile::TooLarge;
        return UnreadFile::Unreadable;
    }
    bool Exists(const QanStringT<wchar_t>& path) const override {
        struct stat info {};
        return StatPath(path, info);
    }
    bool IsFile(const QanStringT<wchar_t>& path) const override {
        struct stat info {};
        return StatPath(path, info) && S_ISREG(info.st_mode);
    }
    bool IsFolder(const QanStringT<wchar_t>& path) const override {
        struct stat info {};
        return StatPath(path, info) && S_ISDIR(info.st_mode);
    }

    QanStringT<wchar_t> ExecutableDirectory() const override {
        char buffer[PATH_MAX];
        const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
        if (length <= 0)
            return {};
        QanStringT<char> path(buffer, static_cast<std::size_t>(length));
        const auto slash = path.rfind('/');
        path.resize(slash == QanStringT<char>::npos ? 0 : (slash == 0 ? 1 : slash));
        return Utf8::Decode(path);
    }

    // A bare name is looked for beside the executable, then in each directory of
    // LD_LIBRARY_PATH, never in the current directory; a path is opened as given.
    HINSTANCE LoadModule(const wchar_t* name) const override {
        if (!name || !*name)
            return nullptr;
        if (HasSeparator(name))
            return OpenMappedModule(Utf8::Encode(name));
        const QanStringT<char> file = Utf8::Encode(name);
        const QanStringT<char> exeDir = Utf8::Encode(ExecutableDirectory());
        if (!exeDir.empty())
            if (HINSTANCE module = OpenMappedModule(exeDir + "/" + file))
                return module;
        if (const char* searchPath = std::getenv("LD_LIBRARY_PATH")) {
            std::string_view rest(searchPath);
            while (!rest.empty()) {
                const auto colon = rest.find(':');
                const std::string_view dir = rest.substr(0, colon);
                rest =
                    colon == std::string_view::npos ? std::string_view{} : rest.substr(colon + 1);
                if (dir.empty())
                    continue; // an empty entry would mean the current directory
                if (HINSTANCE module = OpenMappedModule(QanStringT<char>(dir) + "/" + file))
                    return module;
            }
        }
        return nullptr;
    }
    void FreeModule(HINSTANCE module) const override { CloseMappedModule(module); }
    std::span<const std::byte> FindRawDataResource(HINSTANCE module, int id) const override {
        return MappedModuleRawData(module, id);
    }

    // Only the Windows shell can describe its stock icons.
    bool GetStockIconLocation(int, StockIconLocation&) const override { return false; }

    int CopyWide(wchar_t* destination, std::int64_t size, const wchar_t* source) const override {
        if (!destination || size <= 0)
            return EINVAL;
        if (!source) {
            destination[0] = L'\0';
            return EINVAL;
        }
        const std::size_t length = std::wcslen(source);
        if (static_cast<std::uint64_t>(length) >= static_cast<std::uint64_t>(size)) {
            destination[0] = L'\0';
            return ERANGE;
        }
        std::wmemcpy(destination, source, length + 1);
        return 0;
    }

private:
    // The whole-file read; with arrived, in pieces small enough to stay in cache, each
    // told as it comes.
    static std::unique_ptr<char[]>
    ReadWhole(const wchar_t* path, std::uint64_t& size,
              const std::function<void(const char*, std::size_t, std::size_t)>* arrived) {
        size = 0;
        if (!path || !*path)
            return nullptr;
        std::uint64_t length = 0;
        // Closed on every way out, an allocation failure included.
        const OpenedFile closer{OpenResourceFile(Utf8::Encode(path).c_str(), length)};
        if (closer.fd < 0)
            return nullptr;
        // One byte more than the file so that even an empty file yields a buffer. A file
        // within the limit that still cannot be held is a real shortage of memory, and the
        // allocation failure is the caller's to see.
        std::unique_ptr<char[]> buffer(new char[length + 1]);
        PreferLargePages(buffer.get(), length + 1);
        std::uint64_t done = 0;
        constexpr std::uint64_t kPiece = 256 * 1024;
        while (done < length) {
            const std::uint64_t want = arrived ? std::min(kPiece, length - done) : length - done;
            const ssize_t got = ::read(closer.fd, buffer.get() + done, want);
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                break;
            done += static_cast<std::uint64_t>(got);
            if (arrived && *arrived)
                (*arrived)(buffer.get(), static_cast<std::size_t>(done),
                           static_cast<std::size_t>(length));
        }
        if (done != length)
            return nullptr; // the file shrank or failed while it was read
        buffer[length] = '\0';
        size = length;
        return buffer;
    }
};

} // namespace

const IPlatform& SystemPlatform() {
    static const PosixPlatform platform;
    return platform;
}

} // namespace Framework::Platform
