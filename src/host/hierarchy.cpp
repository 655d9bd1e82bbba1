#include "host/hierarchy.h"

#include <stdexcept>
#include <unordered_map>

namespace facet {

std::vector<std::ptrdiff_t> parent_indices(const owned_objects& objects) {
    std::unordered_map<const primitives::basic_object*, std::ptrdiff_t> index;
    index.reserve(objects.size());
    for (std::size_t i = 0; i < objects.size(); ++i)
        index.emplace(objects[i].get(), static_cast<std::ptrdiff_t>(i));
    std::vector<std::ptrdiff_t> parents(objects.size(), -1);
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const auto found = index.find(objects[i]->get_parent());
        if (found != index.end()) parents[i] = found->second;
    }
    return parents;
}

std::vector<std::size_t> top_down_order(const owned_objects& objects) {
    const std::vector<std::ptrdiff_t> parents = parent_indices(objects);
    enum : unsigned char { unseen, on_path, placed };
    std::vector<unsigned char> state(objects.size(), unseen);
    std::vector<std::size_t> order;
    order.reserve(objects.size());
    std::vector<std::size_t> path;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        path.clear();
        std::ptrdiff_t j = static_cast<std::ptrdiff_t>(i);
        while (j >= 0 && state[static_cast<std::size_t>(j)] == unseen) {
            state[static_cast<std::size_t>(j)] = on_path;
            path.push_back(static_cast<std::size_t>(j));
            j = parents[static_cast<std::size_t>(j)];
        }
        if (j >= 0 && state[static_cast<std::size_t>(j)] == on_path)
            throw std::invalid_argument("the parent links of '" +
                                        objects[static_cast<std::size_t>(j)]->get_name() +
                                        "' form a cycle");
        for (auto k = path.rbegin(); k != path.rend(); ++k) {
            state[*k] = placed;
            order.push_back(*k);
        }
    }
    return order;
}

}  // namespace facet
