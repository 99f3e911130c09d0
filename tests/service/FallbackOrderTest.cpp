// The order in which the service asks its collections, and what it makes of a legacy hit.
#include "FakeCollections.h"

#include "service/ResourcesImpl.h"

#include <framework/QanCtlDependency.h>

#include <gtest/gtest.h>

namespace {
using namespace QanTest;
using Framework::Internal::LegacyGuidIndex;
using Framework::Internal::ResourcesImpl;
using ResourceID = Resources::ResourceID;
namespace Kind = Framework::Internal;

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
                       LegacyGuidIndex{},
                       std::unique_ptr<FakeLegacy>(legacy)};
};

class LegacyLoader : public ::testing::Test {
protected:
    void Inject(std::function<std::wstring(HINSTANCE, std::uint32_t)> loader) {
        QanResources::InjectQanCtlDependency({std::move(loader)});
    }
    void TearDown() override {
        Inject([](HINSTANCE, std::uint32_t) { return std::wstring(); });
    }
};

TEST(StringFallback, CollectionAnswerWinsEvenWhenEmpty) {
    Service s;
    s.strings->answers[{L"k", Kind::Caption}] = L"";
    s.legacy->answers[{L"k", Resources::String}] = IdOf(7);
    EXPECT_EQ(s.impl.GetString(L"k", Kind::Caption), L"");
    EXPECT_TRUE(s.legacy->asked.empty());
}

TEST(StringFallback, MissEverywhereIsEmpty) {
    Service s;
    EXPECT_EQ(s.impl.GetString(L"nothing", Kind::String), L"");
    ASSERT_EQ(s.legacy->asked.size(), 1u);
    EXPECT_EQ(s.legacy->asked[0], std::make_pair(std::wstring(L"nothing"), 2));
}

TEST(StringFallback, WithoutStringCollectionLegacyIsNotAsked) {
    auto* legacy = new FakeLegacy;
    legacy->answers[{L"k", Resources::String}] = IdOf(7);
    ResourcesImpl impl(nullptr, nullptr, nullptr, nullptr, {}, std::unique_ptr<FakeLegacy>(legacy));
    EXPECT_EQ(impl.GetString(L"k", Kind::String), L"");
    EXPECT_TRUE(legacy->asked.empty());
}

TEST(StringFallback, KeyIsPassedUnchangedWithItsKind) {
    Service s;
    s.impl.GetString(L"guid://X", static_cast<Kind::StringKind>(7));
    ASSERT_EQ(s.strings->asked.size(), 1u);
    EXPECT_EQ(s.strings->asked[0].first, L"guid://X");
    EXPECT_EQ(static_cast<std::uint32_t>(s.strings->asked[0].second), 7u);
}

TEST_F(LegacyLoader, DefaultLoaderGivesEmptyTextForEveryKind) {
    Service s;
    s.legacy->answers[{L"k", Resources::String}] = IdOf(7);
    for (std::uint32_t kind = 0; kind < 5; ++kind)
        EXPECT_EQ(s.impl.GetString(L"k", static_cast<Kind::StringKind>(kind)), L"") << kind;
}

TEST_F(LegacyLoader, LoaderReceivesTheEntryModuleAndId) {
    Service s;
    s.legacy->answers[{L"k", Resources::String}] = IdOf(4711, FakeModule(0x1000));
    HINSTANCE seenModule = nullptr;
    std::uint32_t seenId = 0;
    Inject([&](HINSTANCE module, std::uint32_t id) {
        seenModule = module;
        seenId = id;
        return std::wstring(L"text");
    });
    EXPECT_EQ(s.impl.GetString(L"k", Kind::String), L"text");
    EXPECT_EQ(seenModule, FakeModule(0x1000));
    EXPECT_EQ(seenId, 4711u);
}

TEST_F(LegacyLoader, KindsOneToThreeExtractTheirField) {
    Service s;
    s.legacy->answers[{L"k", Resources::String}] = IdOf(1);
    Inject([](HINSTANCE, std::uint32_t) { return std::wstring(kTagged); });
    EXPECT_EQ(s.impl.GetString(L"k", Kind::String), kTagged);
    EXPECT_EQ(s.impl.GetString(L"k", Kind::Caption), L"Cap");
    EXPECT_EQ(s.impl.GetString(L"k", Kind::TooltipHeader), L"Head");
    EXPECT_EQ(s.impl.GetString(L"k", Kind::TooltipBody), L"Body");
}

TEST_F(LegacyLoader, KindsAboveThreeKeepTheWholeText) {
    Service s;
    s.legacy->answers[{L"k", Resources::String}] = IdOf(1);
    Inject([](HINSTANCE, std::uint32_t) { return std::wstring(kTagged); });
    EXPECT_EQ(s.impl.GetString(L"k", static_cast<Kind::StringKind>(4)), kTagged);
    EXPECT_EQ(s.impl.GetString(L"k", static_cast<Kind::StringKind>(0xFFFFFFFFu)), kTagged);
}

TEST_F(LegacyLoader, MissingFieldFollowsTheTextRules) {
    Service s;
    s.legacy->answers[{L"k", Resources::String}] = IdOf(1);
    // Untagged one-liner: caption and tip come from line 1, there is no header.
    Inject([](HINSTANCE, std::uint32_t) { return std::wstring(L"Open"); });
    EXPECT_EQ(s.impl.GetString(L"k", Kind::Caption), L"Open");
    EXPECT_EQ(s.impl.GetString(L"k", Kind::TooltipHeader), L"");
    EXPECT_EQ(s.impl.GetString(L"k", Kind::TooltipBody), L"Open");
}

