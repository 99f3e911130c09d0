// -----------------------------------------------------------------------------
// File: Resources.h
// -----------------------------------------------------------------------------
//
// The resource look-ups, legacy registrations and settings of the library, and the
// abstract service that every look-up goes through.
//
// Order of use: the setters (and QanResources::InjectQanCtlDependency) first, on one
// thread, before the first look-up; optionally Preload(); then look-ups from any thread.
// The setters and the injected loader stay start-up only: they must not run beside
// look-ups or registrations. Legacy registration may run beside look-ups.
// No look-up throws on a miss: a missing text is empty, a missing icon or cursor is a
// default ResourceID.
//
// The service is built by the first call that needs it (a look-up that reaches it, a
// legacy registration, Preload; GetImagePath never does). Building it reads, once: the
// master string directory for startupstrings.xml and override/strings.xml; the resource
// directory for the four key tables and for icons.map.xml (read only when the icon
// directory is not empty); and the platform icon library QanIcons.dll with its cursor
// table. Read at every look-up instead: the icon directory and icon subdirectory (GetIcon,
// GetIconPath), the images directory (GetImagePath) and the application name (the legacy
// GUID look-ups). The master string directory is read once more, for strings.xml, at the
// first string look-up that finds its key in a key table but not its text among the
// start-up texts. So a setter called after the service is built moves icon locations,
// image paths and the preferred legacy components at once, moves strings.xml only while
// it is still unread, and changes no key table, start-up or override text, icon map entry
// or cursor.
#pragma once

#include <framework/Export.h>
#include <framework/Handle.h>
#include <framework/QanString.h>

#include <cstdint>
#include <map>

namespace Framework {

// Static functions only: a scope for the exported look-ups and setters. Keys are used as
// given (no case folding, no trimming); only GetIconPath and GetImagePath read prefixes.
class QANRESOURCES_API Resources {
public:
    Resources() = default;
    Resources(const Resources&) = default;
    Resources& operator=(const Resources&);
    Resources& operator=(Resources&&) noexcept;

    // The result of icon and cursor look-ups; a default value means "not found".
    struct ResourceID {
        // A resource inside a module: cursors of QanIcons.dll, legacy registrations and
        // stock icons. The caller loads the resource itself.
        HINSTANCE module = nullptr;
        int id = 0;
        // A single PNG image: the map entry "name.png.png" gives "name.png" under the
        // icon location (only the name when the location is a container file), or the
        // path of a legacy workspace icon.
        QanStringT<wchar_t> pngPath;
        // An icon folder path with a trailing separator, or the entry name inside
        // containerPath when the icon location is one file.
        QanStringT<wchar_t> iconPath;
        QanStringT<wchar_t> containerPath;
        // Kept for hosts; the library leaves both empty.
        QanStringT<wchar_t> extraPath;
        std::map<int, std::intptr_t> extras;

        friend bool operator==(const ResourceID&, const ResourceID&) = default;
    };

    // One row of a legacy component's registrar table: key names resource id of the
    // component's module. text is read only for workspace icons (component "wkspIcon",
    // id 0), where it is the icon's file path, returned as pngPath.
    struct RegistrarMapEntry {
        const wchar_t* key;
        int id;
        QanStringT<wchar_t> text;
    };

    // The registrar table a legacy registration goes to; other values select none.
    enum ResourceType : int { Icon = 0, Cursor = 1, String = 2 };

    // "ext://", the prefix of extension keys, which name files under the images directory.
    // Only GetImagePath wants it (GetIconPath answers empty for it); matched ignoring case.
    // Example: GetImagePath(PREFIX_EXTENSION + L"tools/pen.png")
    static const QanStringT<wchar_t> PREFIX_EXTENSION;
    // "guid://", the prefix of GUID keys. Only GetIconPath wants it; matched ignoring case.
    // Example: GetIconPath(GUID_EXTENSION + L"File.Open")
    static const QanStringT<wchar_t> GUID_EXTENSION;

    // The look-ups: from any thread, once configured. Each that needs the service asks
    // GetImpl() at every call, so a test service installed later is seen at once.

