// FakeCollections.h: collections with scripted answers that record what they were asked,
// for testing the order in which the service consults them.
#pragma once

#include "service/ResourceCollection.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace QanTest {

using Framework::Resources;
using Framework::Internal::StringKind;

class FakeStrings final : public Framework::Internal::StringCollection {
public:
    std::map<std::pair<std::wstring, StringKind>, std::wstring> answers;
    mutable std::vector<std::pair<std::wstring, StringKind>> asked;

    std::optional<std::wstring> GetResource(const std::wstring& key,
                                            StringKind kind) const override {
        asked.emplace_back(key, kind);
        const auto found = answers.find({key, kind});
        if (found == answers.end())
            return std::nullopt;
        return found->second;
    }
};

class FakeIds final : public Framework::Internal::IdCollection {
public:
    std::map<std::wstring, Resources::ResourceID> answers;
    mutable std::vector<std::wstring> asked;

    std::optional<Resources::ResourceID> GetResource(const std::wstring& key) const override {
        asked.push_back(key);
        const auto found = answers.find(key);
        if (found == answers.end())
            return std::nullopt;
        return found->second;
    }
};

class FakeLegacy final : public Framework::Internal::LegacyCollection {
public:
    std::map<std::pair<std::wstring, int>, Resources::ResourceID> answers;
    mutable std::vector<std::pair<std::wstring, int>> asked;
    std::vector<std::wstring> calls;

    void GetResource(std::optional<Resources::ResourceID>& out, const std::wstring& key,
                     Resources::ResourceType type) const override {
        asked.emplace_back(key, static_cast<int>(type));
        out.reset();
        const auto found = answers.find({key, static_cast<int>(type)});
        if (found != answers.end())
            out = found->second;
    }
    void AddResources(const wchar_t* component, const Resources::RegistrarMapEntry*, int count,
                      Resources::ResourceType type) override {
        calls.push_back(L"AddResources " + std::wstring(component ? component : L"(null)") + L" " +
                        std::to_wstring(count) + L" " + std::to_wstring(static_cast<int>(type)));
    }
    void AddComponent(const wchar_t* component, HINSTANCE) override {
        calls.push_back(L"AddComponent " + std::wstring(component ? component : L"(null)"));
    }
    void RemoveComponent(const wchar_t* component) override {
        calls.push_back(L"RemoveComponent " + std::wstring(component ? component : L"(null)"));
    }
};

// A module handle that is never dereferenced.
inline HINSTANCE FakeModule(std::uintptr_t n) {
    return reinterpret_cast<HINSTANCE>(n);
}

inline Resources::ResourceID IdOf(int id, HINSTANCE module = nullptr) {
    Resources::ResourceID result;
    result.id = id;
    result.module = module;
    return result;
}

} // namespace QanTest
