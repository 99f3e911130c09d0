// StringTestFiles.h: a builder for string text files and a table scanned from a real
// file, shared by the string tests.
#pragma once

#include "strings/CsvKeyTable.h"
#include "strings/XmlStringTable.h"
#include "support/TempDir.h"

namespace StringTests {
using Framework::Internal::StringTable;
using Row = std::pair<std::string, std::string>;
using Rows = std::vector<Row>;

// A string text file as the suite's build writes it: declaration and root start tag on
// lines of their own, then one element per row.
inline std::string TextFile(const Rows& rows) {
    std::string bytes = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings lang=\"en\">\n";
    for (const auto& [id, text] : rows)
        bytes += "  <s id=\"" + id + "\">" + text + "</s>\n";
    return bytes + "</strings>\n";
}

// Writes bytes to a file in dir and scans it as a key table or a string text file.
inline StringTable Load(const QanTest::TempDir& dir, std::string_view bytes, bool keyTable,
                        bool sort = false) {
    StringTable table;
    const auto path = dir.Write(keyTable ? "k.csv" : "t.xml", bytes).wstring();
    keyTable ? Framework::Internal::LoadCsvKeyTable(table, path)
             : Framework::Internal::LoadXmlStringTable(table, path, sort);
    return table;
}

// The rows of a table as owned strings, in table order.
inline Rows RowsOf(const StringTable& table) {
    Rows rows;
    for (const auto& entry : table.entries)
        rows.emplace_back(std::string(entry.key), std::string(entry.text));
    return rows;
}

} // namespace StringTests