    // Returns the string of key: the string files through string.csv, else a legacy String
    // registration loaded through the injected loader; empty on a miss. Here and in the
    // next three, a key that its key table lists never falls back, even to an empty text.
    // Example: GetString(L"Daubery.AppTitle") == L"Daubery Paint"
    static QanStringT<wchar_t> GetString(const QanStringT<wchar_t>& key);
    // Returns the caption of key, through caption.csv; a legacy text gives its CT field
    // (TextParser::GetCaptionText). Empty on a miss.
    // Example: GetCaption(L"File.Open") == L"&Open..."
    static QanStringT<wchar_t> GetCaption(const QanStringT<wchar_t>& key);
    // Returns the tooltip header of key, through tooltipHeader.csv; a legacy text gives its
    // TH field. Empty on a miss.
    static QanStringT<wchar_t> GetTooltipHeader(const QanStringT<wchar_t>& key);
    // Returns the tooltip body of key, through tooltipBody.csv; a legacy text gives its
    // tip text (TextParser::GetTipText). Empty on a miss.
    static QanStringT<wchar_t> GetTooltipBody(const QanStringT<wchar_t>& key);
    // Copies GetString(key) into destination, destinationSize characters with the
    // terminator. Returns destinationSize when it fits, also for a miss (which writes an
    // empty string); 0 when it does not fit (destination emptied), for a null destination
    // or for a size of 0 or less. On Windows a failed copy also goes through the C
    // runtime's invalid-parameter handling, which the host controls.
    static int GetStringIntoBuffer(const QanStringT<wchar_t>& key, wchar_t* destination,
                                   int destinationSize);

    // Returns the icon of key: the icon map, resolved against the icon directory and
    // subdirectory as they stand at this call, else the legacy Icon registrations and the
    // stock icons "StockIcon::Warning", "::Error", "::Info", "::Help" (Windows only).
    // A default ResourceID on a miss. Whether a location is a file or a folder is asked of
    // the file system once per path and remembered for the life of the process.
    static ResourceID GetIcon(const QanStringT<wchar_t>& key);
    // Returns the cursor of key: module and id in QanIcons.dll, whose cursor table was read
    // when the service was built, else the legacy Cursor registrations. A default
    // ResourceID on a miss.
    static ResourceID GetCursor(const QanStringT<wchar_t>& key);
    // For a "guid://" key, returns GetIcon(rest of the key).iconPath; empty for every other
    // key ("ext://" and ".ico" names included), for a miss and for a ".png.png" entry.
    // Example: GetIconPath(L"guid://File.Open") == GetIcon(L"File.Open").iconPath
    static QanStringT<wchar_t> GetIconPath(const QanStringT<wchar_t>& key);
    // For an "ext://" key, returns the images directory joined with the rest of the key as
    // it stands, whether or not the file exists; empty for every other key. Reads the
    // setting at each call and never builds the service.
    // Example: GetImagePath(L"ext://tools/pen.png") == <base>/Images/tools/pen.png
    static QanStringT<wchar_t> GetImagePath(const QanStringT<wchar_t>& key);

    // Returns the text of key as legacy components expect it: its string if not empty,
    // else its caption, tooltip body and tooltip header packed as one tagged text (empty
    // fields left out, doubled backslashes collapsed). Empty on a miss or an empty key.
    // Example: GetLegacyString(L"File.Open") == L"\u0001CT=&Open...\u0001TT=Opens a file"
    static QanStringT<wchar_t> GetLegacyString(const QanStringT<wchar_t>& key);
    // Returns GetLegacyString(GetLegacyGuid(component, id)): the text of an old
    // (component, id) reference. Empty on a miss.
    static QanStringT<wchar_t> GetLegacyString(int id, QanStringViewT<char> component);
    // Copies GetLegacyString(key) into destination. Returns the text's length without the
    // terminator when it fits; 0 for an empty text or a miss, with destination untouched;
    // 0 when it does not fit (destination emptied), for a null destination or for a size
    // of 0 or less. Failed copies on Windows as for GetStringIntoBuffer.
    static int GetLegacyStringIntoBuffer(const QanStringT<wchar_t>& key, wchar_t* destination,
                                         int destinationSize);
    // Returns the GUID key that now holds the old string (component, id) of the compiled-in
    // table: the pair's own row, even when it has no key (then empty); else the first
    // component by name with that id whose key has a text, the application's own
    // components (SetAppName, read at each call) first. Empty on a miss.
    // Example: GetLegacyGuid("Nimbus", 12) == L"3bed5e64-c71c-d221-7fcd-c71532d2c812"
    static QanStringT<wchar_t> GetLegacyGuid(QanStringViewT<char> component, int id);

    // Legacy registration: old components name their module and map keys to its resource
    // ids; the look-ups above fall back to these tables. Registration may run while other
    // threads look up, as when a plug-in loads late: each look-up sees the tables and
    // modules as they were before or after any one registration, never part of one, and
    // registrations from several threads take turns. A call that makes several look-ups,
    // such as GetLegacyString, may see a registration land between two of them. A look-up
    // that overlaps RemoveLegacyComponent may still answer with the removed module: free a
    // module only once no look-up can still be using its answer.

    // Records module as the module of component, replacing an earlier one; its entries
    // answer with this handle from then on. The library never frees it.
    static void AddLegacyComponent(const wchar_t* component, HINSTANCE module);
    // Forgets the module of component. Its entries stay registered and answer with a null
    // module; freeing the module is the caller's.
    static void RemoveLegacyComponent(const wchar_t* component);
    // Adds count entries of component to the table of type (other values add nothing).
    // A key registered twice answers with one of its entries; no check is made.
    // Example: AddLegacyResources(L"Nimbus", entries, 2, Resources::String)
    static void AddLegacyResources(const wchar_t* component, const RegistrarMapEntry* entries,
                                   int count, ResourceType type);

