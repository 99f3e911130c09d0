#include <framework/TextParser.h>

#include "text/FindTaggedField.h"

// Placeholder until the tagged-text reader lands.
namespace Framework {

TextParser& TextParser::operator=(const TextParser&) { return *this; }
TextParser& TextParser::operator=(TextParser&&) noexcept { return *this; }

bool TextParser::GetCaptionText(const wchar_t*, QanStringT<wchar_t>& out) {
    out.clear();
    return false;
}
bool TextParser::GetLongPromptText(const wchar_t*, QanStringT<wchar_t>& out) {
    out.clear();
    return false;
}
bool TextParser::GetTipText(const wchar_t*, QanStringT<wchar_t>& out) {
    out.clear();
    return true;
}
bool TextParser::GetTipHeaderText(const wchar_t*, QanStringT<wchar_t>& out) {
    out.clear();
    return false;
}
bool TextParser::GetTipGuid(const wchar_t*, QanStringT<wchar_t>& out) {
    out.clear();
    return false;
}
bool TextParser::GetVersionNewIn(const wchar_t*, QanStringT<wchar_t>& out) {
    out.clear();
    return false;
}
QanStringT<wchar_t> TextParser::ReplaceSlashes(const wchar_t*) { return {}; }
QanStringT<wchar_t> TextParser::BuildString(const wchar_t*, const wchar_t*, const wchar_t*,
                                            const wchar_t*, const wchar_t*, const wchar_t*) {
    return {};
}
QanStringT<wchar_t> TextParser::CombineString(const wchar_t*, const wchar_t*, const wchar_t*,
                                              const wchar_t*, const wchar_t*, const wchar_t*,
                                              const wchar_t*) {
    return {};
}

} // namespace Framework

namespace Framework::Internal {
bool FindTaggedField(const QanStringT<wchar_t>&, const wchar_t*, QanStringT<wchar_t>& out) {
    out.clear();
    return false;
}
} // namespace Framework::Internal
