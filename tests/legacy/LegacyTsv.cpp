// LegacyTsv.cpp: a reader of the legacy GUID data file written independently of the
// build's generator, so that the two can be compared.
#include "LegacyTsv.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace QanTest {

std::vector<LegacyTsvRow> ReadLegacyTsv() {
    std::ifstream in(QANRES_LEGACY_GUIDS_TSV, std::ios::binary);
    EXPECT_TRUE(in) << "cannot read " << QANRES_LEGACY_GUIDS_TSV;
    std::vector<LegacyTsvRow> rows;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        const auto tab1 = line.find('\t');
        const auto tab2 = line.find('\t', tab1 + 1);
        EXPECT_NE(tab2, std::string::npos) << "malformed line: " << line;
        if (tab2 == std::string::npos)
            continue;
        rows.push_back({std::stoi(line.substr(0, tab1)), line.substr(tab1 + 1, tab2 - tab1 - 1),
                        line.substr(tab2 + 1)});
    }
    return rows;
}

std::wstring Widen(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

} // namespace QanTest
