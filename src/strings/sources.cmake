target_sources(QanResourcesObjects PRIVATE
    strings/StringResourceCollection.cpp)
