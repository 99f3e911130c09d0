// FakeCollections.h: collections with scripted answers that record what they were asked,
// for testing the order in which the service consults them.
#pragma once

#include "base/Collections.h"

#include <map>
#include <string>
#include <vector>

namespace QanTest {

using Framework::Resources;
using Framework::Internal::StringKind;
using ResourceID = Resources::ResourceID;

// Answers keyed by (key, kind or type); every question is logged as "key/kind".
template <class Answer>
struct Script {
    std::map<std::wstring, Answer> answers;
    mutable std::vector<std::wstring> asked;

    std::optional<Answer> Ask(const std::wstring& key, std::uint32_t selector) const {
        const std::wstring entry = key + L"/" + std::to_wstring(selector);
        asked.push_back(entry);
        const auto found = answers.find(entry);
        return found == answers.end() ? std::nullopt : std::optional<Answer>(found->second);
    }
};

struct FakeStrings final : Framework::Internal::StringCollection, Script<std::wstring> {
    std::optional<std::wstring> GetResource(const std::wstring& key,
                                            StringKind kind) const override {
        return Ask(key, kind);
    }
};

struct FakeIds final : Framework::Internal::IdCollection, Script<ResourceID> {
    std::optional<ResourceID> GetResource(const std::wstring& key) const override {
        return Ask(key, 0);
    }
};

struct FakeLegacy final : Framework::Internal::LegacyCollection, Script<ResourceID> {
    std::vector<std::wstring> calls;
    static std::wstring Name(const wchar_t* text) { return text ? text : L"(null)"; }

    std::optional<ResourceID> GetResource(const std::wstring& key,
                                          Resources::ResourceType type) const override {
        return Ask(key, static_cast<std::uint32_t>(type));
    }
    void AddResources(const wchar_t* component, const Resources::RegistrarMapEntry*, int count,
                      Resources::ResourceType type) override {
        calls.push_back(L"Add " + Name(component) + L" " + std::to_wstring(count) + L" " +
                        std::to_wstring(type));
    }
    void AddComponent(const wchar_t* component, HINSTANCE) override {
        calls.push_back(L"Component " + Name(component));
    }
    void RemoveComponent(const wchar_t* component) override {
        calls.push_back(L"Remove " + Name(component));
    }
};

inline ResourceID IdOf(int id, std::uintptr_t module = 0) {
    ResourceID result;
    result.id = id;
    result.module = reinterpret_cast<HINSTANCE>(module);
    return result;
}

} // namespace QanTest
