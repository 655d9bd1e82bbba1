#include <gtest/gtest.h>

#include <facet/math3d.h>

#include <limits>

namespace {

const vector3d a(0, 0, 0), b(1, 0, 0), c(0, 1, 0);

TEST(RayTriangle, HitsInFrontAndWritesTheParameter) {
    double t = -5;
    EXPECT_TRUE(ray_triangle_intersection({0.2, 0.2, 1}, {0, 0, -1}, a, b, c, &t));
    EXPECT_EQ(t, 1.0);
    EXPECT_TRUE(ray_triangle_intersection({0.2, 0.2, 1}, {0, 0, -4}, a, b, c, &t));
    EXPECT_EQ(t, 0.25);  // in multiples of the direction
    EXPECT_TRUE(ray_triangle_intersection({0.2, 0.2, -1}, {0, 0, 1}, a, c, b, &t));  // back side
}

TEST(RayTriangle, BehindTheOriginIsRejectedButStillWritten) {
    double t = 0;
    EXPECT_FALSE(ray_triangle_intersection({0.2, 0.2, 1}, {0, 0, 1}, a, b, c, &t));
    EXPECT_EQ(t, -1.0);
    t = 3;
    EXPECT_FALSE(ray_triangle_intersection({0.2, 0.2, 0}, {0, 0, 1}, a, b, c, &t));
    EXPECT_EQ(t, 0.0);  // a hit exactly at the origin
}

TEST(RayTriangle, MissesAndParallelRaysLeaveTheParameterAlone) {
    double t = 42;
    EXPECT_FALSE(ray_triangle_intersection({-0.5, 0.2, 1}, {1, 0, 0}, a, b, c, &t));  // in-plane
    EXPECT_FALSE(ray_triangle_intersection({0.2, 0.2, 0}, {1, 1, 0}, a, b, c, &t));   // parallel
    EXPECT_FALSE(ray_triangle_intersection({0.8, 0.8, 1}, {0, 0, -1}, a, b, c, &t));  // u + w > 1
    EXPECT_FALSE(ray_triangle_intersection({-0.1, 0.5, 1}, {0, 0, -1}, a, b, c, &t));
    EXPECT_FALSE(ray_triangle_intersection({0.5, -0.1, 1}, {0, 0, -1}, a, b, c, &t));
    EXPECT_EQ(t, 42.0);
}

TEST(RayTriangle, EdgesAndNaNs) {
    double t = 0;
    EXPECT_TRUE(ray_triangle_intersection({0.5, 0.5, 1}, {0, 0, -1}, a, b, c, &t));  // on the edge
    EXPECT_TRUE(ray_triangle_intersection({0, 0, 1}, {0, 0, -1}, a, b, c, &t));      // on a corner
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(ray_triangle_intersection({nan, 0.2, 1}, {0, 0, -1}, a, b, c, &t));
    EXPECT_FALSE(ray_triangle_intersection({0.2, 0.2, 1}, {0, 0, nan}, a, b, c, &t));
}

TEST(Colinear, AngleIsInRadiansAndReversalsCount) {
    EXPECT_TRUE(colinear({0, 0, 0}, {1, 0, 0}, {2, 0.01, 0}, 0.1));
    EXPECT_FALSE(colinear({0, 0, 0}, {1, 0, 0}, {2, 0.01, 0}, 0.001));
    EXPECT_TRUE(colinear({0, 0, 0}, {1, 0, 0}, {0.5, 0, 0}, 0.001));  // doubling back
    EXPECT_FALSE(colinear({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, 0.1));
    EXPECT_FALSE(colinear({0, 0, 0}, {1, 0, 0}, {2, 0, 0}, 0.0));  // |cos| > 1 is never true
}

using ColinearDeathTest = ::testing::Test;

TEST_F(ColinearDeathTest, CoincidentConsecutivePointsFailTheCheck) {
    EXPECT_DEATH(colinear({1, 2, 3}, {1, 2, 3}, {0, 0, 0}, 0.1), "p1 != p2");
    EXPECT_DEATH(colinear({0, 0, 0}, {1, 2, 3}, {1, 2, 3}, 0.1), "p2 != p3");
}

TEST(TangentBasis, UnitTriangleGivesTangentXAndBinormalMinusY) {
    vector3d tangent, binormal;
    ComputeTangentBasis({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0}, {1, 0}, {0, 1}, tangent, binormal);
    EXPECT_EQ(tangent, vector3d(1, 0, 0));
    EXPECT_EQ(binormal, vector3d(0, -1, 0));
}

TEST(TangentBasis, FollowsTextureDirectionsOnAScaledTriangle) {
    vector3d tangent, binormal;
    // s runs along +z, t along +x; the binormal points along decreasing t.
    ComputeTangentBasis({0, 0, 0}, {0, 0, 4}, {2, 0, 0}, {0, 0}, {1, 0}, {0, 1}, tangent, binormal);
    EXPECT_EQ(tangent, vector3d(0, 0, 1));
    EXPECT_EQ(binormal, vector3d(-1, 0, 0));
}

TEST(TangentBasis, DegenerateCoordinatesLeaveTheOutputsAlone) {
    vector3d tangent(7, 7, 7), binormal(8, 8, 8);
    ComputeTangentBasis({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.5, 0.5}, {0.5, 0.5}, {0.5, 0.5},
                        tangent, binormal);
    EXPECT_EQ(tangent, vector3d(7, 7, 7));
    EXPECT_EQ(binormal, vector3d(8, 8, 8));
}

TEST(TangentBasis, DegenerateTriangleGivesZeroVectors) {
    vector3d tangent(7, 7, 7), binormal(8, 8, 8);
    ComputeTangentBasis({1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {0, 0}, {1, 0}, {0, 1}, tangent, binormal);
    EXPECT_EQ(tangent, vector3d(0, 0, 0));
    EXPECT_EQ(binormal, vector3d(0, 0, 0));
}

}  // namespace
