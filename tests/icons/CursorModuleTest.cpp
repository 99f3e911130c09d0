// The cursor table of a real platform icon library, found beside the program as the
// service does it, and libraries that are missing or carry no table.
#include "CursorTableWriter.h"
#include "icons/CursorResourceCollection.h"
#include "support/FakePlatform.h"
#include "support/Fixture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework;
using ResourceID = Resources::ResourceID;

TEST(CursorModule, ServiceReadsTheTableOfTheLibraryBesideTheProgram) {
    const ResourceID arrow = Resources::GetCursor(L"Arrow");
    ASSERT_NE(arrow.module, nullptr);
    EXPECT_EQ(arrow.id, 7);
    EXPECT_TRUE(arrow.iconPath.empty() && arrow.pngPath.empty() && arrow.containerPath.empty());
    const ResourceID cross = Resources::GetCursor(L"Cross");
    EXPECT_EQ(cross.module, arrow.module);
    EXPECT_EQ(cross.id, 11); // the first of the two "Cross" rows
    EXPECT_EQ(Resources::GetCursor(L"Move\U0001F5B1").id, 14);
    EXPECT_EQ(Resources::GetCursor(L"Wait").id, 13);
    EXPECT_EQ(Resources::GetCursor(L"arrow"), ResourceID{});
    EXPECT_EQ(Resources::GetCursor(L"Pointer"), ResourceID{});
    // Cursors are not icons.
    EXPECT_EQ(Resources::GetIcon(L"Arrow"), ResourceID{});
}

TEST(CursorModule, RawDataResourcesOfTheLibrary) {
    const auto& platform = Platform::SystemPlatform();
    HINSTANCE module = platform.LoadModule(QanTest::FixturePath("QanIcons.dll").wstring().c_str());
    ASSERT_NE(module, nullptr);
    const std::vector<QanTools::CursorTable::Entry> table{{u"Arrow", 7},           {u"Cross", 11},
                                                          {u"Cross", 12},          {u"Hand", 9},
                                                          {u"Move\U0001F5B1", 14}, {u"Wait", 13}};
    EXPECT_EQ(QanTest::Bytes(platform.FindRawDataResource(module, 2)),
              QanTools::CursorTable::Write(table));
    EXPECT_EQ(platform.FindRawDataResource(module, 1).size(), 4u);
    EXPECT_TRUE(platform.FindRawDataResource(module, 4).empty());

    Internal::CursorResourceCollection cursors;
    cursors.LoadFromModule(module); // owned from here on
    EXPECT_EQ(cursors.GetResource(L"Hand")->id, 9);
    EXPECT_EQ(cursors.GetResource(L"Hand")->module, module);
}

TEST(CursorModule, LibraryWithoutTheTableGivesNoCursors) {
    QanTest::FakePlatform fake;
    fake.loadModule = [](const wchar_t* name) -> HINSTANCE {
        if (std::wstring(name) != L"QanIcons.dll")
            return nullptr;
        return Platform::SystemPlatform().LoadModule(
            QanTest::FixturePath("NoCursorTable.dll").wstring().c_str());
    };
    EXPECT_EQ(Resources::GetCursor(L"Arrow"), ResourceID{});
    EXPECT_EQ(Resources::GetCursor(L""), ResourceID{});
}

TEST(CursorModule, NoLibraryAtAllGivesNoCursors) {
    QanTest::FakePlatform fake;
    fake.loadModule = [](const wchar_t*) -> HINSTANCE { return nullptr; };
    EXPECT_EQ(Resources::GetCursor(L"Arrow"), ResourceID{});
    EXPECT_EQ(fake.freeModuleCalls, 0);
}

TEST(CursorModule, FilesThatAreNotLibrariesDoNotLoad) {
    QanTest::TempDir dir;
    const auto& platform = Platform::SystemPlatform();
    const auto fixture = QanTest::ReadAll(QanTest::FixturePath("QanIcons.dll"));
    for (const auto& [name, bytes] :
         std::vector<std::pair<std::string, std::string>>{{"empty.dll", ""},
                                                          {"text.dll", "not a library"},
                                                          {"header.dll", fixture.substr(0, 200)}}) {
        const auto path = dir.Write(name, bytes);
        EXPECT_EQ(platform.LoadModule(path.wstring().c_str()), nullptr) << name;
    }
    EXPECT_EQ(platform.LoadModule((dir.Path() / "missing.dll").wstring().c_str()), nullptr);
}

} // namespace
