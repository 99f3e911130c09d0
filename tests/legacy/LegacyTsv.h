// LegacyTsv.h: reads data/legacy_guids.tsv, the source of the compiled-in legacy GUID
// table, so that tests can hold the table and its index against it.
#pragma once

#include <string>
#include <vector>

namespace QanTest {

struct LegacyTsvRow {
    int id = 0;
    std::string component;
    std::string guid;
};

// Every row in file order; fails the current test when the file cannot be read.
std::vector<LegacyTsvRow> ReadLegacyTsv();

// ASCII text widened character by character.
std::wstring Widen(const std::string& text);

} // namespace QanTest
