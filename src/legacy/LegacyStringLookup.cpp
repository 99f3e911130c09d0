// LegacyStringLookup.cpp: composes the one tagged text of a legacy key, and resolves a
// legacy (component, id) pair to its GUID key, preferring the application's components.
#include "legacy/LegacyStringLookup.h"

#include "text/Backslashes.h"
#include "text/TaggedText.h"

#include <array>
#include <cstddef>

namespace Framework::Internal {
namespace {

// Absent fields are left out of a composed text altogether.
void AppendField(QanStringT<wchar_t>& text, const wchar_t* tag, const QanStringT<wchar_t>& value) {
    if (!value.empty())
        AppendTaggedField(text, tag, value);
}

// ASCII letters compare without case; other characters exactly.
bool EqualsIgnoringCase(QanStringViewT<wchar_t> a, QanStringViewT<wchar_t> b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        wchar_t x = a[i], y = b[i];
        if (x >= L'A' && x <= L'Z')
            x = static_cast<wchar_t>(x - L'A' + L'a');
        if (y >= L'A' && y <= L'Z')
            y = static_cast<wchar_t>(y - L'A' + L'a');
        if (x != y)
            return false;
    }
    return true;
}

struct Preference {
    const wchar_t* appName;
    std::array<QanStringViewT<char>, 3> components; // unused slots are empty
};

// Each application looks first in the components it shipped itself.
constexpr std::array<Preference, 3> kPreferences{{
    {L"Lumenform", {"Lumen", "Nimbus", "NimbusIntl"}},
    {L"Brightwash", {"BrtWash", {}, {}}},
    {L"Schemawright", {"Schema", "Nimbus", "NimbusIntl"}},
}};

const std::array<QanStringViewT<char>, 3>* PreferredComponents(const QanStringT<wchar_t>& app) {
    for (const Preference& preference : kPreferences)
        if (EqualsIgnoringCase(app, preference.appName))
            return &preference.components;
    return nullptr;
}

// A GUID counts only when it is not empty and some text stands behind it.
bool HasText(const StringLookup& getString, const std::optional<QanStringViewT<wchar_t>>& guid,
             QanStringT<wchar_t>& key) {
    if (!guid || guid->empty())
        return false;
    key.assign(guid->data(), guid->size());
    return !ComposeLegacyText(getString, key, LegacyFieldOrder::BodyFirst).empty();
}

} // namespace

QanStringT<wchar_t> ComposeLegacyText(const StringLookup& getString, const QanStringT<wchar_t>& key,
                                      LegacyFieldOrder order) {
    if (key.empty())
        return {};
    QanStringT<wchar_t> text = getString(key, String);
    // A plain string is returned as it stands, doubled backslashes included.
    if (!text.empty())
        return text;
    const QanStringT<wchar_t> caption = getString(key, Caption);
    const QanStringT<wchar_t> body = getString(key, TooltipBody);
    const QanStringT<wchar_t> header = getString(key, TooltipHeader);
    // Marker, two-letter tag and "=" before each present value: one allocation in all.
    std::size_t size = 0;
    for (const QanStringT<wchar_t>* value : {&caption, &body, &header})
        size += value->empty() ? 0 : value->size() + 4;
    text.reserve(size);
    AppendField(text, L"CT", caption);
    if (order == LegacyFieldOrder::BodyFirst) {
        AppendField(text, L"TT", body);
        AppendField(text, L"TH", header);
    } else {
        AppendField(text, L"TH", header);
        AppendField(text, L"TT", body);
    }
    // Only composed texts lose their doubled backslashes; intended, as old modules stored
    // their packed texts that way.
    CollapseBackslashPairs(text);
    return text;
}

QanStringT<wchar_t> GetLegacyGuid(const LegacyGuidIndex& index, const StringLookup& getString,
                                  QanStringViewT<char> component, int id,
                                  const QanStringT<wchar_t>& appName) {
    // The pair's own row decides, even when it has no key: no other component is tried.
    if (const auto direct = FindLegacyGuid(index, id, component))
        return QanStringT<wchar_t>(direct->data(), direct->size());
    const std::vector<QanStringViewT<char>> candidates = ComponentsWithId(index, id);
    if (candidates.empty())
        return {};
    QanStringT<wchar_t> key;
    // Candidates outside, preferences inside: among the preferred components holding the
    // id, the one first by name wins, not the one first in the list.
    if (const auto* preferred = PreferredComponents(appName)) {
        for (const QanStringViewT<char> candidate : candidates)
            for (const QanStringViewT<char> name : *preferred)
                if (!name.empty() && name == candidate &&
                    HasText(getString, FindLegacyGuid(index, id, candidate), key))
                    return key;
    }
    for (const QanStringViewT<char> candidate : candidates)
        if (HasText(getString, FindLegacyGuid(index, id, candidate), key))
            return key;
    return {};
}

} // namespace Framework::Internal
