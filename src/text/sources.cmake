target_sources(QanResourcesObjects PRIVATE
    text/Backslashes.cpp
    text/FindTaggedField.cpp
    text/StripMenuText.cpp
    text/TextParser.cpp
    text/Tokenize.cpp)
