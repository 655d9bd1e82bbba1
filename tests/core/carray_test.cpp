#include <gtest/gtest.h>

#include <facet/carray.h>

#include <string>

namespace {

TEST(CArray, StartsEmptyAndResizeValueInitialises) {
    carray<int> a;
    EXPECT_EQ(a.size(), 0u);
    EXPECT_TRUE(a.empty());
    a.resize(4);
    ASSERT_EQ(a.size(), 4u);
    for (int v : a) EXPECT_EQ(v, 0);
}

TEST(CArray, ResizeDiscardsTheOldContents) {
    carray<std::string> a(2);
    a[0] = "kept?";
    a[1] = "no";
    a.resize(3);
    ASSERT_EQ(a.size(), 3u);
    for (const std::string& s : a) EXPECT_TRUE(s.empty());
    a.resize(0);
    EXPECT_EQ(a.size(), 0u);
    EXPECT_EQ(a.data(), nullptr);
}

TEST(CArray, ResizeForOverwriteKeepsStorageOnlyAtTheSameSize) {
    carray<std::string> a(2);
    a[0] = "kept";
    std::string* const storage = a.data();
    a.resize_for_overwrite(2);
    EXPECT_EQ(a.data(), storage);
    EXPECT_EQ(a[0], "kept");
    a.resize_for_overwrite(3);
    ASSERT_EQ(a.size(), 3u);
    for (const std::string& s : a) EXPECT_TRUE(s.empty());
    a.resize_for_overwrite(0);
    EXPECT_EQ(a.size(), 0u);
    EXPECT_EQ(a.data(), nullptr);
}

TEST(CArray, SwapExchangesStorageWithoutCopying) {
    carray<int> a(2), b(5);
    a[0] = 7;
    int* const a_storage = a.data();
    int* const b_storage = b.data();
    a.swap(b);
    EXPECT_EQ(a.size(), 5u);
    EXPECT_EQ(b.size(), 2u);
    EXPECT_EQ(a.data(), b_storage);
    EXPECT_EQ(b.data(), a_storage);
    EXPECT_EQ(b[0], 7);
}

TEST(CArray, CopyIsDeepAndMoveLeavesTheSourceEmpty) {
    carray<int> a(3);
    a[2] = 9;
    carray<int> copy(a);
    copy[2] = 1;
    EXPECT_EQ(a[2], 9);
    carray<int> moved(std::move(a));
    EXPECT_EQ(moved[2], 9);
    EXPECT_EQ(a.size(), 0u);  // NOLINT(bugprone-use-after-move): moved-from state is documented
    copy = moved;
    EXPECT_EQ(copy[2], 9);
}

using CArrayDeathTest = ::testing::Test;

TEST_F(CArrayDeathTest, OutOfRangeAccessAbortsWithTheCheckedExpression) {
    carray<int> a(3);
    const carray<int>& ca = a;
    EXPECT_DEATH(a[3], "index < m_size");
    EXPECT_DEATH(static_cast<void>(ca[3]), "index < m_size");
    carray<int> empty;
    EXPECT_DEATH(empty[0], "index < m_size");
}

TEST_F(CArrayDeathTest, TheCheckReportsFileAndLine) {
    carray<int> a;
    EXPECT_DEATH(a[0], "carray\\.h:[0-9]+: precondition failed: index < m_size");
}

}  // namespace
