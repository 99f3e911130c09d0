// Feeds arbitrary code units to every tagged-text and menu-text function and checks the
// properties that hold for any input: no out-of-bounds read, and results that agree.
#include "text/FindTaggedField.h"

#include <framework/StripMenuText.h>
#include <framework/TextParser.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {
using Framework::TextParser;

void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// A false result always comes with an empty out.
void CheckGetters(const wchar_t* text) {
    using Getter = bool (*)(const wchar_t*, QanStringT<wchar_t>&);
    for (Getter getter :
         {TextParser::GetCaptionText, TextParser::GetLongPromptText, TextParser::GetTipText,
          TextParser::GetTipHeaderText, TextParser::GetTipGuid, TextParser::GetVersionNewIn}) {
        std::wstring out = L"stale";
        const bool found = getter(text, out);
        Require(found || out.empty());
    }
}

bool HasMarker(const std::wstring& value) {
    return value.find(Framework::Internal::kFieldMarker) != std::wstring::npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const unsigned flags = data[0];
    const unsigned nullMask = data[1];
    data += 2;
    size -= 2;

    // Code units of the platform's wchar_t, split at U+0000 into up to seven texts.
    std::vector<wchar_t> units(size / sizeof(wchar_t));
    if (!units.empty()) {
        std::memcpy(units.data(), data, units.size() * sizeof(wchar_t));
    }
    std::vector<std::wstring> parts(1);
    for (wchar_t unit : units) {
        if (unit == L'\0') {
            if (parts.size() == 7) {
                break;
            }
            parts.emplace_back();
        } else {
            parts.back() += unit;
        }
    }
    parts.resize(7);
    const wchar_t* args[7];
    for (std::size_t i = 0; i < 7; ++i) {
        args[i] = (nullMask >> i) & 1 ? nullptr : parts[i].c_str();
    }
    const std::wstring& text = parts[0];

    CheckGetters(args[0]);
    CheckGetters(TextParser::ReplaceSlashes(args[0]).c_str());
    const std::wstring combined =
        TextParser::CombineString(args[0], args[1], args[2], args[3], args[4], args[5], args[6]);
    CheckGetters(combined.c_str());

    // Fields without markers come back from a built text through their own getter. Field
    // values are stored unescaped, so a marker in the header or a field before it may
    // start a header of its own: only texts without one are checked.
    const std::wstring built =
        TextParser::BuildString(args[1], args[2], args[3], args[4], args[5], args[6]);
    bool markerBeforeHeaderEnd = false;
    for (std::size_t i = 1; i <= 4; ++i)
        markerBeforeHeaderEnd = markerBeforeHeaderEnd || (args[i] && HasMarker(parts[i]));
    if (args[4] != nullptr && !markerBeforeHeaderEnd) {
        std::wstring header;
        Require(TextParser::GetTipHeaderText(built.c_str(), header) && header == parts[4]);
    }

    std::wstring out;
    Framework::Internal::FindTaggedField(text, args[1], out);

    std::wstring stripped = text;
    StripMenuText(stripped, flags);
    Require(stripped.size() <= text.size());
    if ((flags & 15) == 0) {
        Require(stripped == text);
    }
    return 0;
}