TEST_F(LegacyLoader, EmptiedLoaderGivesEmptyTexts) {
    Service s;
    s.legacy->answers[{L"k", Resources::String}] = IdOf(1);
    Inject(nullptr);
    for (std::uint32_t kind = 0; kind < 4; ++kind)
        EXPECT_EQ(s.impl.GetString(L"k", static_cast<Kind::StringKind>(kind)), L"");
}

TEST_F(LegacyLoader, SecondInjectionReplacesTheFirst) {
    Service s;
    s.legacy->answers[{L"k", Resources::String}] = IdOf(1);
    int firstCalls = 0;
    Inject([&](HINSTANCE, std::uint32_t) {
        ++firstCalls;
        return std::wstring(L"first");
    });
    Inject([](HINSTANCE, std::uint32_t) { return std::wstring(L"second"); });
    EXPECT_EQ(s.impl.GetString(L"k", Kind::String), L"second");
    EXPECT_EQ(firstCalls, 0);
    Inject(nullptr);
    Inject([](HINSTANCE, std::uint32_t) { return std::wstring(L"third"); });
    EXPECT_EQ(s.impl.GetString(L"k", Kind::String), L"third");
}

TEST(IconFallback, AsksIconsThenPlatformThenLegacy) {
    Service s;
    s.legacy->answers[{L"k", Resources::Icon}] = IdOf(3);
    EXPECT_EQ(s.impl.GetIcon(L"k"), IdOf(3));
    EXPECT_EQ(s.icons->asked, std::vector<std::wstring>{L"k"});
    // The platform collection is always empty in practice, and is asked all the same.
    EXPECT_EQ(s.platformIcons->asked, std::vector<std::wstring>{L"k"});
    ASSERT_EQ(s.legacy->asked.size(), 1u);
    EXPECT_EQ(s.legacy->asked[0].second, static_cast<int>(Resources::Icon));
}

TEST(IconFallback, FirstHitStopsTheChain) {
    Service s;
    Resources::ResourceID found;
    found.iconPath = L"dir/";
    s.icons->answers[L"k"] = found;
    s.platformIcons->answers[L"k"] = IdOf(2);
    EXPECT_EQ(s.impl.GetIcon(L"k"), found);
    EXPECT_TRUE(s.platformIcons->asked.empty());

    s.platformIcons->answers[L"p"] = IdOf(2);
    s.legacy->answers[{L"p", Resources::Icon}] = IdOf(3);
    EXPECT_EQ(s.impl.GetIcon(L"p"), IdOf(2));
    EXPECT_TRUE(s.legacy->asked.empty());
}

TEST(IconFallback, AllMissGivesDefault) {
    Service s;
    s.legacy->answers[{L"k", Resources::Cursor}] = IdOf(3);
    EXPECT_EQ(s.impl.GetIcon(L"k"), ResourceID{});
}

TEST(CursorFallback, SkipsThePlatformIconCollection) {
    Service s;
    s.platformIcons->answers[L"k"] = IdOf(2);
    EXPECT_EQ(s.impl.GetCursor(L"k"), ResourceID{});
    EXPECT_TRUE(s.platformIcons->asked.empty());
    ASSERT_EQ(s.legacy->asked.size(), 1u);
    EXPECT_EQ(s.legacy->asked[0].second, static_cast<int>(Resources::Cursor));
}

TEST(CursorFallback, CursorCollectionFirstThenLegacy) {
    Service s;
    s.cursors->answers[L"a"] = IdOf(10, FakeModule(0x20));
    s.legacy->answers[{L"a", Resources::Cursor}] = IdOf(11);
    s.legacy->answers[{L"b", Resources::Cursor}] = IdOf(12);
    EXPECT_EQ(s.impl.GetCursor(L"a"), IdOf(10, FakeModule(0x20)));
    EXPECT_EQ(s.impl.GetCursor(L"b"), IdOf(12));
}

TEST(Registration, ForwardsArgumentsToTheLegacyCollection) {
    Service s;
    const Resources::RegistrarMapEntry entries[] = {{L"a", 1, L""}, {L"b", 2, L""}};
    s.impl.AddLegacyComponent(L"Comp", FakeModule(0x10));
    s.impl.AddLegacyResources(L"Comp", entries, 2, Resources::Cursor);
    s.impl.AddLegacyResources(nullptr, nullptr, 0, static_cast<Resources::ResourceType>(9));
    s.impl.RemoveLegacyComponent(L"Comp");
    EXPECT_EQ(s.legacy->calls,
              (std::vector<std::wstring>{L"AddComponent Comp", L"AddResources Comp 2 1",
                                         L"AddResources (null) 0 9", L"RemoveComponent Comp"}));
}

TEST(Registration, WithoutLegacyCollectionNothingHappens) {
    ResourcesImpl impl(nullptr, nullptr, nullptr, nullptr, {}, nullptr);
    impl.AddLegacyComponent(L"c", nullptr);
    impl.RemoveLegacyComponent(nullptr);
    impl.AddLegacyResources(nullptr, nullptr, 5, Resources::String);
    EXPECT_EQ(impl.GetCursor(L"c"), ResourceID{});
    EXPECT_EQ(impl.GetLegacyGuid("c", 1), L"");
}

} // namespace
