target_sources(QanResourcesObjects PRIVATE
    service/IconPaths.cpp
    service/LoadReport.cpp
    service/LegacyStringLoader.cpp
    service/Resources.cpp
    service/ResourcesImpl.cpp
    service/ServiceInstance.cpp)
