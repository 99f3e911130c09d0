// TextFeatures.cpp: one pass over the text for each kind of feature.
#include "TextFeatures.h"

#include <algorithm>

namespace QanTool {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// The printf conversion at text[at] ('%'), or empty when none starts there.
std::string_view PrintfAt(std::string_view text, std::size_t at) {
    std::size_t i = at + 1;
    std::size_t digits = i;
    while (digits < text.size() && IsDigit(text[digits]))
        ++digits;
    if (digits > i && digits < text.size() && text[digits] == '$')
        i = digits + 1; // a positional argument
    while (i < text.size() && std::string_view("-+ #0'").find(text[i]) != std::string_view::npos)
        ++i;
    while (i < text.size() && (IsDigit(text[i]) || text[i] == '*'))
        ++i;
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && (IsDigit(text[i]) || text[i] == '*'))
            ++i;
    }
    while (i < text.size() && std::string_view("hlLqjzt").find(text[i]) != std::string_view::npos)
        ++i;
    if (i < text.size() &&
        std::string_view("diouxXeEfFgGaAcspnS").find(text[i]) != std::string_view::npos)
        return text.substr(at, i + 1 - at);
    return {};
}

std::string Join(const std::vector<std::string>& items) {
    if (items.empty())
        return "none";
    std::string out;
    for (const auto& item : items)
        out += (out.empty() ? "" : " ") + item;
    return out;
}

std::vector<std::string> Sorted(std::vector<std::string> items) {
    std::sort(items.begin(), items.end());
    return items;
}

bool Positional(const std::vector<std::string>& printf) {
    return std::any_of(printf.begin(), printf.end(),
                       [](const std::string& p) { return p.find('$') != std::string::npos; });
}

} // namespace

TextFeatures Features(std::string_view text) {
    TextFeatures f;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '%') {
            if (i + 1 < text.size() && text[i + 1] == '%') {
                ++i;
                continue;
            }
            const auto conversion = PrintfAt(text, i);
            if (!conversion.empty()) {
                f.printf.emplace_back(conversion);
                i += conversion.size() - 1;
            }
        } else if (c == '{') {
            std::size_t j = i + 1;
            while (j < text.size() && IsDigit(text[j]))
                ++j;
            if (j > i + 1 && j < text.size() && text[j] == '}') {
                f.braces.emplace_back(text.substr(i, j + 1 - i));
                i = j;
            }
        } else if (c == '&') {
            if (i + 1 < text.size() && text[i + 1] == '&')
                ++i;
            else
                ++f.mnemonics;
        } else if (c == '\x01') {
            if (i + 2 < text.size())
                f.tags.emplace_back(text.substr(i + 1, 2));
        } else if (c == '\n' || c == '\r' || c == '\t') {
            ++f.controls[c];
        }
    }
    return f;
}

std::vector<std::string> FeatureDifferences(const TextFeatures& s, const TextFeatures& t) {
    std::vector<std::string> out;
    const bool reorderable = Positional(s.printf) || Positional(t.printf);
    if (reorderable ? Sorted(s.printf) != Sorted(t.printf) : s.printf != t.printf)
        out.push_back("printf placeholders " + Join(s.printf) + " vs " + Join(t.printf));
    if (Sorted(s.braces) != Sorted(t.braces))
        out.push_back("{n} placeholders " + Join(s.braces) + " vs " + Join(t.braces));
    if (s.mnemonics != t.mnemonics)
        out.push_back("mnemonic '&' " + std::to_string(s.mnemonics) + " vs " +
                      std::to_string(t.mnemonics));
    if (s.tags != t.tags)
        out.push_back("tagged fields " + Join(s.tags) + " vs " + Join(t.tags));
    static const std::pair<char, const char*> controls[] = {
        {'\n', "line feeds"}, {'\r', "carriage returns"}, {'\t', "tabs"}};
    for (const auto& [c, name] : controls) {
        // Captured by its own name: clang before 16 cannot capture a structured binding.
        const auto count = [&, control = c](const TextFeatures& f) {
            const auto it = f.controls.find(control);
            return it == f.controls.end() ? 0 : it->second;
        };
        if (count(s) != count(t))
            out.push_back(std::string(name) + " " + std::to_string(count(s)) + " vs " +
                          std::to_string(count(t)));
    }
    return out;
}

} // namespace QanTool
