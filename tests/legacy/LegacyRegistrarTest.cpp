// Legacy components' registrar tables and module handles: what a key resolves to, per
// table, across registration, re-registration and removal, and with bad arguments.
#include "legacy/LegacyResourceCollection.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework;
using namespace Framework::Internal;
using Entry = Resources::RegistrarMapEntry;
using ResourceID = Resources::ResourceID;

HINSTANCE FakeModule(std::uintptr_t n) {
    return reinterpret_cast<HINSTANCE>(n * 0x1000);
}

std::optional<ResourceID> Find(const LegacyResourceCollection& c, const std::wstring& key,
                               int type) {
    std::optional<ResourceID> out = ResourceID{}; // must be overwritten
    c.GetResource(out, key, static_cast<Resources::ResourceType>(type));
    return out;
}

ResourceID Id(HINSTANCE module, int id) {
    ResourceID r;
    r.module = module;
    r.id = id;
    return r;
}

TEST(LegacyRegistrar, KeysResolveToTheComponentModuleAndId) {
    LegacyResourceCollection c;
    const Entry entries[] = {{L"zeta", 30, {}}, {L"alpha", 10, {}}, {L"mid", 20, {}}};
    c.AddResources(L"Paint", entries, 3, Resources::String);
    EXPECT_EQ(Find(c, L"alpha", Resources::String), Id(nullptr, 10));
    c.AddComponent(L"Paint", FakeModule(1));
    EXPECT_EQ(Find(c, L"alpha", Resources::String), Id(FakeModule(1), 10));
    EXPECT_EQ(Find(c, L"mid", Resources::String), Id(FakeModule(1), 20));
    EXPECT_EQ(Find(c, L"zeta", Resources::String), Id(FakeModule(1), 30));
    EXPECT_FALSE(Find(c, L"Alpha", Resources::String));
    EXPECT_FALSE(Find(c, L"", Resources::String));
    // Each type has its own table.
    EXPECT_FALSE(Find(c, L"alpha", Resources::Icon));
    EXPECT_FALSE(Find(c, L"alpha", Resources::Cursor));
}

TEST(LegacyRegistrar, LaterCallsKeepTheTableSearchable) {
    LegacyResourceCollection c;
    for (int i = 40; i > 0; --i) {
        const std::wstring key = L"key" + std::to_wstring(i * 7 % 41);
        const Entry entry{key.c_str(), i, {}};
        c.AddResources(L"Comp", &entry, 1, Resources::Cursor);
    }
    for (int i = 40; i > 0; --i) {
        const auto hit = Find(c, L"key" + std::to_wstring(i * 7 % 41), Resources::Cursor);
        ASSERT_TRUE(hit) << i;
        EXPECT_EQ(hit->id, i);
    }
}

TEST(LegacyRegistrar, ComponentsAreReplacedAndRemoved) {
    LegacyResourceCollection c;
    const Entry icon{L"brush", 5, {}};
    c.AddResources(L"Paint", &icon, 1, Resources::Icon);
    c.AddComponent(L"Paint", FakeModule(1));
    c.AddComponent(L"Paint", FakeModule(2));
    EXPECT_EQ(Find(c, L"brush", Resources::Icon), Id(FakeModule(2), 5));
    c.RemoveComponent(L"Unknown");
    c.RemoveComponent(L"paint"); // names compare exactly
    EXPECT_EQ(Find(c, L"brush", Resources::Icon), Id(FakeModule(2), 5));
    c.RemoveComponent(L"Paint");
    // The entries stay; only the module is gone.
    EXPECT_EQ(Find(c, L"brush", Resources::Icon), Id(nullptr, 5));
    c.AddComponent(L"Paint", FakeModule(3));
    EXPECT_EQ(Find(c, L"brush", Resources::Icon), Id(FakeModule(3), 5));
}

