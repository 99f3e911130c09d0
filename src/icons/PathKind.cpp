// PathKind.cpp: the process-wide path-kind cache. Entries are never removed or refreshed:
// a location that appears or vanishes after its first look-up keeps its first answer.
#include "icons/PathKind.h"

#include "platform/Platform.h"

#include <cwctype>
#include <mutex>
#include <unordered_map>

namespace Framework::Internal {
namespace {

struct PathKindCache {
    std::mutex lock; // look-ups may run on any thread
    std::unordered_map<QanStringT<wchar_t>, PathKind> kinds;

    PathKindCache() : kinds(8) { kinds.max_load_factor(1.0f); }
};

PathKindCache& Cache() {
    static PathKindCache cache;
    return cache;
}

QanStringT<wchar_t> Lowered(const QanStringT<wchar_t>& path) {
    QanStringT<wchar_t> key(path);
    for (wchar_t& c : key)
        c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
    return key;
}

PathKind AskFileSystem(const QanStringT<wchar_t>& path) {
    const auto& platform = Platform::CurrentPlatform();
    if (platform.IsFile(path))
        return PathKind::File;
    if (platform.IsFolder(path))
        return PathKind::Folder;
    return PathKind::None;
}

} // namespace

PathKind GetPathKind(const QanStringT<wchar_t>& path) {
    if (path.empty())
        return PathKind::None;
    QanStringT<wchar_t> key = Lowered(path);
    PathKindCache& cache = Cache();
    {
        std::lock_guard guard(cache.lock);
        if (const auto found = cache.kinds.find(key); found != cache.kinds.end())
            return found->second;
    }
    // The file system is asked with the path as given, outside the lock; of two threads
    // that race here the first to store wins and both answer what was stored.
    const PathKind kind = AskFileSystem(path);
    std::lock_guard guard(cache.lock);
    return cache.kinds.emplace(std::move(key), kind).first->second;
}

} // namespace Framework::Internal
