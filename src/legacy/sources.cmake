target_sources(QanResourcesObjects PRIVATE
    legacy/LegacyGuidIndex.cpp
    legacy/LegacyResourceCollection.cpp
    legacy/LegacyStringLookup.cpp)