TEST(LegacyRegistrar, KeyOfTwoComponentsResolvesToOneOfThem) {
    LegacyResourceCollection c;
    c.AddComponent(L"A", FakeModule(1));
    c.AddComponent(L"B", FakeModule(2));
    const Entry a{L"shared", 1, {}}, b{L"shared", 2, {}};
    c.AddResources(L"A", &a, 1, Resources::String);
    c.AddResources(L"B", &b, 1, Resources::String);
    const auto hit = Find(c, L"shared", Resources::String);
    ASSERT_TRUE(hit);
    EXPECT_TRUE(*hit == Id(FakeModule(1), 1) || *hit == Id(FakeModule(2), 2));
}

TEST(LegacyRegistrar, WorkspaceIconsCarryTheirPath) {
    LegacyResourceCollection c;
    c.AddComponent(L"Other", FakeModule(1));
    const Entry wksp{L"ws", 0, L"C:/icons/ws.png"};
    const Entry other{L"other", 0, L"C:/icons/other.png"};
    const Entry withId{L"numbered", 9, L"ignored.png"};
    c.AddResources(L"wkspIcon", &wksp, 1, Resources::Icon);
    c.AddResources(L"Other", &other, 1, Resources::Icon);
    c.AddResources(L"Other", &withId, 1, Resources::Icon);
    ResourceID expected;
    expected.pngPath = L"C:/icons/ws.png";
    EXPECT_EQ(Find(c, L"ws", Resources::Icon), expected);
    // Id 0 under any other component: present, but empty.
    EXPECT_EQ(Find(c, L"other", Resources::Icon), ResourceID{});
    EXPECT_EQ(Find(c, L"numbered", Resources::Icon), Id(FakeModule(1), 9));
    // The rule does not depend on the table; the component name is exact.
    c.AddResources(L"wkspIcon", &wksp, 1, Resources::String);
    EXPECT_EQ(Find(c, L"ws", Resources::String), expected);
    c.AddResources(L"WkspIcon", &wksp, 1, Resources::Cursor);
    EXPECT_EQ(Find(c, L"ws", Resources::Cursor), ResourceID{});
}

TEST(LegacyRegistrar, UnknownTypesAddAndFindNothing) {
    LegacyResourceCollection c;
    const Entry entry{L"k", 4, {}};
    for (int type : {-1, 3, 100}) {
        c.AddResources(L"C", &entry, 1, static_cast<Resources::ResourceType>(type));
        EXPECT_FALSE(Find(c, L"k", type)) << type;
    }
    for (int type : {0, 1, 2})
        EXPECT_FALSE(Find(c, L"k", type)) << type;
}

TEST(LegacyRegistrar, EmptyCountsAddNothing) {
    LegacyResourceCollection c;
    const Entry entries[] = {{L"a", 1, {}}, {L"b", 2, {}}};
    c.AddResources(L"C", entries, 0, Resources::String);
    c.AddResources(L"C", entries, -5, Resources::String);
    EXPECT_FALSE(Find(c, L"a", Resources::String));
    c.AddResources(L"C", entries, 1, Resources::String);
    EXPECT_TRUE(Find(c, L"a", Resources::String));
    EXPECT_FALSE(Find(c, L"b", Resources::String));
}

TEST(LegacyRegistrar, NullArgumentsReadAsEmpty) {
    LegacyResourceCollection c;
    c.AddResources(L"C", nullptr, 3, Resources::String);
    EXPECT_FALSE(Find(c, L"", Resources::String));
    // A null key is the empty key.
    const Entry nullKey{nullptr, 6, {}};
    c.AddComponent(L"C", FakeModule(1));
    c.AddResources(L"C", &nullKey, 1, Resources::String);
    EXPECT_EQ(Find(c, L"", Resources::String), Id(FakeModule(1), 6));
    // A null component is the empty one, whose entries never have a module.
    c.AddComponent(L"", FakeModule(2));
    c.AddComponent(nullptr, FakeModule(3));
    const Entry orphan{L"orphan", 8, {}};
    c.AddResources(nullptr, &orphan, 1, Resources::Icon);
    EXPECT_EQ(Find(c, L"orphan", Resources::Icon), Id(nullptr, 8));
    c.RemoveComponent(nullptr);
    EXPECT_EQ(Find(c, L"", Resources::String), Id(FakeModule(1), 6));
}

} // namespace
