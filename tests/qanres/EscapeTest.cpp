// EscapeTest.cpp: the tool's visible form of control characters.
#include "Escape.h"

#include <gtest/gtest.h>

TEST(EscapeControls, ShowsMarkersBreaksTabsAndBackslashesVisibly) {
    EXPECT_EQ(QanTool::EscapeControls("\x01"
                                      "CT=a\\b\nc\td\re\x7F"),
              "\\x01CT=a\\\\b\\nc\\td\\re\\x7F");
}

TEST(EscapeControls, LeavesMultiByteCharactersAlone) {
    EXPECT_EQ(QanTool::EscapeControls("Gr\xC3\xBC\xC3\x9F"
                                      "e"),
              "Gr\xC3\xBC\xC3\x9F"
              "e");
}
