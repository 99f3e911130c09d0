// LegacyRegistrarFuzz.cpp: a fuzzed sequence of legacy registrations (AddResources,
// AddComponent, RemoveComponent, with fuzzed components, keys, ids, texts and resource
// types, null names among them), each followed by look-ups that are compared with a
// plain model of the registrar's rules: a type outside Icon, Cursor and String selects no
// table; a key answers with one of its registrations (which one, for a key registered more
// than once, is not defined); id 0 is a present answer that carries only a workspace
// icon's path; any other id carries the module of its component while that component is
// added, and a null module before it is added and after it is removed.
#include "legacy/LegacyResourceCollection.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {
using Framework::Resources;
using Framework::Internal::LegacyResourceCollection;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

// A few fixed names, so that registrations meet, and short fuzzed ones; null stands for
// the host passing no name at all.
const wchar_t* const kNames[] = {nullptr, L"", L"A", L"B", L"wkspIcon", L"wkspIcon2", L"\xE9"};

struct Name {
    std::optional<std::wstring> text; // nothing: null

    const wchar_t* Pointer() const { return text ? text->c_str() : nullptr; }
    std::wstring Value() const { return text.value_or(L""); }
};

Name TakeName(FuzzedDataProvider& in) {
    const std::size_t choice = in.ConsumeIntegralInRange<std::size_t>(0, std::size(kNames));
    if (choice < std::size(kNames))
        return kNames[choice] ? Name{std::wstring(kNames[choice])} : Name{};
    std::wstring fuzzed;
    for (std::size_t n = in.ConsumeIntegralInRange<std::size_t>(0, 3); n > 0; --n)
        fuzzed += static_cast<wchar_t>(in.ConsumeIntegralInRange<std::uint32_t>(1, 0x10FFFF));
    return Name{fuzzed};
}

Resources::ResourceType TakeType(FuzzedDataProvider& in) {
    // 3 and -1 name no table.
    return static_cast<Resources::ResourceType>(in.ConsumeIntegralInRange<int>(-1, 3));
}

struct ModelEntry {
    std::wstring key;
    int id;
    std::wstring component;
    std::wstring text;
};

struct Model {
    std::map<int, std::vector<ModelEntry>> tables; // by resource type
    std::map<std::wstring, HINSTANCE> modules;

    static bool Selects(Resources::ResourceType type) {
        return type == Resources::Icon || type == Resources::Cursor || type == Resources::String;
    }

    Resources::ResourceID Expected(const ModelEntry& entry) const {
        Resources::ResourceID result;
        if (entry.id == 0) {
            if (entry.component == L"wkspIcon")
                result.pngPath = entry.text;
            return result;
        }
        result.id = entry.id;
        if (const auto module = modules.find(entry.component);
            !entry.component.empty() && module != modules.end())
            result.module = module->second;
        return result;
    }

    // Whether answer is one the registrations of key allow.
    bool Allows(const std::wstring& key, Resources::ResourceType type,
                const std::optional<Resources::ResourceID>& answer) const {
        const auto table = tables.find(type);
        bool registered = false;
        if (Selects(type) && table != tables.end())
            for (const auto& entry : table->second)
                if (entry.key == key) {
                    registered = true;
                    if (answer && *answer == Expected(entry))
                        return true;
                }
        return !registered && !answer;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    LegacyResourceCollection registrar;
    Model model;
    std::set<std::wstring> asked = {L"", L"A"};

    while (in.remaining_bytes() > 0) {
        switch (in.ConsumeIntegralInRange<int>(0, 2)) {
        case 0: {
            const Name component = TakeName(in);
            const Resources::ResourceType type = TakeType(in);
            std::vector<Name> keys;
            std::vector<Resources::RegistrarMapEntry> entries;
            for (std::size_t n = in.ConsumeIntegralInRange<std::size_t>(0, 4); n > 0; --n) {
                keys.push_back(TakeName(in));
                const int id = in.ConsumeBool() ? in.ConsumeIntegralInRange<int>(-1, 2)
                                                : in.ConsumeIntegral<int>();
                entries.push_back({nullptr, id, TakeName(in).Value()});
            }
            for (std::size_t i = 0; i < entries.size(); ++i)
                entries[i].key = keys[i].Pointer();
            // A count below the number of rows registers only the first ones; none for a
            // count of zero or less, or no rows at all.
            const int count =
                static_cast<int>(entries.size()) - in.ConsumeIntegralInRange<int>(0, 1);
            const bool nullRows = in.ConsumeBool();
            registrar.AddResources(component.Pointer(), nullRows ? nullptr : entries.data(), count,
                                   type);
            if (!nullRows && Model::Selects(type))
                for (int i = 0; i < count; ++i) {
                    model.tables[type].push_back(
                        {keys[i].Value(), entries[i].id, component.Value(), entries[i].text});
                    asked.insert(keys[i].Value());
                }
            break;
        }
        case 1: {
            const Name component = TakeName(in);
            const auto module =
                reinterpret_cast<HINSTANCE>(in.ConsumeIntegralInRange<std::uintptr_t>(1, 4) * 16);
            registrar.AddComponent(component.Pointer(), module);
            model.modules[component.Value()] = module;
            break;
        }
        default: {
            const Name component = TakeName(in);
            registrar.RemoveComponent(component.Pointer());
            model.modules.erase(component.Value());
            break;
        }
        }
        for (const auto& key : asked)
            for (const int type : {-1, 0, 1, 2, 3}) {
                const auto kind = static_cast<Resources::ResourceType>(type);
                Check(model.Allows(key, kind, registrar.GetResource(key, kind)));
            }
    }
    return 0;
}
