// The exported functions: what each forwards to, the buffer variants at their bounds, and
// the settings they write.
#include "ScriptedService.h"

#include "platform/Path.h"
#include "service/Settings.h"

#include <gtest/gtest.h>

namespace {
using Framework::Resources;
using QanTest::ScriptedService;

TEST(Forwarding, LookupsReachTheServiceWithTheirKind) {
    ScriptedService service;
    Resources::GetString(L"a");
    Resources::GetCaption(L"b");
    Resources::GetTooltipHeader(L"c");
    Resources::GetTooltipBody(L"d");
    Resources::GetIcon(L"e");
    Resources::GetCursor(L"f");
    Resources::GetLegacyString(L"g");
    Resources::GetLegacyGuid("Comp", 12);
    EXPECT_EQ(service.calls,
              (std::vector<std::wstring>{L"GetString a 0", L"GetString b 1", L"GetString c 2",
                                         L"GetString d 3", L"GetIcon e", L"GetCursor f",
                                         L"GetLegacyString g", L"GetLegacyGuid Comp 12"}));
}

TEST(Forwarding, LegacyStringByIdAsksForTheGuidFirst) {
    ScriptedService service;
    service.guid = L"0000-guid";
    service.text = L"found";
    EXPECT_EQ(Resources::GetLegacyString(42, "Nimbus"), L"found");
    EXPECT_EQ(service.calls, (std::vector<std::wstring>{L"GetLegacyGuid Nimbus 42",
                                                        L"GetLegacyString 0000-guid"}));
}

TEST(Forwarding, RegistrationsPassNullsThrough) {
    ScriptedService service;
    Resources::AddLegacyComponent(nullptr, nullptr);
    Resources::RemoveLegacyComponent(nullptr);
    Resources::AddLegacyResources(nullptr, nullptr, -3, static_cast<Resources::ResourceType>(-1));
    EXPECT_EQ(service.calls, (std::vector<std::wstring>{L"AddLegacyComponent (null)",
                                                        L"RemoveLegacyComponent (null)",
                                                        L"AddLegacyResources (null) -3 -1"}));
}

TEST(Forwarding, EachCallAsksForTheServiceAnew) {
    ScriptedService first;
    first.text = L"one";
    EXPECT_EQ(Resources::GetString(L"k"), L"one");
    {
        ScriptedService second;
        second.text = L"two";
        EXPECT_EQ(Resources::GetString(L"k"), L"two");
    }
}

TEST(StringIntoBuffer, ExactFitReturnsTheBufferSize) {
    ScriptedService service;
    service.text = L"Hello";
    wchar_t buffer[6];
    EXPECT_EQ(Resources::GetStringIntoBuffer(L"k", buffer, 6), 6);
    EXPECT_EQ(std::wstring(buffer), L"Hello");
}

TEST(StringIntoBuffer, OneShortFailsAndEmptiesTheBuffer) {
    ScriptedService service;
    service.text = L"Hello";
    wchar_t buffer[5] = {L'x', L'x', L'x', L'x', L'x'};
    EXPECT_EQ(Resources::GetStringIntoBuffer(L"k", buffer, 5), 0);
    EXPECT_EQ(buffer[0], L'\0');
}

TEST(StringIntoBuffer, MissingTextIsCopiedAsEmptyAndLooksLikeAHit) {
    ScriptedService service;
    wchar_t buffer[8] = {L'x', L'x', L'\0'};
    EXPECT_EQ(Resources::GetStringIntoBuffer(L"k", buffer, 8), 8);
    EXPECT_EQ(buffer[0], L'\0');
}

TEST(StringIntoBuffer, InvalidDestinationsReturnZero) {
    ScriptedService service;
    service.text = L"abc";
    wchar_t buffer[4] = {L'z', L'\0'};
    EXPECT_EQ(Resources::GetStringIntoBuffer(L"k", nullptr, 10), 0);
    EXPECT_EQ(Resources::GetStringIntoBuffer(L"k", buffer, 0), 0);
    EXPECT_EQ(Resources::GetStringIntoBuffer(L"k", buffer, -1), 0);
    EXPECT_EQ(buffer[0], L'z');
}

TEST(LegacyStringIntoBuffer, EmptyTextLeavesTheBufferUntouched) {
    ScriptedService service;
    wchar_t buffer[4] = {L'q', L'r', L'\0'};
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"k", buffer, 4), 0);
    EXPECT_EQ(std::wstring(buffer), L"qr");
}

TEST(LegacyStringIntoBuffer, ReturnsTheTextLengthOnSuccess) {
    ScriptedService service;
    service.text = L"12345";
    wchar_t buffer[6];
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"k", buffer, 6), 5);
    EXPECT_EQ(std::wstring(buffer), L"12345");
    wchar_t large[64];
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"k", large, 64), 5);
}

TEST(LegacyStringIntoBuffer, TooSmallOrInvalidReturnsZero) {
    ScriptedService service;
    service.text = L"12345";
    wchar_t buffer[5];
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"k", buffer, 5), 0);
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"k", nullptr, 6), 0);
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"k", buffer, 0), 0);
    EXPECT_EQ(Resources::GetLegacyStringIntoBuffer(L"k", buffer, -6), 0);
}

TEST(Settings, ResourceDirectoriesKeepTheBaseOnlyInsideTheJoinedPaths) {
    using Framework::Path::Combine;
    Resources::SetResourceDirectories(L"m", L"r", L"i", L"base", L"sub");
    const auto& settings = Framework::Internal::ProcessSettings();
    EXPECT_EQ(settings.masterStringDirectory, L"m");
    EXPECT_EQ(settings.resourceDirectory, L"r");
    EXPECT_EQ(settings.iconDirectory, L"i");
    EXPECT_EQ(settings.iconSubdirectory, L"sub");
    EXPECT_EQ(settings.imagesDirectory, Combine(L"base", L"Images"));
    EXPECT_EQ(settings.cursorsDirectory, Combine(L"base", L"Cursors"));

    Resources::SetResourceDirectories(L"m", L"r", L"i", L"other", L"sub");
    EXPECT_EQ(settings.imagesDirectory, Combine(L"other", L"Images"));
    EXPECT_EQ(settings.cursorsDirectory, Combine(L"other", L"Cursors"));
}

TEST(Settings, MasterStringDirectoryReplacesOnlyItself) {
    Resources::SetResourceDirectories(L"m", L"r", L"i", L"b", L"s");
    Resources::SetMasterStringDirectory(L"elsewhere");
    const auto& settings = Framework::Internal::ProcessSettings();
    EXPECT_EQ(settings.masterStringDirectory, L"elsewhere");
    EXPECT_EQ(settings.resourceDirectory, L"r");
    EXPECT_EQ(settings.iconDirectory, L"i");
    EXPECT_EQ(settings.iconSubdirectory, L"s");
    EXPECT_EQ(settings.imagesDirectory, Framework::Path::Combine(L"b", L"Images"));
}

TEST(Settings, AppNameIsStoredAsGiven) {
    Resources::SetAppName(L"SchemaWright");
    EXPECT_EQ(Framework::Internal::ProcessSettings().appName, L"SchemaWright");
}

TEST(Prefixes, AreTheKeyPrefixTexts) {
    EXPECT_EQ(Resources::PREFIX_EXTENSION, L"ext://");
    EXPECT_EQ(Resources::GUID_EXTENSION, L"guid://");
}

} // namespace
