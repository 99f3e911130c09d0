// TextFeatures.cpp: one pass over the text for each kind of feature.
#include "TextFeatures.h"

#include "Placeholders.h"

#include "base/Unicode.h"

#include "text/TaggedText.h"

#include <algorithm>

namespace QanTool {
namespace {

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
    const std::u32string s = Framework::Unicode::DecodeScalars(text);
    const auto utf8 = [&](std::size_t at, std::size_t length) {
        std::string out;
        for (std::size_t i = at; i < at + length; ++i)
            Framework::Unicode::AppendUtf8(s[i], out);
        return out;
    };
    for (std::size_t i = 0; i < s.size(); ++i) {
        const char32_t c = s[i];
        if (c == U'%' || c == U'{') {
            const std::size_t length = PlaceholderLength(s, i);
            if (length == 0 || (c == U'%' && s[i + 1] == U'%')) {
                i += length ? length - 1 : 0; // "%%" is a literal percent
                continue;
            }
            (c == U'{' ? f.braces : f.printf).push_back(utf8(i, length));
            i += length - 1;
        } else if (c == U'&') {
            if (i + 1 < s.size() && s[i + 1] == U'&')
                ++i;
            else
                ++f.mnemonics;
        } else if (c == static_cast<char32_t>(Framework::Internal::kFieldMarker)) {
            if (i + 2 < s.size())
                f.tags.push_back(utf8(i + 1, 2));
        } else if (c == U'\n' || c == U'\r' || c == U'\t') {
            ++f.controls[static_cast<char>(c)];
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
