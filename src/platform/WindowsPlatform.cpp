// The Windows implementation of the platform interface.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <shellapi.h>
#include <wchar.h>

// <windows.h> defines FreeModule as a macro for FreeLibrary; the interface has its own.
#undef FreeModule

#include "platform/Platform.h"

namespace Framework::Platform {
namespace {

DWORD Attributes(const QanStringT<wchar_t>& path) {
    if (path.empty())
        return INVALID_FILE_ATTRIBUTES;
    return ::GetFileAttributesW(path.c_str());
}

// Whether an opened handle is a file on a disk, not a folder, and of at most kMaxFileSize
// bytes (size then receives its size). Checked on the handle that is then read, before
// anything is allocated: a pipe, a console or another device is refused unread, as a
// missing file is, so that a read never waits on it.
bool IsResourceFile(HANDLE file, std::uint64_t& size) {
    BY_HANDLE_FILE_INFORMATION info{};
    if (::GetFileType(file) != FILE_TYPE_DISK || !::GetFileInformationByHandle(file, &info))
        return false;
    if (info.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE))
        return false;
    size = std::uint64_t{info.nFileSizeHigh} << 32 | info.nFileSizeLow;
    return size <= kMaxFileSize;
}

class WindowsPlatform final : public IPlatform {
public:
    std::unique_ptr<char[]> ReadFileInfoBuffer(const wchar_t* path,
                                               std::uint64_t& size) const override {
        size = 0;
        if (!path || !*path)
            return nullptr;
        HANDLE file = ::CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE)
            return nullptr;
        // Closed on every way out, an allocation failure included.
        const struct Closer {
            HANDLE file;
            ~Closer() { ::CloseHandle(file); }
        } closer{file};
        std::uint64_t total = 0;
        if (!IsResourceFile(file, total))
            return nullptr;
        // One byte more than the file so that even an empty file yields a buffer. A file
        // within the limit that still cannot be held is a real shortage of memory, and the
        // allocation failure is the caller's to see.
        std::unique_ptr<char[]> buffer(new char[total + 1]);
        std::uint64_t done = 0;
        while (done < total) {
            const DWORD chunk = static_cast<DWORD>(std::min<std::uint64_t>(total - done, 1u << 30));
            DWORD got = 0;
            if (!::ReadFile(file, buffer.get() + done, chunk, &got, nullptr) || got == 0)
                break;
            done += got;
        }
        if (done != total)
            return nullptr; // the file shrank or failed while it was read
        buffer[total] = '\0';
        size = total;
        return buffer;
    }

    UnreadFile WhyUnread(const wchar_t* path) const override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!path || !*path || !::GetFileAttributesExW(path, GetFileExInfoStandard, &data))
            return UnreadFile::Missing;
        if (data.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE))
            return UnreadFile::NotRegularFile;
        const std::uint64_t size =
            (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        return size > kMaxFileSize ? UnreadFile::TooLarge : UnreadFile::Unreadable;
    }
    bool Exists(const QanStringT<wchar_t>& path) const override {
        return Attributes(path) != INVALID_FILE_ATTRIBUTES;
    }
    bool IsFile(const QanStringT<wchar_t>& path) const override {
        const DWORD attributes = Attributes(path);
        return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
    }
    bool IsFolder(const QanStringT<wchar_t>& path) const override {
        const DWORD attributes = Attributes(path);
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    }

    QanStringT<wchar_t> ExecutableDirectory() const override {
        QanStringT<wchar_t> path(MAX_PATH, L'\0');
        for (;;) {
            const DWORD length =
                ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
            if (length == 0)
                return {};
            if (length < path.size()) {
                path.resize(length);
                break;
            }
            path.resize(path.size() * 2);
        }
        const auto slash = path.find_last_of(L"\\/");
        path.resize(slash == QanStringT<wchar_t>::npos ? 0 : slash);
        return path;
    }

    HINSTANCE LoadModule(const wchar_t* name) const override {
        return name ? ::LoadLibraryW(name) : nullptr;
    }
    void FreeModule(HINSTANCE module) const override {
        if (module)
            ::FreeLibrary(module);
    }
    std::span<const std::byte> FindRawDataResource(HINSTANCE module, int id) const override {
        if (!module)
            return {};
        HRSRC resource = ::FindResourceW(module, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(10));
        if (!resource)
            return {};
        HGLOBAL loaded = ::LoadResource(module, resource);
        if (!loaded)
            return {};
        const void* bytes = ::LockResource(loaded);
        const DWORD size = ::SizeofResource(module, resource);
        if (!bytes || size == 0)
            return {};
        return {static_cast<const std::byte*>(bytes), size};
    }

    bool GetStockIconLocation(int stockIconId, StockIconLocation& location) const override {
        SHSTOCKICONINFO info{};
        info.cbSize = sizeof info;
        if (FAILED(::SHGetStockIconInfo(static_cast<SHSTOCKICONID>(stockIconId), 0, &info)))
            return false;
        location.modulePath = info.szPath;
        location.iconIndex = info.iIcon;
        return true;
    }

    // The C runtime's own copy, so that a failure reaches the host's handler of invalid
    // parameters. A negative size is widened with its sign like the runtime's callers do;
    // it is passed as 0 so that the runtime rejects it instead of trusting a huge buffer.
    int CopyWide(wchar_t* destination, std::int64_t size, const wchar_t* source) const override {
        const rsize_t bound = size <= 0 ? 0 : static_cast<rsize_t>(size);
        return static_cast<int>(::wcscpy_s(destination, bound, source));
    }
};

} // namespace

const IPlatform& SystemPlatform() {
    static const WindowsPlatform platform;
    return platform;
}

} // namespace Framework::Platform
