// Legacy strings: one tagged text composed for a GUID key, (component, id) pairs resolved
// to GUID keys with the application's preferences, and registered keys loaded from modules.
#include "legacy/LegacyStringLookup.h"
#include "legacy/LegacyResourceCollection.h"
#include "service/ResourcesImpl.h"

#include <framework/QanCtlDependency.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <map>

namespace {
using namespace Framework;
using namespace Framework::Internal;
using Texts = std::map<std::pair<std::wstring, StringKind>, std::wstring>;

// String tables over fixed texts.
struct FakeStrings final : StringCollection {
    explicit FakeStrings(Texts texts) : texts(std::move(texts)) {}
    std::optional<QanStringT<wchar_t>> GetResource(const QanStringT<wchar_t>& key,
                                                   StringKind kind) const override {
        const auto it = texts.find({key, kind});
        return it == texts.end() ? std::nullopt : std::optional(it->second);
    }
    Texts texts;
};

StringLookup Over(const Texts& texts) {
    return [strings = FakeStrings(texts)](const QanStringT<wchar_t>& key, StringKind kind) {
        return strings.GetResource(key, kind).value_or(L"");
    };
}

// A tagged text written with '|' for the U+0001 marker.
std::wstring T(std::wstring text) {
    std::replace(text.begin(), text.end(), L'|', L'\x0001');
    return text;
}

TEST(LegacyComposeText, FieldsPackedInEitherOrder) {
    // Caption, body, header; then the text composed body first and header first.
    // clang-format off
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*> rows[] = {
        {L"Open", L"Opens a file", L"", L"|CT=Open|TT=Opens a file", L"|CT=Open|TT=Opens a file"},
        {L"Open", L"Opens a file", L"File", L"|CT=Open|TT=Opens a file|TH=File",
                                            L"|CT=Open|TH=File|TT=Opens a file"},
        {L"", L"", L"Head", L"|TH=Head", L"|TH=Head"},
        // Backslash pairs collapse: two to one, three to two, four to two.
        {L"a\\\\b", L"c\\\\\\d", L"\\\\\\\\x\\", L"|CT=a\\b|TT=c\\\\d|TH=\\\\x\\",
                                                 L"|CT=a\\b|TH=\\\\x\\|TT=c\\\\d"}};
    // clang-format on
    for (const auto& [caption, body, header, bodyFirst, headerFirst] : rows) {
        const StringLookup lookup = Over({{{L"k", Caption}, caption},
                                          {{L"k", TooltipBody}, body},
                                          {{L"k", TooltipHeader}, header}});
        EXPECT_EQ(ComposeLegacyText(lookup, L"k", LegacyFieldOrder::BodyFirst), T(bodyFirst));
        EXPECT_EQ(ComposeLegacyText(lookup, L"k", LegacyFieldOrder::HeaderFirst), T(headerFirst));
    }
    // A plain string stands as it is, doubled backslashes included; an empty key finds none.
    const StringLookup plain = Over({{{L"", String}, L"x"}, {{L"p", String}, L"C:\\\\dir"}});
    EXPECT_EQ(ComposeLegacyText(plain, L"p", LegacyFieldOrder::HeaderFirst), L"C:\\\\dir");
    EXPECT_EQ(ComposeLegacyText(plain, L"", LegacyFieldOrder::BodyFirst), L"");
}

// Id 10 is held by a plain component and by every preferred one; in byte order
// "Aaa" < "BrtWash" < "Lumen" < "Nimbus" < "NimbusIntl" < "Schema".
LegacyGuidIndex Sample() {
    // clang-format off
    return {{10, "Aaa", L"g-aaa10"}, {10, "BrtWash", L"g-brt10"}, {10, "Lumen", L"g-lum10"},
            {10, "Nimbus", L"g-nim10"}, {10, "NimbusIntl", L"g-int10"}, {10, "Schema", L"g-sch10"},
            {20, "Aaa", L""}, {20, "Zed", L""}, {30, "Aaa", L""}, {30, "Nimbus", L"g-nim30"}};
    // clang-format on
}

// These GUIDs have a caption; every other key has no text.
Texts Captions(std::initializer_list<const wchar_t*> guids) {
    Texts texts;
    for (const wchar_t* guid : guids)
        texts[{guid, Caption}] = L"caption";
    return texts;
}

// Every row is tried with the application name as written, in lower and in upper case.
TEST(LegacyGuidLookup, DirectRowThenPreferredThenAnyComponentWithText) {
    const Texts all = Captions(
        {L"g-aaa10", L"g-brt10", L"g-lum10", L"g-nim10", L"g-int10", L"g-sch10", L"g-nim30"});
    const std::tuple<const char*, int, std::wstring, Texts, std::wstring> rows[] = {
        // The pair's own row decides, even without text or with an empty GUID.
        {"Schema", 10, L"Lumenform", {}, L"g-sch10"},
        {"schema", 10, L"", all, L"g-aaa10"}, // component names compare exactly
        {"Aaa", 30, L"", all, L""},
        {"Unknown", 99, L"", all, L""},
        {"Unknown", 20, L"", all, L""}, // only empty GUIDs
        // Without a preference the first holder by name with text wins.
        {"Other", 10, L"", all, L"g-aaa10"},
        {"Other", 10, L"Lumenform ", all, L"g-aaa10"},
        {"Other", 10, L"", Captions({L"g-int10", L"g-sch10"}), L"g-int10"},
        {"Other", 10, L"Lumenform", {}, L""},
        {"Other", 10, L"", {{{L"g-nim10", String}, L"x"}}, L"g-nim10"}, // plain string alone
        // Each application prefers its own components; among them the first by name.
        {"Other", 10, L"Lumenform", all, L"g-lum10"},
        {"Other", 10, L"Brightwash", all, L"g-brt10"},
        {"Other", 10, L"Schemawright", all, L"g-nim10"},
        {"Other", 10, L"Lumenform", Captions({L"g-aaa10", L"g-int10", L"g-sch10"}), L"g-int10"},
        {"Other", 10, L"Schemawright", Captions({L"g-aaa10", L"g-sch10"}), L"g-sch10"},
        {"Other", 10, L"Brightwash", Captions({L"g-aaa10", L"g-sch10"}), L"g-aaa10"},
    };
    const LegacyGuidIndex index = Sample();
    for (const auto& [component, id, app, texts, expected] : rows) {
        std::wstring lower = app, upper = app;
        std::transform(app.begin(), app.end(), lower.begin(), ::towlower);
        std::transform(app.begin(), app.end(), upper.begin(), ::towupper);
        for (const std::wstring& name : {app, lower, upper})
            EXPECT_EQ(GetLegacyGuid(index, Over(texts), component, id, name), expected)
                << component << " " << id << " " << std::string(name.begin(), name.end());
    }
}

// The service reads the application name at every call and composes in both orders; keys
// the string tables lack come from the registered module, each kind taking its field.
TEST(LegacyService, ResolvesPairsAndLoadsRegisteredKeys) {
    const HINSTANCE module = reinterpret_cast<HINSTANCE>(std::uintptr_t{0x4000});
    ResourcesImpl service(std::make_unique<FakeStrings>(Texts{{{L"g-brt10", Caption}, L"B"},
                                                              {{L"g-nim10", TooltipBody}, L"N"},
                                                              {{L"g-nim10", TooltipHeader}, L"H"}}),
                          nullptr, nullptr, nullptr, Sample(),
                          std::make_unique<LegacyResourceCollection>());
    IResources::SetResourcesForTests(&service);
    Resources::SetAppName(L"SCHEMAWRIGHT");
    EXPECT_EQ(Resources::GetLegacyString(10, "Other"), T(L"|TT=N|TH=H"));
    EXPECT_EQ(service.GetLegacyStringHeaderFirst(L"g-nim10"), T(L"|TH=H|TT=N"));
    Resources::SetAppName(L"");
    EXPECT_EQ(Resources::GetLegacyGuid("Other", 10), L"g-brt10");
    EXPECT_EQ(Resources::GetLegacyString(99, "Other"), L"");

    const std::wstring tagged = T(L"|CT=Cap|TT=Body|TH=Head");
    const Resources::RegistrarMapEntry entry{L"legacy", 7, {}};
    Resources::AddLegacyResources(L"Paint", &entry, 1, Resources::String);
    Resources::AddLegacyComponent(L"Paint", module);
    QanResources::InjectQanCtlDependency({[&](HINSTANCE m, std::uint32_t id) {
        return m == module && id == 7 ? tagged : std::wstring();
    }});
    const std::pair<StringKind, std::wstring> kinds[] = {
        {String, tagged}, {Caption, L"Cap"}, {TooltipHeader, L"Head"}, {TooltipBody, L"Body"}};
    for (const auto& [kind, expected] : kinds)
        EXPECT_EQ(service.GetString(L"legacy", kind), expected) << kind;
    QanResources::InjectQanCtlDependency({});
    IResources::SetResourcesForTests(nullptr);
}

} // namespace
