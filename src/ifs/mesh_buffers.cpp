// The pool of mesh buffers: large arrays of destroyed or resized face sets and of the builders'
// scratch tables, kept for the next build of the same size.
//
// Fresh memory costs the kernel a page fault and a cleared page per 4 KiB on its first write;
// taking a pooled array of the right size costs neither. The pool holds whole arrays by exact
// element count, oldest first, up to a byte limit; when a new array does not fit, the oldest
// arrays are freed first.
#include "ifs/mesh_buffers.h"

#include <deque>
#include <mutex>
#include <tuple>
#include <utility>

#include "facet/ifs.h"

namespace facet::detail {
namespace {

// Arrays smaller than this are left to the allocator, which reuses them well.
constexpr std::uint64_t smallest_pooled = 256 * 1024;
// The most arrays of one element type the pool holds (a face set has at most five of a type).
constexpr std::size_t most_per_type = 12;

template <class T>
struct pooled {
    std::uint64_t age;
    carray<T> array;
};

struct pool {
    std::mutex mutex;
    std::uint64_t limit = default_mesh_buffer_limit;
    std::uint64_t bytes = 0;
    std::uint64_t clock = 0;
    std::tuple<std::deque<pooled<vector3d>>, std::deque<pooled<face>>, std::deque<pooled<halfedge>>,
               std::deque<pooled<texcoord>>, std::deque<pooled<std::uint32_t>>,
               std::deque<pooled<std::uint64_t>>, std::deque<pooled<double>>>
        lists;

    template <class T>
    static std::uint64_t bytes_of(const carray<T>& a) {
        return std::uint64_t{a.size()} * sizeof(T);
    }

    // Frees the oldest array of any type; false when the pool is empty.
    bool free_oldest() {
        std::uint64_t oldest = ~std::uint64_t{0};
        std::apply(
            [&](auto&... list) {
                ((oldest = list.empty() || list.front().age > oldest ? oldest : list.front().age),
                 ...);
            },
            lists);
        bool freed = false;
        std::apply([&](auto&... list) { (free_front_of_age(list, oldest, freed), ...); }, lists);
        return freed;
    }

    template <class List>
    void free_front_of_age(List& list, std::uint64_t age, bool& freed) {
        if (freed || list.empty() || list.front().age != age) return;
        bytes -= bytes_of(list.front().array);
        list.pop_front();
        freed = true;
    }

    void shrink_to(std::uint64_t target) {
        while (bytes > target && free_oldest()) {
        }
    }
};

pool& the_pool() {
    static pool* const p = new pool;  // never destroyed: face sets may die after static exit
    return *p;
}

}  // namespace

template <class T>
void recycle(carray<T>& a) {
    carray<T> old;
    old.swap(a);
    const std::uint64_t size = pool::bytes_of(old);
    if (size < smallest_pooled) return;
    pool& p = the_pool();
    const std::lock_guard<std::mutex> lock(p.mutex);
    if (size > p.limit) return;
    auto& list = std::get<std::deque<pooled<T>>>(p.lists);
    if (list.size() == most_per_type) {
        p.bytes -= pool::bytes_of(list.front().array);
        list.pop_front();
    }
    p.shrink_to(p.limit - size);
    p.bytes += size;
    list.push_back(pooled<T>{p.clock++, std::move(old)});
}

template <class T>
void size_for_overwrite(carray<T>& a, std::uint32_t n) {
    if (a.size() == n) return;
    recycle(a);
    if (std::uint64_t{n} * sizeof(T) >= smallest_pooled) {
        pool& p = the_pool();
        const std::lock_guard<std::mutex> lock(p.mutex);
        auto& list = std::get<std::deque<pooled<T>>>(p.lists);
        // The newest array of the size: the one most likely still in the caches.
        for (auto it = list.rbegin(); it != list.rend(); ++it)
            if (it->array.size() == n) {
                a.swap(it->array);
                p.bytes -= pool::bytes_of(a);
                list.erase(std::next(it).base());
                return;
            }
    }
    a.resize_for_overwrite(n);
}

template void size_for_overwrite(carray<vector3d>&, std::uint32_t);
template void size_for_overwrite(carray<face>&, std::uint32_t);
template void size_for_overwrite(carray<halfedge>&, std::uint32_t);
template void size_for_overwrite(carray<texcoord>&, std::uint32_t);
template void size_for_overwrite(carray<std::uint32_t>&, std::uint32_t);
template void recycle(carray<vector3d>&);
template void recycle(carray<face>&);
template void recycle(carray<halfedge>&);
template void recycle(carray<texcoord>&);
template void recycle(carray<std::uint32_t>&);
template void size_for_overwrite(carray<std::uint64_t>&, std::uint32_t);
template void recycle(carray<std::uint64_t>&);
template void size_for_overwrite(carray<double>&, std::uint32_t);
template void recycle(carray<double>&);

}  // namespace facet::detail

void set_mesh_buffer_limit(std::uint64_t bytes) {
    facet::detail::pool& p = facet::detail::the_pool();
    const std::lock_guard<std::mutex> lock(p.mutex);
    p.limit = bytes;
    p.shrink_to(bytes);
}

std::uint64_t get_mesh_buffer_limit() {
    facet::detail::pool& p = facet::detail::the_pool();
    const std::lock_guard<std::mutex> lock(p.mutex);
    return p.limit;
}

std::uint64_t get_mesh_buffer_bytes() {
    facet::detail::pool& p = facet::detail::the_pool();
    const std::lock_guard<std::mutex> lock(p.mutex);
    return p.bytes;
}
