// Plug-ins registering legacy components and resources while other threads look up,
// through the collection and through the service's fallbacks. Every answer is checked
// against the states a look-up may see (before or after each registration), so a torn
// state a reader meets fails the test, not only a crash or a sanitizer report. Bounded
// work, no timing.
#include "legacy/LegacyResourceCollection.h"
#include "service/ResourcesImpl.h"

#include <framework/QanCtlDependency.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <iterator>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace Framework {
// Failures show the module number and the id rather than the object's bytes.
static void PrintTo(const Resources::ResourceID& id, std::ostream* out) {
    *out << "module " << reinterpret_cast<std::uintptr_t>(id.module) / 0x1000 << ", id " << id.id;
}
} // namespace Framework

namespace {
using namespace Framework::Internal;
using R = Framework::Resources;

constexpr int kBaseKeys = 120, kWriters = 2, kRounds = 42, kBaseModule = 900;
constexpr R::ResourceType kTypes[] = {R::Icon, R::Cursor, R::String};

HINSTANCE Module(std::uintptr_t n) {
    return reinterpret_cast<HINSTANCE>(n * 0x1000);
}
std::uintptr_t ModuleNumber(HINSTANCE module) {
    return reinterpret_cast<std::uintptr_t>(module) / 0x1000;
}

// Keys registered before the threads start, in every table, under one component whose
// module never changes: each must always answer exactly.
std::wstring BaseKey(int n) {
    const std::wstring digits = std::to_wstring(1000 + n * 3);
    return L"key" + digits.substr(1);
}
int BaseId(int type, int n) {
    return 1000 * (type + 1) + n;
}

// Writer w's round r: one key into one table, sorting between two base keys, then the
// component's module replaced by a newer one, and every fourth round the component
// removed. A key of round r can thus only ever see module r - 1 or later, or none.
struct Registration {
    std::wstring key;
    R::ResourceType type;
    int id;
};
std::wstring Component(int writer) {
    return L"Gen" + std::to_wstring(writer);
}
std::uintptr_t GenModule(int writer, int round) {
    return static_cast<std::uintptr_t>(1 + writer * 100 + round);
}
Registration Gen(int writer, int round) {
    return {BaseKey(round * 7 % kBaseKeys) + L".w" + std::to_wstring(writer) + L".r" +
                std::to_wstring(round),
            kTypes[round % 3], 10000 * (writer + 1) + round};
}

// Decodes the text the injected loader makes of a module and an id.
std::wstring LoaderText(HINSTANCE module, std::uint32_t id) {
    return std::to_wstring(ModuleNumber(module)) + L"," + std::to_wstring(id);
}
std::optional<R::ResourceID> FromLoaderText(const std::wstring& text) {
    if (text.empty())
        return std::nullopt;
    const std::size_t comma = text.find(L',');
    R::ResourceID id;
    id.module = Module(std::stoull(text.substr(0, comma)));
    id.id = std::stoi(text.substr(comma + 1));
    return id;
}

// The service's string look-up misses in its own tables, so it falls back to the legacy one.
struct NoStrings final : StringCollection {
    std::optional<QanStringT<wchar_t>> GetResource(const QanStringT<wchar_t>&,
                                                   StringKind) const override {
        return std::nullopt;
    }
};

// One reader's view: what it has seen so far, since a later look-up never sees an older
// state than an earlier one of the same thread.
class Checker {
public:
    // A base key's answer in table t.
    bool Base(const std::optional<R::ResourceID>& answer, int type, int n) const {
        R::ResourceID expected;
        expected.module = Module(kBaseModule);
        expected.id = BaseId(type, n);
        return answer == expected;
    }

