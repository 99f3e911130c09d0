target_sources(QanResourcesObjects PRIVATE
    icons/CursorResourceCollection.cpp
    icons/IconPaths.cpp
    icons/IconResourceCollection.cpp)
