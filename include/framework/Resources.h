// Resources.h: the resource look-ups, legacy registrations and settings of the library,
// and the abstract service that every look-up goes through.
#pragma once

#include <framework/Export.h>
#include <framework/Handle.h>
#include <framework/QanString.h>

#include <cstdint>
#include <map>

namespace Framework {

// Static functions only: a scope for the exported look-ups and setters.
class QANRESOURCES_API Resources {
public:
    Resources() = default;
    Resources(const Resources&) = default;
    Resources& operator=(const Resources&);
    Resources& operator=(Resources&&) noexcept;

    // The result of icon and cursor look-ups; a default value means "not found".
    struct ResourceID {
        HINSTANCE module = nullptr;
        int id = 0;
        QanStringT<wchar_t> pngPath;
        QanStringT<wchar_t> iconPath;
        QanStringT<wchar_t> containerPath;
        QanStringT<wchar_t> extraPath;
        std::map<int, std::intptr_t> extras;

        friend bool operator==(const ResourceID&, const ResourceID&) = default;
    };

    // One row of a legacy component's registrar table.
    struct RegistrarMapEntry {
        const wchar_t* key;
        int id;
        QanStringT<wchar_t> text;
    };

    // The registrar table a legacy registration goes to; other values select none.
    enum ResourceType : int { Icon = 0, Cursor = 1, String = 2 };

    static const QanStringT<wchar_t> PREFIX_EXTENSION; // "ext://"
    static const QanStringT<wchar_t> GUID_EXTENSION;   // "guid://"

    static QanStringT<wchar_t> GetString(const QanStringT<wchar_t>& key);
    static QanStringT<wchar_t> GetCaption(const QanStringT<wchar_t>& key);
    static QanStringT<wchar_t> GetTooltipHeader(const QanStringT<wchar_t>& key);
    static QanStringT<wchar_t> GetTooltipBody(const QanStringT<wchar_t>& key);
    static int GetStringIntoBuffer(const QanStringT<wchar_t>& key, wchar_t* destination,
                                   int destinationSize);

    static ResourceID GetIcon(const QanStringT<wchar_t>& key);
    static ResourceID GetCursor(const QanStringT<wchar_t>& key);
    static QanStringT<wchar_t> GetIconPath(const QanStringT<wchar_t>& key);
    static QanStringT<wchar_t> GetImagePath(const QanStringT<wchar_t>& key);

    static QanStringT<wchar_t> GetLegacyString(const QanStringT<wchar_t>& key);
    static QanStringT<wchar_t> GetLegacyString(int id, QanStringViewT<char> component);
    static int GetLegacyStringIntoBuffer(const QanStringT<wchar_t>& key, wchar_t* destination,
                                         int destinationSize);
    static QanStringT<wchar_t> GetLegacyGuid(QanStringViewT<char> component, int id);

    static void AddLegacyComponent(const wchar_t* component, HINSTANCE module);
    static void RemoveLegacyComponent(const wchar_t* component);
    static void AddLegacyResources(const wchar_t* component, const RegistrarMapEntry* entries,
                                   int count, ResourceType type);

    static bool Preload();
    static void SetAppName(const QanStringT<wchar_t>& name);
    static void SetResourceDirectories(const QanStringT<wchar_t>& masterStringDirectory,
                                       const QanStringT<wchar_t>& resourceDirectory,
                                       const QanStringT<wchar_t>& iconDirectory,
                                       const QanStringT<wchar_t>& baseDirectory,
                                       const QanStringT<wchar_t>& iconSubdirectory);
    static void SetMasterStringDirectory(const QanStringT<wchar_t>& directory);
};

namespace Internal {

// Which text of a string resource is wanted. Any 32-bit value may be cast to it; values
// above TooltipBody find nothing in the string tables.
enum StringKind : std::uint32_t { String = 0, Caption = 1, TooltipHeader = 2, TooltipBody = 3 };

// The service behind every look-up. Hosts' tests may derive from it and install their
// own object with SetResourcesForTests.
class QANRESOURCES_API IResources {
public:
    virtual ~IResources();

    virtual QanStringT<wchar_t> GetString(const QanStringT<wchar_t>& key,
                                          StringKind kind) const = 0;
    virtual Resources::ResourceID GetIcon(const QanStringT<wchar_t>& key) const = 0;
    virtual Resources::ResourceID GetCursor(const QanStringT<wchar_t>& key) const = 0;
    virtual QanStringT<wchar_t> GetLegacyString(const QanStringT<wchar_t>& key) const = 0;
    virtual QanStringT<wchar_t>
    GetLegacyStringHeaderFirst(const QanStringT<wchar_t>& key) const = 0;
    virtual QanStringT<wchar_t> GetLegacyGuid(QanStringViewT<char> component, int id) const = 0;
    virtual void AddLegacyComponent(const wchar_t* component, HINSTANCE module) const = 0;
    virtual void RemoveLegacyComponent(const wchar_t* component) const = 0;
    virtual void AddLegacyResources(const wchar_t* component,
                                    const Resources::RegistrarMapEntry* entries, int count,
                                    Resources::ResourceType type) const = 0;

    // The service in use: the one installed for tests, else the built-in one, built on
    // the first call (and again on the next call if building it threw).
    static const IResources& GetImpl();
    // Installs a borrowed service for tests; null returns to the built-in one.
    static void SetResourcesForTests(IResources* resources);
};

} // namespace Internal
} // namespace Framework
