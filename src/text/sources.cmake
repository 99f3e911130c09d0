target_sources(QanResourcesObjects PRIVATE
    text/StripMenuText.cpp
    text/TextParser.cpp)
