// -----------------------------------------------------------------------------
// File: TextParser.h
// -----------------------------------------------------------------------------
//
// Reads, converts and builds tagged resource texts, in which one string carries up to six
// fields of a user-interface command.
//
// Tagged text: a text whose first character is U+0001. Each field is U+0001, a two-letter
// tag, "=", and the value up to the next U+0001 or the end. Tags, compared exactly:
// CT caption, LP long prompt, TT tip text (tooltip body), TH tip header, TG tip GUID,
// NV the version the command is new in. Values are opaque text.
//   Example: L"\u0001CT=&Open...\u0001TT=Opens a file" has caption "&Open..." and tip
//   text "Opens a file".
// Untagged text (any other first character): up to three lines, long prompt, tip text,
// caption; an empty or missing caption line falls back to line 2, then line 1. It has no
// TH, TG or NV field. Example: L"Opens a file\nShows the dialog\nOpen" has long prompt
// "Opens a file", tip text "Shows the dialog" and caption "Open".
// Authors write the slash form ("/CT=Open/TT=Tip"); ReplaceSlashes makes it tagged.
#pragma once

#include <framework/Export.h>
#include <framework/QanString.h>

namespace Framework {

// Static functions only, callable from any thread. A null text reads as the empty text.
// Every getter empties out first; a missing field gives false with out empty (GetTipText
// excepted).
class QANRESOURCES_API TextParser {
public:
    TextParser() = default;
    TextParser(const TextParser&) = default;
    TextParser& operator=(const TextParser&);
    TextParser& operator=(TextParser&&) noexcept;

    // Sets out to the caption (CT), or to the tip text (TT) when the caption is empty or
    // missing. Returns whether the field read last was found; the first of two equal tags
    // wins, as in every getter. Example: L"\u0001CT=&Open" gives true and "&Open".
    static bool GetCaptionText(const wchar_t* text, QanStringT<wchar_t>& out);
    // Sets out to the long prompt (LP), or to the tip text (TT) when that is empty or
    // missing. Returns whether the field read last was found.
    static bool GetLongPromptText(const wchar_t* text, QanStringT<wchar_t>& out);
    // Sets out to the tip text (TT). Only a TT field that is present and empty (untagged:
    // an empty line 2) falls back to the caption, with its "&" mnemonics removed. Returns
    // true also when there is no TT field at all (out empty): look at out, not the result.
    // Example: L"\u0001CT=&Save\u0001TT=" gives true and "Save".
    static bool GetTipText(const wchar_t* text, QanStringT<wchar_t>& out);
    // Sets out to the tip header (TH); false for an untagged text, which has none.
    static bool GetTipHeaderText(const wchar_t* text, QanStringT<wchar_t>& out);
    // Sets out to the tip GUID (TG), unchecked; false for an untagged text.
    static bool GetTipGuid(const wchar_t* text, QanStringT<wchar_t>& out);
    // Sets out to the new-in version (NV), unchecked; false for an untagged text.
    static bool GetVersionNewIn(const wchar_t* text, QanStringT<wchar_t>& out);

    // Returns text with every slash form "/CT=", "/LP=", "/TT=", "/TH=", "/TG=", "/NV="
    // (exact case, anywhere) turned into its stored form, U+0001 and the tag with "=".
    // Example: ReplaceSlashes(L"/CT=Open/TT=Tip") == L"\u0001CT=Open\u0001TT=Tip"
    static QanStringT<wchar_t> ReplaceSlashes(const wchar_t* text);
    // Returns a tagged text with one field per non-null argument, always in the order CT,
    // LP, TT, TH, TG, NV; an empty argument gives an empty field, all null gives "".
    // Example: BuildString(nullptr, nullptr, L"T", L"H", nullptr, nullptr)
    //          == L"\u0001TT=T\u0001TH=H"
    static QanStringT<wchar_t> BuildString(const wchar_t* caption, const wchar_t* longPrompt,
                                           const wchar_t* tipText, const wchar_t* tipHeader,
                                           const wchar_t* tipGuid, const wchar_t* versionNewIn);
    // Returns BuildString of the fields of text, each non-null argument replacing its field.
    // An untagged text becomes the caption as a whole. In a tagged text the walk goes on
    // only past a doubled U+0001: after single markers the first field's value runs to the
    // end, later fields included, and a given field is added after it.
    // Example: CombineString(L"\u0001CT=Open\u0001TT=Old", nullptr, nullptr, L"New",
    //          nullptr, nullptr, nullptr) == L"\u0001CT=Open\u0001TT=Old\u0001TT=New"
    static QanStringT<wchar_t> CombineString(const wchar_t* text, const wchar_t* caption,
                                             const wchar_t* longPrompt, const wchar_t* tipText,
                                             const wchar_t* tipHeader, const wchar_t* tipGuid,
                                             const wchar_t* versionNewIn);
};

} // namespace Framework
