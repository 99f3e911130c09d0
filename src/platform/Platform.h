// Platform.h: everything the library asks of the operating system, behind one interface.
// Windows and POSIX each implement it; tests install their own through SetPlatformForTests.
#pragma once

#include <framework/Handle.h>
#include <framework/QanString.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

namespace Framework::Platform {

// Where a stock icon lives: the module file and the icon's index in it, as the shell
// reports it (a resource id appears as a negative index).
struct StockIconLocation {
    QanStringT<wchar_t> modulePath;
    int iconIndex = 0;
};

// The largest file the library reads whole or maps as a module: 4 GiB - 1 bytes, so that
// every offset into a resource file fits 32 bits, as it must in a module's own headers.
// Real resource files are a few megabytes. A larger file (a damaged or sparse one) is
// refused from its size alone, before anything is allocated, the way an unreadable file
// is, instead of asking for an allocation the process cannot make.
inline constexpr std::uint64_t kMaxFileSize = 0xFFFF'FFFFu;
// The buffer holds one byte more than the file, and the tables measure views into it and
// distances within it in std::size_t and std::ptrdiff_t.
static_assert(kMaxFileSize < static_cast<std::uint64_t>(PTRDIFF_MAX));

// Why ReadFileInfoBuffer gave no buffer, as the load report tells it.
enum class UnreadFile { Missing, NotRegularFile, TooLarge, Unreadable };

class IPlatform {
public:
    virtual ~IPlatform() = default;

    // The whole file as one owned buffer, or null when it cannot be read (missing, no
    // permission, no regular file such as a folder, a FIFO or a device, or larger than
    // kMaxFileSize). size receives the byte count of a read file, 0 otherwise. Never
    // waits on the file: what is no regular file is refused without being read.
    virtual std::unique_ptr<char[]> ReadFileInfoBuffer(const wchar_t* path,
                                                       std::uint64_t& size) const = 0;
    // The same read, telling arrived(buffer, count, total) each time more of the file is in
    // (total: the file's size): the buffer's first count bytes are then final, so that a reader can
    // scan them while they are still in the processor's cache. After a null answer whatever arrived
    // is to be dropped. The default reads the whole file and tells once. Example:
    // ReadFileInfoBuffer(path, size, [&](const char* at, std::size_t n, std::size_t) {}).
    virtual std::unique_ptr<char[]> ReadFileInfoBuffer(
        const wchar_t* path, std::uint64_t& size,
        const std::function<void(const char*, std::size_t, std::size_t)>& arrived) const;
    // Reads the file as ReadFileInfoBuffer would, handing its bytes to piece in order, a
    // piece at a time, so that a reader that keeps little never holds the whole file. False
    // when the file cannot be read, or stops being readable on the way (the pieces handed
    // out so far are then to be dropped), or when piece returns false. The default reads
    // the whole file and hands it out as one piece.
    virtual bool ReadFileInPieces(const wchar_t* path,
                                  const std::function<bool(std::string_view)>& piece) const;
    // Asked only after a failed read, to report it. The default tells a missing path and
    // one that is no regular file from the rest (a file that cannot be opened).
    virtual UnreadFile WhyUnread(const wchar_t* path) const;
    virtual bool Exists(const QanStringT<wchar_t>& path) const = 0;
    virtual bool IsFile(const QanStringT<wchar_t>& path) const = 0;
    virtual bool IsFolder(const QanStringT<wchar_t>& path) const = 0;

    // Directory of the running executable, without a trailing separator.
    virtual QanStringT<wchar_t> ExecutableDirectory() const = 0;

    // Loads a module by bare name (the system's library search) or by path; null on
    // failure. FreeModule releases what LoadModule returned.
    virtual HINSTANCE LoadModule(const wchar_t* name) const = 0;
    virtual void FreeModule(HINSTANCE module) const = 0;
    // The bytes of raw-data resource id (type 10) of a loaded module; an empty span
    // when the module has no such resource. The bytes live as long as the module.
    virtual std::span<const std::byte> FindRawDataResource(HINSTANCE module, int id) const = 0;

    // The shell's description of a stock icon; false when it cannot describe it.
    virtual bool GetStockIconLocation(int stockIconId, StockIconLocation& location) const = 0;

    // wcscpy_s: copies source with its terminator into destination of size characters.
    // Returns 0 on success, an error number when destination is null, size is 0 or less
    // or too small (destination then emptied where it can be).
    virtual int CopyWide(wchar_t* destination, std::int64_t size, const wchar_t* source) const = 0;
};

// The platform in use: the system's own unless a test installed another.
const IPlatform& CurrentPlatform();
// Installs a borrowed platform; null returns to the system's own.
void SetPlatformForTests(const IPlatform* platform);
// The system's own implementation, for fakes that forward part of their work to it.
const IPlatform& SystemPlatform();

} // namespace Framework::Platform
