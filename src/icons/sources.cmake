target_sources(QanResourcesObjects PRIVATE
    icons/CursorResourceCollection.cpp
    icons/CursorTable.cpp
    icons/IconMapLoader.cpp
    icons/IconResourceCollection.cpp
    icons/PathKind.cpp)
