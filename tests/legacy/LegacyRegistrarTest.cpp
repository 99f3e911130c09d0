// Legacy components' registrar tables and module handles, and the shell's stock icons:
// what a key resolves to across registration, re-registration, removal and bad arguments.
#include "legacy/LegacyResourceCollection.h"
#include "service/ResourcesImpl.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework::Internal;
using R = Framework::Resources;
using Entry = R::RegistrarMapEntry;

HINSTANCE Module(std::uintptr_t n) {
    return reinterpret_cast<HINSTANCE>(n * 0x1000);
}

R::ResourceID Id(HINSTANCE module, int id, const wchar_t* pngPath = L"") {
    return {module, id, pngPath, {}, {}, {}, {}};
}

std::optional<R::ResourceID> Find(const LegacyResourceCollection& c, const std::wstring& key,
                                  int type = R::Icon) {
    return c.GetResource(key, static_cast<R::ResourceType>(type));
}

TEST(LegacyRegistrar, KeysResolveToTheirComponentsCurrentModule) {
    LegacyResourceCollection c;
    c.AddComponent(L"Other", Module(9));
    const Entry entries[] = {
        {L"zeta", 30, {}}, {L"alpha", 10, {}}, {L"mid", 20, {}}, {L"beta", 5, {}}};
    c.AddResources(L"Paint", entries, 3, R::String);
    // One entry per call, out of key order: the table must stay searchable after each.
    for (const Entry& entry : entries)
        c.AddResources(L"Paint", &entry, 1, R::Cursor);
    EXPECT_EQ(Find(c, L"alpha", R::String), Id(nullptr, 10)); // no module added yet
    c.AddComponent(L"Paint", Module(1));
    c.AddComponent(L"Paint", Module(2)); // the second handle replaces the first
    for (int i = 0; i < 4; ++i) {
        const auto expected = Id(Module(2), entries[i].id);
        EXPECT_EQ(Find(c, entries[i].key, R::Cursor), expected) << i;
        EXPECT_EQ(Find(c, entries[i].key, R::String),
                  i < 3 ? std::optional(expected) : std::nullopt);
    }
    // Keys compare exactly, and each type has its own table.
    for (const wchar_t* key : {L"Alpha", L"alph", L""})
        EXPECT_FALSE(Find(c, key, R::String));
    EXPECT_FALSE(Find(c, L"alpha", R::Icon));

    c.RemoveComponent(L"Unknown");
    c.RemoveComponent(L"paint"); // names compare exactly
    EXPECT_EQ(Find(c, L"alpha", R::String), Id(Module(2), 10));
    c.RemoveComponent(L"Paint"); // the entries stay; only the module is gone
    EXPECT_EQ(Find(c, L"alpha", R::String), Id(nullptr, 10));
    c.AddComponent(L"Paint", Module(3));
    EXPECT_EQ(Find(c, L"alpha", R::String), Id(Module(3), 10));
    // A key of two components resolves to either.
    c.AddComponent(L"Brush", Module(4));
    c.AddResources(L"Brush", &entries[1], 1, R::String);
    const auto hit = Find(c, L"alpha", R::String);
    EXPECT_TRUE(hit == Id(Module(3), 10) || hit == Id(Module(4), 10));
}

TEST(LegacyRegistrar, WorkspaceIconsCarryTheirPath) {
    LegacyResourceCollection c;
    c.AddComponent(L"A", Module(1));
    // Id 0 under "wkspIcon" carries the icon path; under any other component it is present
    // but empty. The rule holds in every table; the component name is exact.
    const Entry ws{L"ws", 0, L"C:/icons/ws.png"}, numbered{L"numbered", 9, L"ignored.png"};
    c.AddResources(L"wkspIcon", &ws, 1, R::Icon);
    c.AddResources(L"wkspIcon", &ws, 1, R::String);
    c.AddResources(L"WkspIcon", &ws, 1, R::Cursor);
    c.AddResources(L"A", &numbered, 1, R::Icon);
    EXPECT_EQ(Find(c, L"ws", R::Icon), Id(nullptr, 0, L"C:/icons/ws.png"));
    EXPECT_EQ(Find(c, L"ws", R::String), Id(nullptr, 0, L"C:/icons/ws.png"));
    EXPECT_EQ(Find(c, L"ws", R::Cursor), R::ResourceID{});
    EXPECT_EQ(Find(c, L"numbered", R::Icon), Id(Module(1), 9));
}

TEST(LegacyRegistrar, BadArgumentsAddNothingOrReadAsEmpty) {
    LegacyResourceCollection c;
    const Entry entries[] = {{L"a", 1, {}}, {L"b", 2, {}}};
    for (int type : {-1, 3})
        c.AddResources(L"C", entries, 2, static_cast<R::ResourceType>(type));
    c.AddResources(L"C", entries, 0, R::String);
    c.AddResources(L"C", entries, -5, R::String);
    c.AddResources(L"C", nullptr, 3, R::String);
    for (int type : {-1, 3, 0, 1, 2}) // nothing went to any table
        EXPECT_FALSE(Find(c, L"a", type)) << type;
    c.AddResources(L"C", entries, 1, R::String); // the count bounds the read
    EXPECT_TRUE(Find(c, L"a", R::String));
    EXPECT_FALSE(Find(c, L"b", R::String));
    // A null key is the empty key; a null component the empty one, which has no module.
    const Entry nullKey{nullptr, 6, {}}, orphan{L"orphan", 8, {}};
    c.AddComponent(L"C", Module(1));
    c.AddComponent(nullptr, Module(3));
    c.AddResources(L"C", &nullKey, 1, R::String);
    c.AddResources(nullptr, &orphan, 1, R::Icon);
    EXPECT_EQ(Find(c, L"orphan", R::Icon), Id(nullptr, 8));
    c.RemoveComponent(nullptr);
    EXPECT_EQ(Find(c, L"", R::String), Id(Module(1), 6));
}

// The platform describes an icon by module path and negative index: the id is its negation.
TEST(LegacyStockIcons, RegisteredWithTheShellModuleOnceLoadedNeverFreed) {
    const std::wstring shell = L"C:\\Windows\\shell32.dll", missing = L"missing.dll";
    int loads = 0, frees = 0;
    QanTest::FakePlatform platform;
    platform.stockIcon = [&](int id, Framework::Platform::StockIconLocation& location) {
        location.modulePath = id == 23 ? missing : shell;
        location.iconIndex = -(id + 1000);
        return id != 79; // the information icon cannot be described
    };
    platform.loadModule = [&](const wchar_t* path) {
        loads += path == shell || path == missing;
        return path == shell ? Module(7) : nullptr;
    };
    platform.freeModule = [&](HINSTANCE module) { frees += module == Module(7); };
    {
        const ResourcesImpl service; // registers the four stock icons
        // clang-format off
        const std::pair<const wchar_t*, R::ResourceID> keys[] = {
            {L"StockIcon::Warning", Id(Module(7), 1078)}, {L"StockIcon::Error", Id(Module(7), 1080)},
            {L"StockIcon::Info", R::ResourceID{}},        {L"StockIcon::Help", Id(nullptr, 1023)}};
        // clang-format on
        for (const auto& [key, expected] : keys)
            EXPECT_EQ(service.GetIcon(key), expected) << expected.id;
        EXPECT_EQ(service.GetCursor(L"StockIcon::Error"), R::ResourceID{}); // icons only
    }
    EXPECT_EQ(loads, 2); // each module once
    EXPECT_EQ(frees, 0);
}

} // namespace
