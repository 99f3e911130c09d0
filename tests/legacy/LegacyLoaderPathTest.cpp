// The service's fallback from the string tables to legacy modules: which module and id
// the injected loader is asked for, and which part of the loaded text each kind returns.
#include "FakeStrings.h"
#include "legacy/LegacyResourceCollection.h"
#include "service/ResourcesImpl.h"

#include <framework/QanCtlDependency.h>

#include <gtest/gtest.h>

#include <vector>

namespace {
using namespace Framework;
using namespace Framework::Internal;

const HINSTANCE kModule = reinterpret_cast<HINSTANCE>(std::uintptr_t{0x4000});
const std::wstring kTagged = L"\x0001"
                             L"CT=Cap\x0001"
                             L"TT=Body\x0001"
                             L"TH=Head";

class LegacyLoaderPath : public ::testing::Test {
protected:
    LegacyLoaderPath() {
        auto legacy = std::make_unique<LegacyResourceCollection>();
        const Resources::RegistrarMapEntry entries[] = {{L"legacy.key", 7, {}},
                                                        {L"both.key", 8, {}}};
        legacy->AddResources(L"Paint", entries, 2, Resources::String);
        legacy->AddComponent(L"Paint", kModule);
        auto strings = std::make_unique<QanTest::FakeStrings>(
            QanTest::FakeStrings::Map{{{L"both.key", String}, L""}});
        service = std::make_unique<ResourcesImpl>(std::move(strings), nullptr, nullptr, nullptr,
                                                  LegacyGuidIndex{}, std::move(legacy));
    }
    // The loader is process-wide: leave the do-nothing one behind for the next test.
    ~LegacyLoaderPath() override {
        QanResources::InjectQanCtlDependency(
            {[](HINSTANCE, std::uint32_t) { return QanStringT<wchar_t>(); }});
    }
    void InjectTagged() {
        QanResources::InjectQanCtlDependency({[this](HINSTANCE module, std::uint32_t id) {
            calls.emplace_back(module, id);
            return kTagged;
        }});
    }

    std::unique_ptr<ResourcesImpl> service;
    std::vector<std::pair<HINSTANCE, std::uint32_t>> calls;
};

TEST_F(LegacyLoaderPath, LoaderGetsTheRegisteredModuleAndId) {
    InjectTagged();
    service->GetString(L"legacy.key", String);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].first, kModule);
    EXPECT_EQ(calls[0].second, 7u);
}

TEST_F(LegacyLoaderPath, EachKindTakesItsField) {
    InjectTagged();
    EXPECT_EQ(service->GetString(L"legacy.key", String), kTagged);
    EXPECT_EQ(service->GetString(L"legacy.key", Caption), L"Cap");
    EXPECT_EQ(service->GetString(L"legacy.key", TooltipHeader), L"Head");
    EXPECT_EQ(service->GetString(L"legacy.key", TooltipBody), L"Body");
    // Kinds beyond the tooltip body keep the whole text.
    EXPECT_EQ(service->GetString(L"legacy.key", static_cast<StringKind>(4)), kTagged);
}

TEST_F(LegacyLoaderPath, StringTablesWinEvenWithAnEmptyValue) {
    InjectTagged();
    EXPECT_EQ(service->GetString(L"both.key", String), L"");
    EXPECT_TRUE(calls.empty());
}

TEST_F(LegacyLoaderPath, UnknownKeyAsksNoLoader) {
    InjectTagged();
    EXPECT_EQ(service->GetString(L"nowhere", Caption), L"");
    EXPECT_TRUE(calls.empty());
}

TEST_F(LegacyLoaderPath, EmptiedOrDefaultLoaderGivesEmptyTexts) {
    for (StringKind kind : {String, Caption, TooltipHeader, TooltipBody})
        EXPECT_EQ(service->GetString(L"legacy.key", kind), L"") << kind;
    QanResources::InjectQanCtlDependency({});
    for (StringKind kind : {String, Caption, TooltipHeader, TooltipBody})
        EXPECT_EQ(service->GetString(L"legacy.key", kind), L"") << kind;
}

} // namespace
