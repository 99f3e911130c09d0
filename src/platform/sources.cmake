target_sources(QanResourcesObjects PRIVATE
    platform/Platform.cpp
    platform/Path.cpp
    platform/Utf8.cpp
    platform/MappedModule.cpp)
if(WIN32)
    target_sources(QanResourcesObjects PRIVATE platform/WindowsPlatform.cpp)
else()
    target_sources(QanResourcesObjects PRIVATE platform/PosixPlatform.cpp)
endif()
