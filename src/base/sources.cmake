target_sources(QanResourcesObjects PRIVATE
    base/Settings.cpp
    base/Unicode.cpp)
