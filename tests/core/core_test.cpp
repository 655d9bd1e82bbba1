// carray's ownership rules and the version the library reports.
#include <gtest/gtest.h>

#include <string>

#include "facet/carray.h"
#include "facet/version.h"

namespace {

TEST(CArray, ResizeValueInitialisesAndOnlyOverwriteAtTheSameSizeKeepsStorage) {
    carray<std::string> a(2);
    a[0] = "kept";
    std::string* const storage = a.data();
    a.resize_for_overwrite(2);
    EXPECT_TRUE(a.data() == storage && a[0] == "kept");
    for (bool overwrite : {false, true}) {
        a.resize(2);
        a[1] = "dropped";
        overwrite ? a.resize_for_overwrite(3) : a.resize(3);
        EXPECT_EQ(a.size(), 3u);
        for (const std::string& s : a) EXPECT_TRUE(s.empty());
        overwrite ? a.resize_for_overwrite(0) : a.resize(0);
        EXPECT_TRUE(a.empty() && a.data() == nullptr);
    }
    carray<int> ints(4), copy(ints);
    copy[2] = 9;
    EXPECT_EQ(ints[2], 0);
    int* const ints_storage = ints.data();
    carray<int> moved(std::move(copy));
    moved.swap(ints);
    EXPECT_TRUE(moved.data() == ints_storage && ints[2] == 9 && copy.empty());  // NOLINT
    const carray<int>& c = moved;
    EXPECT_DEATH(static_cast<void>(c[4]), "carray\\.h:[0-9]+: precondition failed: index < m_size");
}

TEST(Version, MacrosAgreeWithTheStringAndTheLibrary) {
    EXPECT_EQ(std::to_string(FACET_VERSION_MAJOR) + "." + std::to_string(FACET_VERSION_MINOR) +
                  "." + std::to_string(FACET_VERSION_PATCH),
              FACET_VERSION_STRING);
    EXPECT_EQ(std::string(facet::version()), FACET_VERSION_STRING);
}

}  // namespace