    // Builds the service now, at a moment of the host's choosing, once per process; always
    // true. With a test service installed at its first call it builds nothing, and later
    // calls build nothing either. Call after the setters.
    static bool Preload();

    // The setters below are configuration: call them before the first look-up, on one
    // thread; they write unlocked process-wide settings and never build the service.

    // Names the running application (compared ignoring ASCII case): the legacy GUID
    // look-ups prefer the components it ships. Read at every legacy GUID look-up.
    static void SetAppName(const QanStringT<wchar_t>& name);
    // Sets the master string directory (string text files), the resource directory (key
    // tables, icon map), the icon directory, the base directory (only its "Images" and
    // "Cursors" sub-folders are kept) and the icon subdirectory (under the icon directory).
    // After the service is built only the icon directory and subdirectory (for icon
    // locations; the icon map is not read then) and the images directory take effect, and
    // the master string directory only for a strings.xml still unread.
    // Example: SetResourceDirectories(L"/opt/app/strings/en", L"/opt/app/res",
    //                                 L"/opt/app/icons", L"/opt/app", L"32")
    static void SetResourceDirectories(const QanStringT<wchar_t>& masterStringDirectory,
                                       const QanStringT<wchar_t>& resourceDirectory,
                                       const QanStringT<wchar_t>& iconDirectory,
                                       const QanStringT<wchar_t>& baseDirectory,
                                       const QanStringT<wchar_t>& iconSubdirectory);
    // Replaces only the master string directory. After the service is built it moves only
    // strings.xml, and only while that file is still unread.
    static void SetMasterStringDirectory(const QanStringT<wchar_t>& directory);
};

namespace Internal {

// Which text of a string resource is wanted. Any 32-bit value may be cast to it; values
// above TooltipBody find nothing in the string tables.
enum StringKind : std::uint32_t { String = 0, Caption = 1, TooltipHeader = 2, TooltipBody = 3 };

// The service behind every look-up. Hosts' tests may derive from it, override all nine
// operations and install their object with SetResourcesForTests. What each operation of
// the built-in service answers is said at the Resources function that forwards to it.
class QANRESOURCES_API IResources {
public:
    virtual ~IResources();

    // Returns the text of key in kind: the string files through the kind's key table, else
    // a legacy String registration, loaded by the injected loader and cut to the kind's
    // field (other kinds keep the whole text). Empty on a miss.
    virtual QanStringT<wchar_t> GetString(const QanStringT<wchar_t>& key,
                                          StringKind kind) const = 0;
    // Returns the icon map's entry, else the platform's icons (none so far), else a legacy
    // Icon registration; default on a miss.
    virtual Resources::ResourceID GetIcon(const QanStringT<wchar_t>& key) const = 0;
    // Returns the QanIcons.dll cursor, else a legacy Cursor registration; default on a miss.
    virtual Resources::ResourceID GetCursor(const QanStringT<wchar_t>& key) const = 0;
    // Returns the composed legacy text of key (see Resources::GetLegacyString).
    virtual QanStringT<wchar_t> GetLegacyString(const QanStringT<wchar_t>& key) const = 0;
    // As GetLegacyString, with the tooltip header field before the tooltip body. No
    // Resources function reaches it.
    virtual QanStringT<wchar_t>
    GetLegacyStringHeaderFirst(const QanStringT<wchar_t>& key) const = 0;
    // Returns the GUID key of an old (component, id) string (see Resources::GetLegacyGuid).
    virtual QanStringT<wchar_t> GetLegacyGuid(QanStringViewT<char> component, int id) const = 0;
    // The legacy registrations, as the Resources functions of the same names.
    virtual void AddLegacyComponent(const wchar_t* component, HINSTANCE module) const = 0;
    virtual void RemoveLegacyComponent(const wchar_t* component) const = 0;
    virtual void AddLegacyResources(const wchar_t* component,
                                    const Resources::RegistrarMapEntry* entries, int count,
                                    Resources::ResourceType type) const = 0;

    // Returns the service in use: the one installed for tests, else the built-in one, built
    // on the first call (concurrent first callers wait). A build that throws passes the
    // exception to the caller and is tried again by the next call. Any thread.
    static const IResources& GetImpl();
    // Installs resources, borrowed: the library never deletes it, so it must outlive its
    // use. Null returns to the built-in service (built then if it never was). Builds and
    // destroys nothing. Configuration, like the setters: not safe beside look-ups.
    static void SetResourcesForTests(IResources* resources);
};

} // namespace Internal
} // namespace Framework
