// TextParser.h: reads, converts and builds tagged resource texts, in which one string
// carries a caption, long prompt, tip text, tip header, tip GUID and new-in version.
#pragma once

#include <framework/Export.h>
#include <framework/QanString.h>

namespace Framework {

// Static functions only. A null text reads as the empty text everywhere.
class QANRESOURCES_API TextParser {
public:
    TextParser() = default;
    TextParser(const TextParser&) = default;
    TextParser& operator=(const TextParser&);
    TextParser& operator=(TextParser&&) noexcept;

    static bool GetCaptionText(const wchar_t* text, QanStringT<wchar_t>& out);
    static bool GetLongPromptText(const wchar_t* text, QanStringT<wchar_t>& out);
    static bool GetTipText(const wchar_t* text, QanStringT<wchar_t>& out);
    static bool GetTipHeaderText(const wchar_t* text, QanStringT<wchar_t>& out);
    static bool GetTipGuid(const wchar_t* text, QanStringT<wchar_t>& out);
    static bool GetVersionNewIn(const wchar_t* text, QanStringT<wchar_t>& out);

    static QanStringT<wchar_t> ReplaceSlashes(const wchar_t* text);
    static QanStringT<wchar_t> BuildString(const wchar_t* caption, const wchar_t* longPrompt,
                                           const wchar_t* tipText, const wchar_t* tipHeader,
                                           const wchar_t* tipGuid, const wchar_t* versionNewIn);
    static QanStringT<wchar_t> CombineString(const wchar_t* text, const wchar_t* caption,
                                             const wchar_t* longPrompt, const wchar_t* tipText,
                                             const wchar_t* tipHeader, const wchar_t* tipGuid,
                                             const wchar_t* versionNewIn);
};

} // namespace Framework
