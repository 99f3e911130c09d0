// UnreadFile.h: the load report's record of a file that ReadFileInfoBuffer gave nothing
// for: missing, or refused with the reason.
#pragma once

#include "platform/Platform.h"

#include <framework/LoadReport.h>

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

} // namespace Framework::Platform
