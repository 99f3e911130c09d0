target_sources(QanResourcesObjects PRIVATE
    icons/CursorResourceCollection.cpp
    icons/CursorTable.cpp
    icons/IconMapLoader.cpp
    icons/IconPaths.cpp
    icons/IconResourceCollection.cpp
    icons/PathKind.cpp)
