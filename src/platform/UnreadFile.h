// UnreadFile.h: the load report's record of a file that ReadFileInfoBuffer gave nothing
// for: missing, or refused with the reason; and the whole-file read that fills it.
#pragma once

#include "platform/Platform.h"

#include <framework/LoadReport.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace Framework::Platform {

inline void DescribeUnreadFile(LoadReport::FileRecord& record, const wchar_t* path) {
    record.rows = 0;
    record.bytes = 0;
    switch (CurrentPlatform().WhyUnread(path)) {
    case UnreadFile::Missing:
        record.outcome = LoadReport::Outcome::Missing;
        return;
    case UnreadFile::NotRegularFile:
        record.outcome = LoadReport::Outcome::Refused;
        record.reason = L"not a regular file";
        return;
    case UnreadFile::TooLarge:
        record.outcome = LoadReport::Outcome::Refused;
        record.reason = L"larger than 4 GiB - 1 bytes";
        return;
    case UnreadFile::Unreadable:
        record.outcome = LoadReport::Outcome::Refused;
        record.reason = L"cannot be opened or read";
        return;
    }
}

// ReadFileInfoBuffer for a loader that keeps a record: the record gets the path, and the
// reason when nothing could be read. record may be null.
inline std::unique_ptr<char[]> ReadRecordedFile(const wchar_t* path, std::uint64_t& size,
                                                LoadReport::FileRecord* record) {
    std::unique_ptr<char[]> data = CurrentPlatform().ReadFileInfoBuffer(path, size);
    if (record) {
        record->path = path;
        if (!data)
            DescribeUnreadFile(*record, path);
    }
    return data;
}

// The same, telling the caller as the bytes arrive (see IPlatform::ReadFileInfoBuffer).
inline std::unique_ptr<char[]>
ReadRecordedFile(const wchar_t* path, std::uint64_t& size, LoadReport::FileRecord* record,
                 const std::function<void(const char*, std::size_t, std::size_t)>& arrived) {
    std::unique_ptr<char[]> data = CurrentPlatform().ReadFileInfoBuffer(path, size, arrived);
    if (record) {
        record->path = path;
        if (!data)
            DescribeUnreadFile(*record, path);
    }
    return data;
}

} // namespace Framework::Platform
