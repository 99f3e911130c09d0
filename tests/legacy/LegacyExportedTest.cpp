// The exported legacy functions over a service of fake strings and a real legacy
// collection: registration, composed texts, id-and-component look-ups, buffer copies.
#include "FakeStrings.h"
#include "legacy/LegacyResourceCollection.h"
#include "service/ResourcesImpl.h"

#include <framework/QanCtlDependency.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {
using namespace Framework;
using namespace Framework::Internal;

const std::wstring M = L"\x0001";

class LegacyExported : public ::testing::Test {
protected:
    LegacyExported() {
        auto strings = std::make_unique<QanTest::FakeStrings>(
            QanTest::FakeStrings::Map{{{L"g-plain", String}, L"Hello"},
                                      {{L"g-fields", Caption}, L"Open"},
                                      {{L"g-fields", TooltipHeader}, L"File"},
                                      {{L"g-fields", TooltipBody}, L"Opens a file"}});
        LegacyGuidIndex index{
            {5, "Paint", L"g-plain"}, {6, "Paint", L"g-fields"}, {7, "Paint", L""}};
        service = std::make_unique<ResourcesImpl>(std::move(strings), nullptr, nullptr, nullptr,
                                                  std::move(index),
                                                  std::make_unique<LegacyResourceCollection>());
        IResources::SetResourcesForTests(service.get());
#if defined(_WIN32)
        // A failed copy goes through the runtime's invalid-parameter handling, which the
        // host controls; this host lets the copy return its error.
        _set_invalid_parameter_handler(
            [](const wchar_t*, const wchar_t*, const wchar_t*, unsigned, std::uintptr_t) {});
#endif
    }
    ~LegacyExported() override {
        IResources::SetResourcesForTests(nullptr);
        QanResources::InjectQanCtlDependency(
            {[](HINSTANCE, std::uint32_t) { return QanStringT<wchar_t>(); }});
    }
    std::unique_ptr<ResourcesImpl> service;
};

TEST_F(LegacyExported, IdAndComponentReachTheComposedText) {
    EXPECT_EQ(Resources::GetLegacyString(5, "Paint"), L"Hello");
    EXPECT_EQ(Resources::GetLegacyString(6, "Paint"),
              M + L"CT=Open" + M + L"TT=Opens a file" + M + L"TH=File");
    EXPECT_EQ(service->GetLegacyStringHeaderFirst(L"g-fields"),
              M + L"CT=Open" + M + L"TH=File" + M + L"TT=Opens a file");
    EXPECT_EQ(Resources::GetLegacyString(7, "Paint"), L"");
    EXPECT_EQ(Resources::GetLegacyString(5, "paint"), L"Hello"); // the id alone still finds it
    EXPECT_EQ(Resources::GetLegacyString(99, "Paint"), L"");
}

TEST_F(LegacyExported, BufferCopyAnswersTheLengthOrZero) {
    wchar_t buffer[8];
    std::fill(std::begin(buffer), std::end(buffer), L'#');
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"", buffer, 8), 0);
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"g-unknown", buffer, 8), 0);
    EXPECT_EQ(buffer[0], L'#'); // a miss leaves the buffer untouched
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"g-plain", buffer, 6), 5);
    EXPECT_EQ(std::wstring(buffer), L"Hello");
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"g-plain", buffer, 5), 0);
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"g-plain", nullptr, 6), 0);
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"g-plain", buffer, 0), 0);
}

TEST_F(LegacyExported, RegisteredComponentsAnswerIconsCursorsAndStrings) {
    const HINSTANCE module = reinterpret_cast<HINSTANCE>(std::uintptr_t{0x9000});
    const Resources::RegistrarMapEntry icons[] = {{L"icon.brush", 101, {}}};
    const Resources::RegistrarMapEntry cursors[] = {{L"cursor.pen", 201, {}}};
    const Resources::RegistrarMapEntry strings[] = {{L"legacy.title", 301, {}}};
    Resources::AddLegacyComponent(L"Paint", module);
    Resources::AddLegacyResources(L"Paint", icons, 1, Resources::Icon);
    Resources::AddLegacyResources(L"Paint", cursors, 1, Resources::Cursor);
    Resources::AddLegacyResources(L"Paint", strings, 1, Resources::String);
    QanResources::InjectQanCtlDependency({[module](HINSTANCE m, std::uint32_t id) {
        return m == module && id == 301 ? QanStringT<wchar_t>(L"Title") : QanStringT<wchar_t>();
    }});

    EXPECT_EQ(Resources::GetIcon(L"icon.brush").module, module);
    EXPECT_EQ(Resources::GetIcon(L"icon.brush").id, 101);
    EXPECT_EQ(Resources::GetCursor(L"cursor.pen").id, 201);
    EXPECT_EQ(Resources::GetCursor(L"icon.brush"), Resources::ResourceID{});
    EXPECT_EQ(Resources::GetLegacyString(L"legacy.title"), L"Title");
    EXPECT_EQ(Resources::GetString(L"legacy.title"), L"Title");

    Resources::RemoveLegacyComponent(L"Paint");
    EXPECT_EQ(Resources::GetIcon(L"icon.brush").module, nullptr);
    EXPECT_EQ(Resources::GetIcon(L"icon.brush").id, 101);
    EXPECT_EQ(Resources::GetLegacyString(L"legacy.title"), L"");
}

} // namespace
