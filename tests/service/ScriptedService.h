// ScriptedService.h: an IResources that a host's tests would write: fixed answers and a
// record of every call, installed with SetResourcesForTests.
#pragma once

#include <framework/Resources.h>

#include <string>
#include <vector>

namespace QanTest {

class ScriptedService final : public Framework::Internal::IResources {
public:
    std::wstring text; // answer of GetString and GetLegacyString
    std::wstring guid; // answer of GetLegacyGuid
    mutable std::vector<std::wstring> calls;

    ScriptedService() { SetResourcesForTests(this); }
    ~ScriptedService() override { SetResourcesForTests(nullptr); }

    std::wstring GetString(const std::wstring& key,
                           Framework::Internal::StringKind kind) const override {
        calls.push_back(L"GetString " + key + L" " + std::to_wstring(kind));
        return text;
    }
    Framework::Resources::ResourceID GetIcon(const std::wstring& key) const override {
        calls.push_back(L"GetIcon " + key);
        Framework::Resources::ResourceID id;
        id.iconPath = L"icon:" + key;
        return id;
    }
    Framework::Resources::ResourceID GetCursor(const std::wstring& key) const override {
        calls.push_back(L"GetCursor " + key);
        return {};
    }
    std::wstring GetLegacyString(const std::wstring& key) const override {
        calls.push_back(L"GetLegacyString " + key);
        return text;
    }
    std::wstring GetLegacyStringHeaderFirst(const std::wstring& key) const override {
        calls.push_back(L"GetLegacyStringHeaderFirst " + key);
        return text;
    }
    std::wstring GetLegacyGuid(std::string_view component, int id) const override {
        calls.push_back(L"GetLegacyGuid " + std::wstring(component.begin(), component.end()) +
                        L" " + std::to_wstring(id));
        return guid;
    }
    void AddLegacyComponent(const wchar_t* component, HINSTANCE) const override {
        calls.push_back(L"AddLegacyComponent " + std::wstring(component ? component : L"(null)"));
    }
    void RemoveLegacyComponent(const wchar_t* component) const override {
        calls.push_back(L"RemoveLegacyComponent " +
                        std::wstring(component ? component : L"(null)"));
    }
    void AddLegacyResources(const wchar_t* component,
                            const Framework::Resources::RegistrarMapEntry*, int count,
                            Framework::Resources::ResourceType type) const override {
        calls.push_back(L"AddLegacyResources " + std::wstring(component ? component : L"(null)") +
                        L" " + std::to_wstring(count) + L" " + std::to_wstring(type));
    }
};

} // namespace QanTest
