// StringTestFiles.cpp: builders for string text files and key tables.
#include "StringTestFiles.h"

#include "platform/Utf8.h"

#include <cstring>

namespace StringTests {

using Framework::Internal::StringTable;

std::string TextFileBytes(const std::vector<Row>& rows) {
    std::string bytes = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings lang=\"en\">\n";
    for (const auto& [id, text] : rows)
        bytes += "  <s id=\"" + id + "\">" + text + "</s>\n";
    bytes += "</strings>\n";
    return bytes;
}

std::string KeyTableBytes(const std::vector<Row>& rows) {
    std::string bytes;
    for (const auto& [key, id] : rows)
        bytes += key + "," + id + "\n";
    return bytes;
}

std::vector<Row> Rows(const StringTable& table) {
    std::vector<Row> rows;
    for (const auto& entry : table.entries)
        rows.emplace_back(std::string(entry.key), std::string(entry.text));
    return rows;
}

std::wstring WidePath(const std::filesystem::path& path) {
    const std::u8string bytes = path.u8string();
    return Framework::Utf8::Decode({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

StringTable TableOf(const std::vector<Row>& rows) {
    std::size_t size = 0;
    for (const auto& [key, text] : rows)
        size += key.size() + text.size();
    StringTable table;
    table.buffer.reset(new char[size + 1]);
    char* out = table.buffer.get();
    for (const auto& [key, text] : rows) {
        std::memcpy(out, key.data(), key.size());
        std::memcpy(out + key.size(), text.data(), text.size());
        table.entries.push_back({{out, key.size()}, {out + key.size(), text.size()}});
        out += key.size() + text.size();
    }
    return table;
}

} // namespace StringTests
