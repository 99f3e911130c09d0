// The order in which the service asks its collections, with fake collections.
#include "service/ResourcesImpl.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework;
using namespace Framework::Internal;
using ResourceID = Resources::ResourceID;

TEST(FallbackOrder, EmptyServiceAnswersMisses) {
    ResourcesImpl service(nullptr, nullptr, nullptr, nullptr, {}, nullptr);
    EXPECT_EQ(service.GetString(L"k", String), L"");
    EXPECT_EQ(service.GetIcon(L"k"), ResourceID{});
    EXPECT_EQ(service.GetCursor(L"k"), ResourceID{});
}

} // namespace
