// ScriptedService.h: an IResources such as a host's tests write: fixed answers and a log
// of every call, installed with SetResourcesForTests for its lifetime.
#pragma once

#include <framework/Resources.h>

#include <string>
#include <vector>

namespace QanTest {

class ScriptedService final : public Framework::Internal::IResources {
public:
    using ResourceID = Framework::Resources::ResourceID;
    std::wstring text; // answer of the string look-ups
    std::wstring guid; // answer of GetLegacyGuid
    mutable std::vector<std::wstring> calls;

    ScriptedService() { SetResourcesForTests(this); }
    ~ScriptedService() override { SetResourcesForTests(nullptr); }

    std::wstring GetString(const std::wstring& key,
                           Framework::Internal::StringKind kind) const override {
        return Log(L"GetString " + key + L" " + std::to_wstring(kind), text);
    }
    ResourceID GetIcon(const std::wstring& key) const override {
        return Log(L"GetIcon " + key, ResourceID{});
    }
    ResourceID GetCursor(const std::wstring& key) const override {
        return Log(L"GetCursor " + key, ResourceID{});
    }
    std::wstring GetLegacyString(const std::wstring& key) const override {
        return Log(L"GetLegacyString " + key, text);
    }
    std::wstring GetLegacyStringHeaderFirst(const std::wstring& key) const override {
        return Log(L"HeaderFirst " + key, text);
    }
    std::wstring GetLegacyGuid(std::string_view component, int id) const override {
        const std::wstring name(component.begin(), component.end());
        return Log(L"GetLegacyGuid " + name + L" " + std::to_wstring(id), guid);
    }
    void AddLegacyComponent(const wchar_t* component, HINSTANCE) const override {
        Log(L"AddLegacyComponent " + Name(component), 0);
    }
    void RemoveLegacyComponent(const wchar_t* component) const override {
        Log(L"RemoveLegacyComponent " + Name(component), 0);
    }
    void AddLegacyResources(const wchar_t* component,
                            const Framework::Resources::RegistrarMapEntry*, int count,
                            Framework::Resources::ResourceType type) const override {
        Log(L"AddLegacyResources " + Name(component) + L" " + std::to_wstring(count) + L" " +
                std::to_wstring(type),
            0);
    }

private:
    static std::wstring Name(const wchar_t* text) { return text ? text : L"(null)"; }
    template <class T>
    T Log(std::wstring call, T answer) const {
        calls.push_back(std::move(call));
        return answer;
    }
};

} // namespace QanTest
