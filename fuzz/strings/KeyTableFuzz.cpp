// KeyTableFuzz.cpp: any bytes as a key table. Every row the scanner keeps is a pair of
// views into the file as read, in file order, neither reaching into the other; and the
// kept rows written back as "key,id" lines scan to the same rows.
#include "FuzzPlatform.h"
#include "strings/CsvKeyTable.h"

#include <cstdlib>
#include <string>

namespace {
using namespace Framework::Internal;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

std::vector<std::pair<std::string, std::string>>
Scan(QanFuzz::FuzzPlatform& platform, std::string_view bytes, StringTable* keep = nullptr) {
    platform.bytes = std::as_bytes(std::span(bytes.data(), bytes.size()));
    StringTable table;
    LoadCsvKeyTable(table, L"string.csv");
    std::vector<std::pair<std::string, std::string>> rows;
    for (const auto& row : table.entries)
        rows.emplace_back(std::string(row.key), std::string(row.text));
    if (keep)
        *keep = std::move(table);
    return rows;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static QanFuzz::FuzzPlatform platform;
    Framework::Platform::SetPlatformForTests(&platform);
    const std::string_view input(reinterpret_cast<const char*>(data), size);

    StringTable table;
    const auto rows = Scan(platform, input, &table);
    const char* const begin = table.buffer.get();
    const char* previousEnd = begin;
    for (const auto& row : table.entries) {
        // Key before id, both inside the buffer, each row after the one before it, with
        // exactly the separator the grammar names between them.
        Check(row.key.data() >= previousEnd);
        Check(row.text.data() == row.key.data() + row.key.size() + 1);
        Check(row.text.data() + row.text.size() < begin + size);
        Check(row.key.data()[row.key.size()] == ',');
        Check(row.text.data()[row.text.size()] == '\n');
        Check(row.key.find(',') == std::string_view::npos);
        Check(row.text.find('\n') == std::string_view::npos);
        previousEnd = row.text.data() + row.text.size() + 1;
    }

    std::string written;
    for (const auto& [key, id] : rows)
        written += key + ',' + id + '\n';
    Check(Scan(platform, written) == rows);
    return 0;
}
