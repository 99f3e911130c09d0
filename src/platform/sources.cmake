target_sources(QanResourcesObjects PRIVATE
    platform/Console.cpp
    platform/Platform.cpp
    platform/Path.cpp
    platform/PeResources.cpp)
if(WIN32)
    target_sources(QanResourcesObjects PRIVATE platform/WindowsPlatform.cpp
                                               platform/WindowsDurableWrite.cpp)
else()
    # Modules are PE files mapped read-only; the mapping code is POSIX-only.
    target_sources(QanResourcesObjects PRIVATE platform/PosixPlatform.cpp platform/MappedModule.cpp
                                               platform/PosixDurableWrite.cpp)
endif()
