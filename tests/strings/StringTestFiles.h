// StringTestFiles.h: builders for string text files and key tables, and a readable form of
// a loaded table, shared by the string tests.
#pragma once

#include "strings/StringTable.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace StringTests {

using Row = std::pair<std::string, std::string>;

// A string text file as the suite's build writes it: declaration, root start tag, then
// one element per row on its own line, then the root end tag.
std::string TextFileBytes(const std::vector<Row>& rows);
// A key table: "key,id" lines ended by a line feed.
std::string KeyTableBytes(const std::vector<Row>& rows);
// The rows of a table as owned strings, in table order.
std::vector<Row> Rows(const Framework::Internal::StringTable& table);
// A path as the library takes it, decoded from UTF-8 so that it does not depend on the
// program's locale.
std::wstring WidePath(const std::filesystem::path& path);
// A table built in memory, its views pointing into its own buffer.
Framework::Internal::StringTable TableOf(const std::vector<Row>& rows);

} // namespace StringTests
