target_sources(QanResourcesObjects PRIVATE
    strings/CsvKeyTable.cpp
    strings/DecodeStringText.cpp
    strings/FindInTable.cpp
    strings/HitMemo.cpp
    strings/MergeOverrides.cpp
    strings/StringResourceCollection.cpp
    strings/TableIndex.cpp
    strings/UnescapeControl.cpp
    strings/XmlEntities.cpp
    strings/XmlStringTable.cpp)
