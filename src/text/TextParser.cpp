// TextParser.cpp: the exported getters, slash conversion, building and merging of tagged
// resource texts. Every function works on code units and treats a null text as empty.
#include <framework/TextParser.h>

#include "text/FindTaggedField.h"

#include <array>
#include <cstddef>
#include <functional>

namespace Framework {
namespace {

using Internal::AppendTaggedField;
using Internal::FindTaggedFieldIn;
using Internal::kFieldMarker;
using View = QanStringViewT<wchar_t>;

// The caller's text as a view. A null pointer reads as the empty text. A text that lives
// inside out (a host passing out.c_str() as the text) is copied into keep first, since
// every getter empties out before it reads.
View TextOf(const wchar_t* text, const QanStringT<wchar_t>& out, QanStringT<wchar_t>& keep) {
    if (text == nullptr) {
        return {};
    }
    const std::less_equal<const wchar_t*> notAfter;
    if (notAfter(out.data(), text) && notAfter(text, out.data() + out.size())) {
        keep.assign(text);
        return keep;
    }
    return View(text);
}

// A mnemonic "&" is dropped and "&&" collapses to one "&"; a trailing "&" has U+0000
// after it and is dropped like any single one.
void CollapseAmpersands(QanStringT<wchar_t>& text) {
    std::size_t to = 0;
    for (std::size_t from = 0; from < text.size(); ++from) {
        if (text[from] != L'&') {
            text[to++] = text[from];
        } else if (from + 1 < text.size() && text[from + 1] == L'&') {
            text[to++] = L'&';
            ++from;
        }
    }
    text.resize(to);
}

// The six fields in the order BuildString writes them.
enum Field : std::size_t { Caption, LongPrompt, TipText, TipHeader, TipGuid, VersionNewIn };
constexpr std::array<const wchar_t*, 6> kTags = {L"CT", L"LP", L"TT", L"TH", L"TG", L"NV"};

QanStringT<wchar_t> Build(const std::array<const wchar_t*, 6>& values) {
    QanStringT<wchar_t> result;
    for (std::size_t field = 0; field < values.size(); ++field) {
        if (values[field] == nullptr) {
            continue; // absent: no field at all, unlike an empty value
        }
        AppendTaggedField(result, kTags[field], values[field]);
    }
    return result;
}

// The field tagged tag; when it is empty or missing, the tip text in its place (with the
// result of that second look-up).
bool FieldOrTipText(const wchar_t* text, const wchar_t* tag, QanStringT<wchar_t>& out) {
    QanStringT<wchar_t> keep;
    const View source = TextOf(text, out, keep);
    const bool found = FindTaggedFieldIn(source, tag, out);
    if (!out.empty()) {
        return found;
    }
    return FindTaggedFieldIn(source, L"TT", out);
}

} // namespace

TextParser& TextParser::operator=(const TextParser&) {
    return *this;
}
TextParser& TextParser::operator=(TextParser&&) noexcept {
    return *this;
}

bool TextParser::GetCaptionText(const wchar_t* text, QanStringT<wchar_t>& out) {
    return FieldOrTipText(text, L"CT", out);
}

bool TextParser::GetLongPromptText(const wchar_t* text, QanStringT<wchar_t>& out) {
    return FieldOrTipText(text, L"LP", out);
}

bool TextParser::GetTipText(const wchar_t* text, QanStringT<wchar_t>& out) {
    QanStringT<wchar_t> keep;
    const View source = TextOf(text, out, keep);
    // A text without a tip field reports success with an empty tip; this is intended, and
    // callers look at out rather than at the result.
    if (!FindTaggedFieldIn(source, L"TT", out)) {
        return true;
    }
    if (!out.empty()) {
        return true;
    }
    // Only a tip field that was found empty falls back to the caption, and only that
    // fallback loses its mnemonic ampersands; a tip text keeps them as written.
    const bool found = FindTaggedFieldIn(source, L"CT", out);
    if (out.empty()) {
        return found;
    }
    CollapseAmpersands(out);
    return found;
}

bool TextParser::GetTipHeaderText(const wchar_t* text, QanStringT<wchar_t>& out) {
    QanStringT<wchar_t> keep;
    return FindTaggedFieldIn(TextOf(text, out, keep), L"TH", out);
}

bool TextParser::GetTipGuid(const wchar_t* text, QanStringT<wchar_t>& out) {
    QanStringT<wchar_t> keep;
    return FindTaggedFieldIn(TextOf(text, out, keep), L"TG", out);
}

bool TextParser::GetVersionNewIn(const wchar_t* text, QanStringT<wchar_t>& out) {
    QanStringT<wchar_t> keep;
    return FindTaggedFieldIn(TextOf(text, out, keep), L"NV", out);
}

QanStringT<wchar_t> TextParser::ReplaceSlashes(const wchar_t* text) {
    const View source = text != nullptr ? View(text) : View();
    QanStringT<wchar_t> result;
    result.reserve(source.size());
    // Each slash form is "/", two letters and "=", and no form contains a second "/", so
    // no two occurrences overlap and no replacement can create a new one: a single pass
    // gives the same text as replacing each form in turn.
    std::size_t copied = 0;
    for (std::size_t slash = source.find(L'/'); slash != View::npos;
         slash = source.find(L'/', slash + 1)) {
        const View form = source.substr(slash, 4);
        if (form.size() < 4 || form[3] != L'=') {
            continue;
        }
        for (const wchar_t* tag : kTags) {
            if (form.substr(1, 2) == tag) {
                result.append(source.substr(copied, slash - copied));
                result += kFieldMarker;
                copied = slash + 1; // the tag and "=" are copied with what follows
                break;
            }
        }
    }
    result.append(source.substr(copied));
    return result;
}

QanStringT<wchar_t> TextParser::BuildString(const wchar_t* caption, const wchar_t* longPrompt,
                                            const wchar_t* tipText, const wchar_t* tipHeader,
                                            const wchar_t* tipGuid, const wchar_t* versionNewIn) {
    return Build({caption, longPrompt, tipText, tipHeader, tipGuid, versionNewIn});
}

QanStringT<wchar_t> TextParser::CombineString(const wchar_t* text, const wchar_t* caption,
                                              const wchar_t* longPrompt, const wchar_t* tipText,
                                              const wchar_t* tipHeader, const wchar_t* tipGuid,
                                              const wchar_t* versionNewIn) {
    std::array<const wchar_t*, 6> values = {caption,   longPrompt, tipText,
                                            tipHeader, tipGuid,    versionNewIn};
    // A modifiable copy: the walk below cuts it into values by writing U+0000 over markers,
    // and the values point into it until the result is built.
    QanStringT<wchar_t> copy = text != nullptr ? QanStringT<wchar_t>(text) : QanStringT<wchar_t>();

    if (copy.empty() || copy.front() != kFieldMarker) {
        // An untagged text becomes the caption as a whole, so the result always has a
        // caption field, possibly empty.
        if (values[Caption] == nullptr) {
            values[Caption] = copy.c_str();
        }
        return Build(values);
    }

    // Reads past the end give U+0000; the copy is never touched outside its bounds.
    const auto at = [&copy](std::size_t index) {
        return index < copy.size() ? copy[index] : L'\0';
    };
    struct Known {
        const wchar_t* tag;
        Field field;
    };
    constexpr std::array<Known, 6> known = {{{L"TT=", TipText},
                                             {L"TH=", TipHeader},
                                             {L"TG=", TipGuid},
                                             {L"LP=", LongPrompt},
                                             {L"CT=", Caption},
                                             {L"NV=", VersionNewIn}}};

    std::size_t marker = 0;
    for (;;) {
        copy[marker] = L'\0'; // ends the value of the field before this marker
        const std::size_t q = marker + 1;
        for (const Known& entry : known) {
            if (at(q) == entry.tag[0] && at(q + 1) == entry.tag[1] && at(q + 2) == entry.tag[2]) {
                // Caller arguments and earlier fields of the same tag win.
                if (values[entry.field] == nullptr) {
                    values[entry.field] = copy.c_str() + q + 3;
                }
                break; // a field with any other tag is dropped
            }
        }
        std::size_t r = q;
        while (at(r) > 1) {
            ++r;
        }
        // The walk goes on only where two markers stand side by side. This is intended:
        // after a single marker the walk ends, so the first field's value runs to the end
        // of the text, later markers included, and where it does go on the field before
        // the double marker keeps one trailing U+0001.
        if (at(r + 1) != kFieldMarker) {
            break;
        }
        marker = r + 1;
    }
    return Build(values);
}

} // namespace Framework
