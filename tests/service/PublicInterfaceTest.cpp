// The exported functions: what each forwards to, and the buffer variants at their bounds.
#include "ScriptedService.h"

#include <gtest/gtest.h>

namespace {
using Framework::Resources;
using QanTest::ScriptedService;
using Strings = std::vector<std::wstring>;

TEST(Forwarding, EachExportedFunctionReachesTheServiceInUse) {
    ScriptedService service;
    service.guid = L"g-1";
    Resources::GetString(L"a");
    Resources::GetCaption(L"b");
    Resources::GetTooltipHeader(L"c");
    Resources::GetTooltipBody(L"d");
    Resources::GetIcon(L"e");
    Resources::GetCursor(L"f");
    Resources::GetLegacyString(L"g");
    Resources::GetLegacyGuid("Comp", 12);
    Resources::GetLegacyString(42, "Nimbus");
    Resources::AddLegacyComponent(nullptr, nullptr);
    Resources::RemoveLegacyComponent(nullptr);
    Resources::AddLegacyResources(nullptr, nullptr, -3, static_cast<Resources::ResourceType>(-1));
    EXPECT_EQ(
        service.calls,
        (Strings{L"GetString a 0", L"GetString b 1", L"GetString c 2", L"GetString d 3",
                 L"GetIcon e", L"GetCursor f", L"GetLegacyString g", L"GetLegacyGuid Comp 12",
                 L"GetLegacyGuid Nimbus 42", L"GetLegacyString g-1", L"AddLegacyComponent (null)",
                 L"RemoveLegacyComponent (null)", L"AddLegacyResources (null) -3 -1"}));
    {
        ScriptedService other;
        other.text = L"two";
        EXPECT_EQ(Resources::GetString(L"k"), L"two") << "the service is asked for at each call";
    }
}

// Both variants copy with the runtime's bounded copy; they differ on purpose in what an
// empty text does and in what a success returns.
TEST(BufferVariants, AtTheirBounds) {
    ScriptedService service;
    const struct {
        const wchar_t* text;
        bool legacy;
        int size;
        bool nullBuffer;
        int expected;
        const wchar_t* buffer; // afterwards
    } rows[] = {
        {L"Hello", false, 6, false, 6, L"Hello"}, {L"Hello", false, 5, false, 0, L""},
        {L"", false, 8, false, 8, L""},           {L"abc", false, 10, true, 0, nullptr},
        {L"abc", false, 0, false, 0, L"zz"},      {L"abc", false, -1, false, 0, L"zz"},
        {L"12345", true, 6, false, 5, L"12345"},  {L"12345", true, 64, false, 5, L"12345"},
        {L"12345", true, 5, false, 0, L""},       {L"12345", true, 6, true, 0, nullptr},
        {L"12345", true, -6, false, 0, L"zz"},    {L"", true, 8, false, 0, L"zz"},
    };
    for (const auto& row : rows) {
        service.text = row.text;
        wchar_t buffer[64] = {L'z', L'z', L'\0'};
        wchar_t* destination = row.nullBuffer ? nullptr : buffer;
        const int result = row.legacy
                               ? Resources::GetLegacyStringIntoBuffer(L"k", destination, row.size)
                               : Resources::GetStringIntoBuffer(L"k", destination, row.size);
        SCOPED_TRACE(testing::Message() << (row.legacy ? "legacy " : "") << row.size);
        EXPECT_EQ(result, row.expected);
        if (row.buffer) {
            EXPECT_EQ(std::wstring(buffer), row.buffer);
        }
    }
}

} // namespace
