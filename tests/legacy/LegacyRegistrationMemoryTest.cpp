// Memory of the legacy collection across registrations: a replaced table is freed once no
// look-up reads it, so registering one entry at a time holds what registering them all at
// once holds, not a copy of the table per registration. This program counts the heap
// itself, so it runs on its own.
#include "legacy/LegacyResourceCollection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

namespace {

std::atomic<long long> liveBytes{0};
constexpr std::size_t kHeader = 16; // keeps the alignment that operator new promises

void* Allocate(std::size_t size) {
    auto* block = static_cast<unsigned char*>(std::malloc(size + kHeader));
    if (!block)
        throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(block) = size;
    liveBytes += static_cast<long long>(size);
    return block + kHeader;
}

void Release(void* pointer) noexcept {
    if (!pointer)
        return;
    auto* block = static_cast<unsigned char*>(pointer) - kHeader;
    liveBytes -= static_cast<long long>(*reinterpret_cast<std::size_t*>(block));
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) {
    return Allocate(size);
}
void* operator new[](std::size_t size) {
    return Allocate(size);
}
void operator delete(void* pointer) noexcept {
    Release(pointer);
}
void operator delete[](void* pointer) noexcept {
    Release(pointer);
}
void operator delete(void* pointer, std::size_t) noexcept {
    Release(pointer);
}
void operator delete[](void* pointer, std::size_t) noexcept {
    Release(pointer);
}

namespace {
using namespace Framework::Internal;
using R = Framework::Resources;

TEST(LegacyRegistrationMemory, OneByOneHoldsWhatAllAtOnceHolds) {
    constexpr int kEntries = 2000;
    std::vector<std::wstring> keys;
    for (int i = 0; i < kEntries; ++i)
        keys.push_back(L"Plugin.Key." + std::to_wstring(i));
    std::vector<R::RegistrarMapEntry> entries;
    for (int i = 0; i < kEntries; ++i)
        entries.push_back({keys[static_cast<std::size_t>(i)].c_str(), i + 1, L""});

    // The first look-up of a thread claims its snapshot slot, which some runtimes allocate
    // for (thread-exit records): done once before anything is counted.
    LegacyResourceCollection().GetResource(L"warm-up", R::String);

    const auto heldAfter = [&](bool oneByOne) {
        const long long before = liveBytes;
        auto collection = std::make_unique<LegacyResourceCollection>();
        if (oneByOne) {
            for (const auto& entry : entries)
                collection->AddResources(L"Plugin", &entry, 1, R::String);
        } else {
            collection->AddResources(L"Plugin", entries.data(), kEntries, R::String);
        }
        EXPECT_EQ(collection->GetResource(keys.back(), R::String)->id, kEntries);
        const long long held = liveBytes - before;
        collection.reset();
        EXPECT_EQ(liveBytes, before) << "the collection frees everything it holds";
        return held;
    };
    const long long allAtOnce = heldAfter(false);
    const long long oneByOne = heldAfter(true);
    EXPECT_LT(oneByOne, allAtOnce * 3 / 2) << oneByOne << " bytes against " << allAtOnce;
}

} // namespace
