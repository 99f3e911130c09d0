#include "service/ResourcesImpl.h"

#include "base/LoadRecord.h"
#include "base/Settings.h"
#include "icons/CursorResourceCollection.h"
#include "icons/IconResourceCollection.h"
#include "legacy/LegacyResourceCollection.h"
#include "legacy/LegacyStringLookup.h"
#include "platform/Path.h"
#include "platform/Platform.h"
#include "service/LegacyStringLoader.h"
#include "strings/StringResourceCollection.h"
#include "text/FindTaggedField.h"

#include <framework/TextParser.h>

namespace Framework::Internal {
namespace {

// Windows stock-icon identifiers (SHSTOCKICONID) of the four icons every host can ask for.
constexpr int kStockIconWarning = 78;
constexpr int kStockIconError = 80;
constexpr int kStockIconInfo = 79;
constexpr int kStockIconHelp = 23;

std::unique_ptr<IconResourceCollection> MakeIconCollection(const Settings& settings,
                                                           LoadRecorder& recorder) {
    auto icons = std::make_unique<IconResourceCollection>();
    FileRecord record;
    record.file = LoadReport::File::IconMap;
    const auto path = Path::Combine(settings.resourceDirectory, L"icons.map.xml");
    // Whether the map is read depends on the icon directory, while the map itself lives
    // in the resource directory. Intended: hosts without icons skip the parse.
    if (!settings.iconDirectory.empty()) {
        std::vector<IconMapEntry> entries;
        LoadIconMap(entries, path.c_str(), &record);
        icons->SetEntries(std::move(entries));
    } else {
        record.path = path;
        record.outcome = LoadReport::Outcome::Skipped;
        record.reason = L"no icon directory is set";
    }
    recorder.Add(std::move(record));
    return icons;
}

std::unique_ptr<CursorResourceCollection> MakeCursorCollection(LoadRecorder& recorder) {
    auto cursors = std::make_unique<CursorResourceCollection>();
    FileRecord record;
    record.file = LoadReport::File::IconLibrary;
    cursors->LoadFromModule(Platform::CurrentPlatform().LoadModule(L"QanIcons.dll"), &record);
    recorder.Add(std::move(record));
    return cursors;
}

std::unique_ptr<LegacyCollection> MakeLegacyCollection() {
    auto legacy = std::make_unique<LegacyResourceCollection>();
    legacy->AddStockIcon(kStockIconWarning, L"StockIcon::Warning");
    legacy->AddStockIcon(kStockIconError, L"StockIcon::Error");
    legacy->AddStockIcon(kStockIconInfo, L"StockIcon::Info");
    legacy->AddStockIcon(kStockIconHelp, L"StockIcon::Help");
    return legacy;
}

// The wanted field of a tagged text loaded from a legacy module. Kinds other than 1 to 3
// keep the whole text.
QanStringT<wchar_t> ExtractKind(const QanStringT<wchar_t>& text, StringKind kind) {
    QanStringT<wchar_t> field = text;
    switch (kind) {
    case Caption:
        TextParser::GetCaptionText(text.c_str(), field);
        break;
    case TooltipHeader:
        FindTaggedField(text, L"TH", field);
        break;
    case TooltipBody:
        TextParser::GetTipText(text.c_str(), field);
        break;
    default:
        break;
    }
    return field;
}

} // namespace

ResourcesImpl::ResourcesImpl() {
    const Settings& settings = ProcessSettings();
    recorder = std::make_unique<LoadRecorder>(settings);
    stringCollection = std::make_unique<StringResourceCollection>(recorder.get());
    auto icons = MakeIconCollection(settings, *recorder);
    ownIcons = icons.get();
    iconCollection = std::move(icons);
    platformIconCollection = LoadPlatformIconResourceCollection();
    auto cursors = MakeCursorCollection(*recorder);
    ownCursors = cursors.get();
    cursorCollection = std::move(cursors);
    legacyGuids = std::make_unique<LegacyGuidIndex>(BuildLegacyGuidIndex());
    legacyCollection = MakeLegacyCollection();
}

ResourcesImpl::ResourcesImpl(std::unique_ptr<StringCollection> strings,
                             std::unique_ptr<IdCollection> icons,
                             std::unique_ptr<IdCollection> platformIcons,
                             std::unique_ptr<IdCollection> cursors, LegacyGuidIndex guids,
                             std::unique_ptr<LegacyCollection> legacy)
    : stringCollection(std::move(strings)), iconCollection(std::move(icons)),
      platformIconCollection(std::move(platformIcons)), cursorCollection(std::move(cursors)),
      legacyGuids(std::make_unique<LegacyGuidIndex>(std::move(guids))),
      legacyCollection(std::move(legacy)) {}

ResourcesImpl::~ResourcesImpl() = default;

QanStringT<wchar_t> ResourcesImpl::GetString(const QanStringT<wchar_t>& key,
                                             StringKind kind) const {
    if (!stringCollection)
        return {};
    if (auto text = stringCollection->GetResource(key, kind))
        return std::move(*text);
    if (!legacyCollection)
        return {};
    const std::optional<Resources::ResourceID> entry =
        legacyCollection->GetResource(key, Resources::String);
    if (!entry)
        return {};
    QanStringT<wchar_t> text =
        LoadLegacyString(entry->module, static_cast<std::uint32_t>(entry->id));
    if (text.empty() || kind == String || kind > TooltipBody)
        return text;
    return ExtractKind(text, kind);
}

Resources::ResourceID ResourcesImpl::GetIcon(const QanStringT<wchar_t>& key) const {
    // One result object throughout, built in place in the caller's.
    Resources::ResourceID result;
    if (ownIcons) {
        if (ownIcons->Find(key, result))
            return result;
    } else if (iconCollection) {
        if (auto hit = iconCollection->GetResource(key)) {
            result = std::move(*hit);
            return result;
        }
    }
    // Always empty, asked all the same: the platform's own icons come through here.
    if (platformIconCollection)
        if (auto hit = platformIconCollection->GetResource(key)) {
            result = std::move(*hit);
            return result;
        }
    if (legacyCollection)
        if (auto hit = legacyCollection->GetResource(key, Resources::Icon))
            result = std::move(*hit);
    return result;
}

Resources::ResourceID ResourcesImpl::GetCursor(const QanStringT<wchar_t>& key) const {
    // One result object throughout, built in place in the caller's.
    Resources::ResourceID result;
    if (ownCursors) {
        if (ownCursors->Find(key, result))
            return result;
    } else if (cursorCollection) {
        if (auto hit = cursorCollection->GetResource(key)) {
            result = std::move(*hit);
            return result;
        }
    }
    if (legacyCollection)
        if (auto hit = legacyCollection->GetResource(key, Resources::Cursor))
            result = std::move(*hit);
    return result;
}

// The legacy look-ups compose texts through this service's own string look-up.
StringLookup ResourcesImpl::OwnStringLookup() const {
    return [this](const QanStringT<wchar_t>& key, StringKind kind) {
        return ResourcesImpl::GetString(key, kind);
    };
}

QanStringT<wchar_t> ResourcesImpl::GetLegacyString(const QanStringT<wchar_t>& key) const {
    return ComposeLegacyText(OwnStringLookup(), key, LegacyFieldOrder::BodyFirst);
}

QanStringT<wchar_t>
ResourcesImpl::GetLegacyStringHeaderFirst(const QanStringT<wchar_t>& key) const {
    return ComposeLegacyText(OwnStringLookup(), key, LegacyFieldOrder::HeaderFirst);
}

QanStringT<wchar_t> ResourcesImpl::GetLegacyGuid(QanStringViewT<char> component, int id) const {
    static const LegacyGuidIndex emptyIndex;
    return Internal::GetLegacyGuid(legacyGuids ? *legacyGuids : emptyIndex, OwnStringLookup(),
                                   component, id, ProcessSettings().appName);
}

void ResourcesImpl::AddLegacyComponent(const wchar_t* component, HINSTANCE module) const {
    if (legacyCollection)
        legacyCollection->AddComponent(component, module);
}

void ResourcesImpl::RemoveLegacyComponent(const wchar_t* component) const {
    if (legacyCollection)
        legacyCollection->RemoveComponent(component);
}

void ResourcesImpl::AddLegacyResources(const wchar_t* component,
                                       const Resources::RegistrarMapEntry* entries, int count,
                                       Resources::ResourceType type) const {
    if (legacyCollection)
        legacyCollection->AddResources(component, entries, count, type);
}

} // namespace Framework::Internal
