// TextFeatures.h: the parts of a handed-out text that code and the library interpret, and
// that a translation must therefore keep: printf-style and {n} placeholders, the mnemonic
// '&', tagged fields and control characters.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool {

struct TextFeatures {
    std::vector<std::string> printf; // "%s", "%1$d", "%-5.2f"; "%%" is no placeholder
    std::vector<std::string> braces; // "{0}", "{1}"
    int mnemonics = 0;               // single '&' ("&&" is a literal ampersand)
    std::vector<std::string> tags;   // two-letter tags of U+0001 fields, in order
    std::map<char, int> controls;    // line feeds, carriage returns, tabs by count
};

// Reads the features of a UTF-8 text as the library hands it out.
// Features("\x01" "CT=&Open %s") has tags {"CT"}, one mnemonic and printf {"%s"}.
TextFeatures Features(std::string_view text);

// What differs between a source text and its translation, one short phrase per feature
// ("printf placeholders %s vs %d"); empty when they agree. Order of {n} and positional
// printf placeholders may change; plain printf placeholders must keep their order.
std::vector<std::string> FeatureDifferences(const TextFeatures& source, const TextFeatures& target);

} // namespace QanTool
