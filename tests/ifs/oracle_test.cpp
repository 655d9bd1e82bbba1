// The flat (CSR) per-vertex lists of construct_halfedge_data and smooth_mesh against
// straightforward list-based versions, on random meshes with shared, non-manifold, duplicated,
// flipped and degenerate faces. Results must agree bit for bit.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <list>
#include <random>
#include <vector>

#include "facet/ifs.h"
#include "facet/math3d.h"

namespace {

// One list per vertex of the half-edges ending there, filled while the half-edges are created.
void oracle_construct_halfedge_data(indexedfaceset& fs) {
    std::vector<std::list<halfedge*>> incoming(fs.num_vertices());
    carray<halfedge>& edges = fs.edges();
    edges.resize(3 * fs.num_faces());
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        face& f = fs.faces()[i];
        const std::uint32_t a = f.vertex[0], b = f.vertex[1], c = f.vertex[2];
        halfedge* e0 = &edges[3 * i];
        halfedge* e1 = &edges[3 * i + 1];
        halfedge* e2 = &edges[3 * i + 2];
        *e0 = halfedge(a, &f);
        *e1 = halfedge(b, &f);
        *e2 = halfedge(c, &f);
        e0->next = e1;
        e0->prev = e2;
        incoming.at(b).push_back(e0);
        e1->next = e2;
        e1->prev = e0;
        incoming.at(c).push_back(e1);
        e2->next = e0;
        e2->prev = e1;
        incoming.at(a).push_back(e2);
    }
    for (std::uint32_t v = 0; v < fs.num_vertices(); ++v)
        for (halfedge* h : incoming[v]) {
            if (h->m_twinedge != nullptr) continue;
            for (halfedge* g : incoming[h->vertex])
                if (g->vertex == v) {
                    if (g->m_twinedge == nullptr) g->set_twin(h);
                    break;
                }
        }
}

struct smoothed {
    std::vector<vector3d> normals, tangents, bitangents;
};

// Corner normals and frames as smooth_mesh defines them, with std::list per vertex.
smoothed oracle_smooth_mesh(const indexedfaceset& fs, double angle) {
    const double threshold = std::cos(angle * geometry::pi / 180.0);
    std::vector<std::list<const halfedge*>> incoming(fs.num_vertices());
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        incoming.at(f.vertex[1]).push_back(&fs.get_edge(3 * i));
        incoming.at(f.vertex[2]).push_back(&fs.get_edge(3 * i + 1));
        incoming.at(f.vertex[0]).push_back(&fs.get_edge(3 * i + 2));
    }
    smoothed out;
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        for (int k = 0; k < 3; ++k) {
            vector3d sum = f.normal, t = f.tangent, b = f.bitangent;
            std::list<vector3d> seen{f.normal};
            for (const halfedge* h : incoming[f.vertex[k]]) {
                const vector3d m = h->face->normal;
                bool known = false;
                for (const vector3d& s : seen)
                    known = known || (s.x == m.x && s.y == m.y && s.z == m.z);
                if (known) continue;
                if (dot(m, f.normal) > threshold) {
                    seen.push_back(m);
                    sum += m;
                }
            }
            sum.normalize();
            double c = dot(sum, f.normal);
            c = c > 1.0 ? 1.0 : (c < -1.0 ? -1.0 : c);
            const double phi = std::acos(c) * 180.0 / geometry::pi;
            if (std::fabs(phi) >= 0.1 && sum.length() > 0.1) {
                const vector3d axis = cross(f.normal, sum);
                matrix44d r;
                make_rotation_matrix(r, phi, axis.x, axis.y, axis.z);
                t = transform_vector(r, f.tangent);
                t.normalize();
                b = transform_vector(r, f.bitangent);
                b.normalize();
            }
            out.normals.push_back(sum);
            out.tangents.push_back(t);
            out.bitangents.push_back(b);
        }
    }
    return out;
}

// Vertices on a coarse integer grid (so many faces share exactly equal normals), faces drawn
// from a small pool of vertices (so edges are shared by several faces), some faces duplicated
// or flipped, some degenerate (a repeated vertex).
void random_mesh(indexedfaceset& fs, std::uint32_t seed) {
    std::mt19937 rng(seed);
    const std::uint32_t nv = 6 + rng() % 30;
    const std::uint32_t nf = 1 + rng() % 120;
    fs.vertices().resize(nv);
    for (vector3d& v : fs.vertices()) v = vector3d(rng() % 3, rng() % 3, rng() % 3);
    fs.faces().resize(nf);
    for (std::uint32_t i = 0; i < nf; ++i) {
        face f(rng() % nv, rng() % nv, rng() % nv);
        if (i > 0 && rng() % 6 == 0) {
            f = fs.faces()[rng() % i];
            if (rng() % 2) std::swap(f.vertex[1], f.vertex[2]);
        }
        f.style = 0;
        fs.faces()[i] = f;
    }
    fs.styles().resize(1);
    fs.compute_normals();
    fs.gen_texcoords_box();
    fs.compute_tangent_space();
}

std::ptrdiff_t index_of(const halfedge* h, const indexedfaceset& fs) {
    return h == nullptr ? -1 : h - fs.edges().data();
}

