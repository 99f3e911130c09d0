// The exported look-ups, registrations and setters of Framework::Resources. Each look-up
// asks the service in use at the moment of the call; none keeps state of its own.
#include <framework/Resources.h>

#include "base/Settings.h"
#include "platform/Path.h"
#include "platform/Platform.h"

namespace Framework {

using Internal::IResources;
using Internal::ProcessSettings;
using Internal::StringKind;

const QanStringT<wchar_t> Resources::PREFIX_EXTENSION = L"ext://";
const QanStringT<wchar_t> Resources::GUID_EXTENSION = L"guid://";

Resources& Resources::operator=(const Resources&) {
    return *this;
}
Resources& Resources::operator=(Resources&&) noexcept {
    return *this;
}

QanStringT<wchar_t> Resources::GetString(const QanStringT<wchar_t>& key) {
    return IResources::GetImpl().GetString(key, Internal::String);
}

QanStringT<wchar_t> Resources::GetCaption(const QanStringT<wchar_t>& key) {
    return IResources::GetImpl().GetString(key, Internal::Caption);
}

QanStringT<wchar_t> Resources::GetTooltipHeader(const QanStringT<wchar_t>& key) {
    return IResources::GetImpl().GetString(key, Internal::TooltipHeader);
}

QanStringT<wchar_t> Resources::GetTooltipBody(const QanStringT<wchar_t>& key) {
    return IResources::GetImpl().GetString(key, Internal::TooltipBody);
}

// Copies even an empty or missing text and answers with the size given, so a caller
// cannot tell a miss from a hit by the result. Kept as hosts rely on it.
int Resources::GetStringIntoBuffer(const QanStringT<wchar_t>& key, wchar_t* destination,
                                   int destinationSize) {
    const QanStringT<wchar_t> text = IResources::GetImpl().GetString(key, Internal::String);
    const int error = Platform::CurrentPlatform().CopyWide(
        destination, static_cast<std::int64_t>(destinationSize), text.c_str());
    return error == 0 ? destinationSize : 0;
}

Resources::ResourceID Resources::GetIcon(const QanStringT<wchar_t>& key) {
    return IResources::GetImpl().GetIcon(key);
}

Resources::ResourceID Resources::GetCursor(const QanStringT<wchar_t>& key) {
    return IResources::GetImpl().GetCursor(key);
}

QanStringT<wchar_t> Resources::GetLegacyString(const QanStringT<wchar_t>& key) {
    return IResources::GetImpl().GetLegacyString(key);
}

QanStringT<wchar_t> Resources::GetLegacyString(int id, QanStringViewT<char> component) {
    const IResources& service = IResources::GetImpl();
    return service.GetLegacyString(service.GetLegacyGuid(component, id));
}

// Unlike GetStringIntoBuffer: an empty text leaves the destination untouched and answers
// 0, and a copied text answers its length. Both behaviours are relied on by callers.
int Resources::GetLegacyStringIntoBuffer(const QanStringT<wchar_t>& key, wchar_t* destination,
                                         int destinationSize) {
    const QanStringT<wchar_t> text = IResources::GetImpl().GetLegacyString(key);
    if (text.empty())
        return 0;
    const int error = Platform::CurrentPlatform().CopyWide(
        destination, static_cast<std::int64_t>(destinationSize), text.c_str());
    return error == 0 ? static_cast<int>(text.size()) : 0;
}

QanStringT<wchar_t> Resources::GetLegacyGuid(QanStringViewT<char> component, int id) {
    return IResources::GetImpl().GetLegacyGuid(component, id);
}

void Resources::AddLegacyComponent(const wchar_t* component, HINSTANCE module) {
    IResources::GetImpl().AddLegacyComponent(component, module);
}

void Resources::RemoveLegacyComponent(const wchar_t* component) {
    IResources::GetImpl().RemoveLegacyComponent(component);
}

void Resources::AddLegacyResources(const wchar_t* component, const RegistrarMapEntry* entries,
                                   int count, ResourceType type) {
    IResources::GetImpl().AddLegacyResources(component, entries, count, type);
}

bool Resources::Preload() {
    // Its own once-guard: with a test service installed at the first call nothing is
    // built, and the guard still counts as passed.
    static const bool loaded = (IResources::GetImpl(), true);
    return loaded;
}

void Resources::SetAppName(const QanStringT<wchar_t>& name) {
    ProcessSettings().appName = name;
}

void Resources::SetResourceDirectories(const QanStringT<wchar_t>& masterStringDirectory,
                                       const QanStringT<wchar_t>& resourceDirectory,
                                       const QanStringT<wchar_t>& iconDirectory,
                                       const QanStringT<wchar_t>& baseDirectory,
                                       const QanStringT<wchar_t>& iconSubdirectory) {
    Internal::Settings& settings = ProcessSettings();
    settings.masterStringDirectory = masterStringDirectory;
    settings.resourceDirectory = resourceDirectory;
    settings.imagesDirectory = Path::Combine(baseDirectory, L"Images");
    settings.iconDirectory = iconDirectory;
    settings.cursorsDirectory = Path::Combine(baseDirectory, L"Cursors");
    settings.iconSubdirectory = iconSubdirectory;
}

void Resources::SetMasterStringDirectory(const QanStringT<wchar_t>& directory) {
    ProcessSettings().masterStringDirectory = directory;
}

} // namespace Framework
