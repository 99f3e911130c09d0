// ResourcesImpl.h: the built-in service. Owns one collection per source of resources and
// holds the fallback order between them.
#pragma once

#include "base/Collections.h"
#include "legacy/LegacyGuidIndex.h"
#include "legacy/LegacyStringLookup.h"

#include <memory>

namespace Framework::Internal {

class CursorResourceCollection;
class IconResourceCollection;
class LoadRecorder;

class ResourcesImpl final : public IResources {
public:
    // Builds every collection from the settings as they stand, in a fixed order.
    ResourcesImpl();
    // For tests: a service over given collections (any may be null).
    ResourcesImpl(std::unique_ptr<StringCollection> strings, std::unique_ptr<IdCollection> icons,
                  std::unique_ptr<IdCollection> platformIcons,
                  std::unique_ptr<IdCollection> cursors, LegacyGuidIndex guids,
                  std::unique_ptr<LegacyCollection> legacy);
    ~ResourcesImpl() override;

    QanStringT<wchar_t> GetString(const QanStringT<wchar_t>& key, StringKind kind) const override;
    Resources::ResourceID GetIcon(const QanStringT<wchar_t>& key) const override;
    Resources::ResourceID GetCursor(const QanStringT<wchar_t>& key) const override;
    QanStringT<wchar_t> GetLegacyString(const QanStringT<wchar_t>& key) const override;
    QanStringT<wchar_t> GetLegacyStringHeaderFirst(const QanStringT<wchar_t>& key) const override;
    QanStringT<wchar_t> GetLegacyGuid(QanStringViewT<char> component, int id) const override;
    void AddLegacyComponent(const wchar_t* component, HINSTANCE module) const override;
    void RemoveLegacyComponent(const wchar_t* component) const override;
    void AddLegacyResources(const wchar_t* component, const Resources::RegistrarMapEntry* entries,
                            int count, Resources::ResourceType type) const override;

    // What the service read, for the load report; null for a service over given
    // collections.
    const LoadRecorder* Recorder() const { return recorder.get(); }

private:
    StringLookup OwnStringLookup() const;

    // Declaration order is construction order; destruction runs the other way. The
    // recorder comes first: the string collection records into it until destroyed.
    std::unique_ptr<LoadRecorder> recorder;
    std::unique_ptr<StringCollection> stringCollection;
    std::unique_ptr<IdCollection> iconCollection;
    // iconCollection when it is the library's own, asked without an optional in between.
    const IconResourceCollection* ownIcons = nullptr;
    std::unique_ptr<IdCollection> platformIconCollection;
    std::unique_ptr<IdCollection> cursorCollection;
    // cursorCollection when it is the library's own, asked without an optional in between.
    const CursorResourceCollection* ownCursors = nullptr;
    std::unique_ptr<LegacyGuidIndex> legacyGuids;
    std::unique_ptr<LegacyCollection> legacyCollection;
};

// The built-in service once it is built (null before), and whether a test service is
// installed; neither builds anything. For the load report.
const ResourcesImpl* BuiltService();
bool TestServiceInstalled();

} // namespace Framework::Internal
