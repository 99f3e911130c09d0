// The order in which the service asks its collections, and what it makes of a legacy hit.
#include "FakeCollections.h"

#include "service/ResourcesImpl.h"

#include <framework/QanCtlDependency.h>

#include <gtest/gtest.h>

namespace {
using namespace QanTest;
using Framework::Internal::ResourcesImpl;
using Strings = std::vector<std::wstring>;

constexpr wchar_t kTagged[] = L"\x0001"
                              L"CT=Cap\x0001"
                              L"TT=Body\x0001"
                              L"TH=Head";

// A service over fakes; the raw pointers stay valid as long as the service.
struct Service {
    FakeStrings* strings = new FakeStrings;
    FakeIds* icons = new FakeIds;
    FakeIds* platformIcons = new FakeIds;
    FakeIds* cursors = new FakeIds;
    FakeLegacy* legacy = new FakeLegacy;
    ResourcesImpl impl{std::unique_ptr<FakeStrings>(strings),
                       std::unique_ptr<FakeIds>(icons),
                       std::unique_ptr<FakeIds>(platformIcons),
                       std::unique_ptr<FakeIds>(cursors),
                       {},
                       std::unique_ptr<FakeLegacy>(legacy)};
    std::wstring Get(const std::wstring& key, std::uint32_t kind) {
        return impl.GetString(key, static_cast<StringKind>(kind));
    }
};

void Inject(std::function<std::wstring(HINSTANCE, std::uint32_t)> loader) {
    QanResources::InjectQanCtlDependency({std::move(loader)});
}

TEST(StringFallback, CollectionAnswerWinsEvenWhenEmptyElseLegacyIsAsked) {
    Service s;
    s.strings->answers[L"k/1"] = L"";
    s.legacy->answers[L"k/2"] = IdOf(7);
    EXPECT_EQ(s.Get(L"k", 1), L"");
    EXPECT_TRUE(s.legacy->asked.empty());
    EXPECT_EQ(s.Get(L"guid://X", 7), L"");
    EXPECT_EQ(s.strings->asked.back(), L"guid://X/7") << "key and kind passed unchanged";
    EXPECT_EQ(s.legacy->asked, Strings{L"guid://X/2"}) << "legacy asked for a String";
}

TEST(LegacyLoader, EachKindOfALegacyHit) {
    Service s;
    s.legacy->answers[L"k/2"] = IdOf(4711, 0x1000);
    for (std::uint32_t kind : {0u, 1u, 2u, 3u, 4u})
        EXPECT_EQ(s.Get(L"k", kind), L"") << "the default loader loads nothing, kind " << kind;

    HINSTANCE seenModule = nullptr;
    std::uint32_t seenId = 0;
    std::wstring text = kTagged;
    Inject([&](HINSTANCE module, std::uint32_t id) {
        seenModule = module;
        seenId = id;
        return text;
    });
    const struct {
        std::wstring loaded;
        std::uint32_t kind;
        std::wstring expected;
    } rows[] = {
        {kTagged, 0, kTagged}, {kTagged, 1, L"Cap"},  {kTagged, 2, L"Head"},
        {kTagged, 3, L"Body"}, {kTagged, 4, kTagged}, {kTagged, 0xFFFFFFFF, kTagged},
        {L"Open", 1, L"Open"}, {L"Open", 2, L""},     {L"Open", 3, L"Open"},
        {L"", 1, L""},
    };
    for (const auto& row : rows) {
        text = row.loaded;
        EXPECT_EQ(s.Get(L"k", row.kind), row.expected) << "kind " << row.kind;
    }
    EXPECT_EQ(seenModule, reinterpret_cast<HINSTANCE>(0x1000));
    EXPECT_EQ(seenId, 4711u);
}

TEST(LegacyLoader, InjectionsReplaceAndEmptyTheLoader) {
    Service s;
    s.legacy->answers[L"k/2"] = IdOf(1);
    int firstCalls = 0;
    Inject([&](HINSTANCE, std::uint32_t) { return ++firstCalls, std::wstring(L"first"); });
    Inject([](HINSTANCE, std::uint32_t) { return std::wstring(L"second"); });
    EXPECT_EQ(s.Get(L"k", 0), L"second");
    EXPECT_EQ(firstCalls, 0);
    Inject(nullptr);
    for (std::uint32_t kind : {0u, 1u, 2u, 3u})
        EXPECT_EQ(s.Get(L"k", kind), L"") << "an emptied loader gives empty texts";
    Inject([](HINSTANCE, std::uint32_t) { return std::wstring(L"third"); });
    EXPECT_EQ(s.Get(L"k", 0), L"third");
}

TEST(IconFallback, IconsThenTheAlwaysAskedPlatformCollectionThenLegacy) {
    Service s;
    s.legacy->answers[L"k/0"] = IdOf(3);
    s.legacy->answers[L"c/1"] = IdOf(4);
    EXPECT_EQ(s.impl.GetIcon(L"k"), IdOf(3));
    EXPECT_EQ(s.icons->asked, Strings{L"k/0"});
    EXPECT_EQ(s.platformIcons->asked, Strings{L"k/0"});
    EXPECT_EQ(s.impl.GetIcon(L"c"), ResourceID{}) << "a cursor entry is no icon";

    s.platformIcons->answers[L"p/0"] = IdOf(2);
    s.legacy->answers[L"p/0"] = IdOf(9);
    EXPECT_EQ(s.impl.GetIcon(L"p"), IdOf(2));
    s.icons->answers[L"p/0"] = IdOf(1);
    EXPECT_EQ(s.impl.GetIcon(L"p"), IdOf(1));
    EXPECT_EQ(s.legacy->asked, (Strings{L"k/0", L"c/0"})) << "a hit ends the chain";
}

TEST(CursorFallback, CursorsThenLegacySkippingPlatformIcons) {
    Service s;
    s.platformIcons->answers[L"k/0"] = IdOf(2);
    s.cursors->answers[L"a/0"] = IdOf(10, 0x20);
    s.legacy->answers[L"a/1"] = IdOf(11);
    s.legacy->answers[L"b/1"] = IdOf(12);
    EXPECT_EQ(s.impl.GetCursor(L"k"), ResourceID{});
    EXPECT_EQ(s.impl.GetCursor(L"a"), IdOf(10, 0x20));
    EXPECT_EQ(s.impl.GetCursor(L"b"), IdOf(12));
    EXPECT_TRUE(s.platformIcons->asked.empty());
}

TEST(Registration, ForwardsArgumentsToTheLegacyCollection) {
    Service s;
    const Resources::RegistrarMapEntry entries[] = {{L"a", 1, L""}, {L"b", 2, L""}};
    s.impl.AddLegacyComponent(L"Comp", nullptr);
    s.impl.AddLegacyResources(L"Comp", entries, 2, Resources::Cursor);
    s.impl.AddLegacyResources(nullptr, nullptr, 0, static_cast<Resources::ResourceType>(9));
    s.impl.RemoveLegacyComponent(L"Comp");
    EXPECT_EQ(s.legacy->calls,
              (Strings{L"Component Comp", L"Add Comp 2 1", L"Add (null) 0 9", L"Remove Comp"}));
}

TEST(MissingCollections, AnswerMissesAndIgnoreRegistrations) {
    auto* legacy = new FakeLegacy;
    legacy->answers[L"k/2"] = IdOf(7);
    ResourcesImpl noStrings(nullptr, nullptr, nullptr, nullptr, {},
                            std::unique_ptr<FakeLegacy>(legacy));
    EXPECT_EQ(noStrings.GetString(L"k", Framework::Internal::String), L"");
    EXPECT_TRUE(legacy->asked.empty()) << "without strings the legacy table is not asked";

    ResourcesImpl empty(nullptr, nullptr, nullptr, nullptr, {}, nullptr);
    empty.AddLegacyComponent(L"c", nullptr);
    empty.AddLegacyResources(nullptr, nullptr, 5, Resources::String);
    EXPECT_EQ(empty.GetCursor(L"c"), ResourceID{});
    EXPECT_EQ(empty.GetLegacyGuid("c", 1), L"");
}

} // namespace
