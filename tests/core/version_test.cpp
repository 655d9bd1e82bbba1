// The version macros agree with each other and with the library the test runs with.
#include <gtest/gtest.h>

#include <string>

#include "facet/version.h"

TEST(Version, MacrosAgreeWithTheStringAndTheLibrary) {
    const std::string expected = std::to_string(FACET_VERSION_MAJOR) + "." +
                                 std::to_string(FACET_VERSION_MINOR) + "." +
                                 std::to_string(FACET_VERSION_PATCH);
    EXPECT_EQ(expected, FACET_VERSION_STRING);
    EXPECT_EQ(FACET_VERSION_MAJOR * 10000 + FACET_VERSION_MINOR * 100 + FACET_VERSION_PATCH,
              FACET_VERSION);
    ASSERT_NE(facet::version(), nullptr);
    EXPECT_EQ(std::string(facet::version()), FACET_VERSION_STRING);
}