bool same_bits(const vector3d& a, const vector3d& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace

TEST(FlatListsAgainstLists, HalfEdgesAndSharpMarks) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        indexedfaceset fast, slow;
        random_mesh(fast, seed);
        random_mesh(slow, seed);
        fast.construct_halfedge_data();
        oracle_construct_halfedge_data(slow);
        fast.determine_sharp_edges(30.0);
        slow.determine_sharp_edges(30.0);
        ASSERT_EQ(fast.num_edges(), slow.num_edges());
        for (std::uint32_t e = 0; e < fast.num_edges(); ++e) {
            const halfedge& a = fast.get_edge(e);
            const halfedge& b = slow.get_edge(e);
            ASSERT_EQ(index_of(a.m_twinedge, fast), index_of(b.m_twinedge, slow))
                << "seed " << seed << ", half-edge " << e;
            ASSERT_EQ(index_of(a.next, fast), index_of(b.next, slow));
            ASSERT_EQ(index_of(a.prev, fast), index_of(b.prev, slow));
            ASSERT_EQ(a.face - fast.faces().data(), b.face - slow.faces().data());
            ASSERT_EQ(a.vertex, b.vertex);
            ASSERT_EQ(a.flags, b.flags) << "seed " << seed << ", half-edge " << e;
        }
    }
}

TEST(FlatListsAgainstLists, SmoothedNormalsAndFrames) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        indexedfaceset fs;
        random_mesh(fs, seed);
        fs.construct_halfedge_data();
        for (double angle : {10.0, 45.0, 80.0, 135.0, 180.0}) {
            const smoothed expected = oracle_smooth_mesh(fs, angle);
            fs.smooth_mesh(angle);
            for (std::uint32_t c = 0; c < 3 * fs.num_faces(); ++c) {
                ASSERT_TRUE(same_bits(fs.get_normal(c), expected.normals[c]))
                    << "seed " << seed << ", angle " << angle << ", corner " << c;
                ASSERT_TRUE(same_bits(fs.get_tangent(c), expected.tangents[c]));
                ASSERT_TRUE(same_bits(fs.get_bitangent(c), expected.bitangents[c]));
            }
        }
    }
}

// Fans around vertex 0 of 15 to 18 and 60 faces, long enough to take the hashed search of
// distinct normals, with face normals drawn from a pool where +0 and −0 components must count
// as equal and a NaN as equal to nothing, and a few frames that are not finite.
TEST(FlatListsAgainstLists, SmoothedFanCentresWithSignedZerosAndNaN) {
    const double nan = std::nan("");
    const vector3d pool[] = {{0, 1, 0},        {-0.0, 1, -0.0}, {0, 1, -0.0},  {0.6, 0.8, 0},
                             {-0.0, 0.8, 0.6}, {nan, 1, 0},     {0.8, 0.6, 0}, {0, 0.6, -0.8}};
    std::mt19937 rng(7);
    for (std::uint32_t n : {15u, 16u, 17u, 18u, 60u}) {
        indexedfaceset fs;
        fs.vertices().resize(n + 2);
        for (std::uint32_t j = 0; j <= n; ++j)
            fs.vertices()[j + 1] = vector3d(std::cos(0.1 * j), 0.01 * (j % 3), std::sin(0.1 * j));
        fs.faces().resize(n);
        for (std::uint32_t j = 0; j < n; ++j) {
            fs.faces()[j] = face(0, j + 2, j + 1);
            fs.faces()[j].style = 0;
        }
        fs.styles().resize(1);
        fs.compute_normals();
        fs.gen_texcoords_box();
        fs.compute_tangent_space();
        fs.construct_halfedge_data();
        for (face& f : fs.faces()) f.normal = pool[rng() % 8];
        // Frames that are not finite turn into what the rotation matrix makes of them.
        fs.faces()[3].tangent = vector3d(HUGE_VAL, 0, 0);
        fs.faces()[5].bitangent = vector3d(0, nan, 1);
        for (double angle : {10.0, 45.0, 135.0}) {
            const smoothed expected = oracle_smooth_mesh(fs, angle);
            fs.smooth_mesh(angle);
            for (std::uint32_t c = 0; c < 3 * fs.num_faces(); ++c) {
                ASSERT_TRUE(same_bits(fs.get_normal(c), expected.normals[c]))
                    << "fan " << n << ", angle " << angle << ", corner " << c;
                ASSERT_TRUE(same_bits(fs.get_tangent(c), expected.tangents[c]));
                ASSERT_TRUE(same_bits(fs.get_bitangent(c), expected.bitangents[c]));
            }
        }
    }
}

// smooth_mesh reads the normals around a vertex through the half-edges' face pointers, wherever
// they point.
TEST(FlatListsAgainstLists, SmoothingFollowsTheHalfEdgesFacePointers) {
    for (std::uint32_t seed = 1; seed <= 40; ++seed) {
        indexedfaceset fs;
        random_mesh(fs, seed);
        fs.construct_halfedge_data();
        std::mt19937 rng(seed);
        for (halfedge& e : fs.edges())
            if (rng() % 3 == 0) e.face = &fs.faces()[rng() % fs.num_faces()];
        const smoothed expected = oracle_smooth_mesh(fs, 60.0);
        fs.smooth_mesh(60.0);
        for (std::uint32_t c = 0; c < 3 * fs.num_faces(); ++c)
            ASSERT_TRUE(same_bits(fs.get_normal(c), expected.normals[c]))
                << "seed " << seed << ", corner " << c;
    }
}
