target_sources(QanResourcesObjects PRIVATE
    service/LegacyStringLoader.cpp
    service/Resources.cpp
    service/ResourcesImpl.cpp
    service/ServiceInstance.cpp
    service/Settings.cpp)
