// Fuzzes the way from a platform icon library's bytes to cursor look-ups: the PE
// resource walk, the cursor table archive and the search over it. The first input byte
// chooses whether the rest is a whole PE file or the table's bytes themselves.
#include "FuzzPlatform.h"
#include "icons/CursorResourceCollection.h"
#include "icons/CursorTable.h"

#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    static QanFuzz::FuzzPlatform platform;
    Framework::Platform::SetPlatformForTests(&platform);
    platform.asPeFile = data[0] & 1;
    platform.bytes = std::as_bytes(std::span(data + 1, size - 1));

    (void)Framework::Platform::IsPeImage(platform.bytes);
    for (int id : {1, 2, 3}) {
        const auto found = platform.FindRawDataResource(nullptr, id);
        // A resource is a part of the input, never anything around it.
        if (!found.empty() &&
            (found.data() < platform.bytes.data() ||
             found.data() + found.size() > platform.bytes.data() + platform.bytes.size()))
            __builtin_trap();
    }

    const auto module = reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(0x10));
    try {
        Framework::Internal::CursorResourceCollection cursors;
        cursors.LoadFromModule(module);
        const auto bytes = platform.FindRawDataResource(module, 2);
        const auto table = Framework::Internal::ReadCursorTable(bytes);
        // Where the reading stopped lies in the bytes; a complete table has no blank
        // tail, and a name that could not be read leaves one.
        using Stop = Framework::Internal::CursorTableStop;
        const bool whole = table.stop == Stop::Complete || table.stop == Stop::TrailingBytes ||
                           table.stop == Stop::NoCount;
        const bool nameFailed = table.stop == Stop::NoNameLength || table.stop == Stop::NameTooLong;
        if (table.stopOffset > bytes.size() || (whole && table.blankCount > 0) ||
            (nameFailed && table.blankCount == 0) ||
            (table.stop == Stop::NoId && (table.entries.empty() || table.entries.back().id != 0)))
            __builtin_trap();
        (void)cursors.GetResource(L"");
        (void)cursors.GetResource(L"Arrow");
        for (std::size_t i = 0; i < table.entries.size() && i < 8; ++i) {
            const auto hit = cursors.GetResource(table.entries[i].name);
            if (hit && hit->module != module)
                __builtin_trap();
        }
    } catch (const std::length_error&) {
        // A negative stored count: the one failure that is meant to leave the reader.
    }
    return 0;
}
