// EscapeTest.cpp: the tool's visible form of control characters; other characters, UTF-8
// sequences among them, pass unchanged.
#include "Escape.h"

#include <gtest/gtest.h>

TEST(EscapeControls, ShowsMarkersBreaksTabsAndBackslashesVisibly) {
    EXPECT_EQ(QanTool::EscapeControls("\x01"
                                      "CT=a\\b\nc\td\re\x7F Gr\xC3\xBC\xC3\x9F"
                                      "e"),
              "\\x01CT=a\\\\b\\nc\\td\\re\\x7F Gr\xC3\xBC\xC3\x9F"
              "e");
}