    // Writer w's key of round r, looked up in table t.
    bool Generated(const std::optional<R::ResourceID>& answer, R::ResourceType type, int writer,
                   int round) {
        const Registration registration = Gen(writer, round);
        if (type != registration.type)
            return !answer;
        bool& seen = seenKey[writer][round];
        if (!answer)
            return !seen; // registered keys stay registered
        seen = true;
        R::ResourceID bare = *answer;
        bare.module = nullptr;
        if (bare != R::ResourceID{nullptr, registration.id, {}, {}, {}, {}, {}})
            return false;
        if (!answer->module)
            return true; // removed since
        // The module of the registration before, or a later one; never older than seen.
        const auto number = static_cast<int>(ModuleNumber(answer->module));
        const int moduleRound = number - static_cast<int>(GenModule(writer, 0));
        const int oldest = std::max(round - 1, newestModule[writer]);
        if (moduleRound < oldest || moduleRound >= kRounds)
            return false;
        newestModule[writer] = moduleRound;
        return true;
    }

private:
    bool seenKey[kWriters][kRounds] = {};
    int newestModule[kWriters] = {0, 0};
};

// Where a reader asks: the collection itself, or the service's icon, cursor and string
// look-ups, which end in the collection.
enum class Path { Collection, Service };

std::optional<R::ResourceID> Ask(Path path, const LegacyResourceCollection& collection,
                                 const ResourcesImpl& service, const std::wstring& key,
                                 R::ResourceType type) {
    if (path == Path::Collection)
        return collection.GetResource(key, type);
    if (type == R::String)
        return FromLoaderText(service.GetString(key, String));
    const R::ResourceID id = type == R::Icon ? service.GetIcon(key) : service.GetCursor(key);
    return id == R::ResourceID{} ? std::nullopt : std::optional(id);
}

TEST(LegacyRegistrationConcurrency, LookUpsSeeEachRegistrationWholeOrNotAtAll) {
    QanResources::InjectQanCtlDependency({LoaderText});
    auto owned = std::make_unique<LegacyResourceCollection>();
    LegacyResourceCollection& collection = *owned;
    const ResourcesImpl service(std::make_unique<NoStrings>(), nullptr, nullptr, nullptr, {},
                                std::move(owned));

    std::vector<std::wstring> baseKeys;
    for (int n = 0; n < kBaseKeys; ++n)
        baseKeys.push_back(BaseKey(n));
    service.AddLegacyComponent(L"Base", Module(kBaseModule));
    for (int type = 0; type < 3; ++type)
        for (int n = 0; n < kBaseKeys; ++n) {
            const R::RegistrarMapEntry entry{
                baseKeys[static_cast<std::size_t>(n)].c_str(), BaseId(type, n), {}};
            service.AddLegacyResources(L"Base", &entry, 1, kTypes[type]);
        }
    std::vector<Registration> generated[kWriters];
    for (int writer = 0; writer < kWriters; ++writer)
        for (int round = 0; round < kRounds; ++round)
            generated[writer].push_back(Gen(writer, round));

    // Two threads per path look up; two writers register at the same time.
    const Path readers[] = {Path::Collection, Path::Collection, Path::Service, Path::Service};
    constexpr int kThreads = std::size(readers) + kWriters;
    std::atomic<int> ready{0}, writersLeft{kWriters}, wrong{0};
    std::mutex firstWrongLock;
    std::wstring firstWrong;
    const auto report = [&](const std::wstring& what) {
        if (wrong++ == 0) {
            const std::lock_guard lock(firstWrongLock);
            firstWrong = what;
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int writer = 0; writer < kWriters; ++writer)
            threads.emplace_back([&, writer] {
                for (++ready; ready < kThreads;) {
                }
                const std::wstring component = Component(writer);
                for (int round = 0; round < kRounds; ++round) {
                    const Registration& registration = generated[writer][round];
                    const R::RegistrarMapEntry entry{registration.key.c_str(), registration.id, {}};
                    service.AddLegacyResources(component.c_str(), &entry, 1, registration.type);
                    std::this_thread::yield();
                    service.AddLegacyComponent(component.c_str(), Module(GenModule(writer, round)));
                    if (round % 4 == 3)
                        service.RemoveLegacyComponent(component.c_str());
                    std::this_thread::yield();
                }
                --writersLeft;
            });
        for (const Path path : readers)
            threads.emplace_back([&, path] {
                Checker checker;
                for (++ready; ready < kThreads;) {
                }
                // At least three passes, and on until the writers are done.
                for (int pass = 0; (pass < 3 || writersLeft > 0) && wrong == 0; ++pass)
                    for (int type = 0; type < 3; ++type) {
                        const R::ResourceType t = kTypes[type];
                        for (int n = 0; n < kBaseKeys; ++n) {
                            const auto& key = baseKeys[static_cast<std::size_t>(n)];
                            if (!checker.Base(Ask(path, collection, service, key, t), type, n))
                                report(L"base " + key);
                        }
                        for (int writer = 0; writer < kWriters; ++writer)
                            for (int round = 0; round < kRounds; ++round) {
                                const auto& key = generated[writer][round].key;
                                if (!checker.Generated(Ask(path, collection, service, key, t), t,
                                                       writer, round))
                                    report(L"generated " + key + L" in table " +
                                           std::to_wstring(type));
                            }
                    }
            });
    }
    EXPECT_EQ(wrong, 0) << std::string(firstWrong.begin(), firstWrong.end());

    // Nothing registered was lost to the other writer: every key answers with its
    // component's last module (the last round added one and removed none).
    static_assert((kRounds - 1) % 4 != 3);
    for (int writer = 0; writer < kWriters; ++writer)
        for (const Registration& registration : generated[writer]) {
            R::ResourceID expected;
            expected.module = Module(GenModule(writer, kRounds - 1));
            expected.id = registration.id;
            EXPECT_EQ(collection.GetResource(registration.key, registration.type), expected)
                << std::string(registration.key.begin(), registration.key.end());
        }
    QanResources::InjectQanCtlDependency({});
}

} // namespace
