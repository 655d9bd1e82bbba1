// Parent links of a read scene: refused cycles, the first object of a name, and order.
#include <gtest/gtest.h>

#include <facet/objects.h>
#include <facet/scene_io.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

// "beginscene", one empty block per (name, parent) pair, "endscene".
std::string linked_scene(const std::vector<std::pair<std::string, std::string>>& links) {
    std::string text = "beginscene\n";
    for (const auto& [name, parent] : links)
        text += "primitive empty name " + name + " parent " + parent + " ownerid _null_ mat_ref " +
                std::string(1, '\0') +
                " position 0 0 0 orientation 0 1 0 0 brush 1 1 1 1 0 pen 0 0 0 255 1 0"
                " endprimitive\n";
    return text + "endscene\n";
}

struct read_result {
    std::vector<std::unique_ptr<primitives::basic_object>> objects;
    std::string error;
};

read_result read_links(const std::vector<std::pair<std::string, std::string>>& links) {
    std::vector<primitives::basic_object*> raw;
    std::istringstream in(linked_scene(links));
    read_result out;
    try {
        read_objects(raw, in);
    } catch (const std::runtime_error& e) {
        out.error = e.what();
    }
    for (auto* o : raw) out.objects.emplace_back(o);
    return out;
}

}  // namespace

TEST(ParentLinks, ALinkThatClosesACycleIsRefusedAfterTheLinksBeforeIt) {
    // a <- b <- c <- a: the cycle closes with c's link, the last of the three in order.
    read_result r =
        read_links({{"root", "_null_"}, {"a", "c"}, {"b", "a"}, {"c", "b"}, {"d", "root"}});
    EXPECT_EQ(r.error, "Error in read_objects(): parent cycle at 'c'");
    ASSERT_EQ(r.objects.size(), 5u);
    EXPECT_EQ(r.objects[1]->get_parent(), r.objects[3].get());
    EXPECT_EQ(r.objects[2]->get_parent(), r.objects[1].get());
    EXPECT_EQ(r.objects[3]->get_parent(), nullptr);
    EXPECT_EQ(r.objects[4]->get_parent(), nullptr);  // after the refused link: not linked

    r = read_links({{"self", "self"}});
    EXPECT_EQ(r.error, "Error in read_objects(): parent cycle at 'self'");
    EXPECT_EQ(r.objects[0]->get_parent(), nullptr);

    // A missing parent before the cycle is reported first.
    r = read_links({{"x", "nobody"}, {"y", "y"}});
    EXPECT_EQ(r.error, "Error in read_objects(): parent not found");
}

TEST(ParentLinks, TheFirstObjectOfANameIsTheParentAlsoAcrossManyObjects) {
    std::vector<std::pair<std::string, std::string>> links{{"twin", "_null_"}};
    for (int i = 0; i < 20000; ++i)
        links.emplace_back("n" + std::to_string(i), i == 0 ? "twin" : "n" + std::to_string(i - 1));
    links.emplace_back("twin", "n19999");  // a second "twin": children still take the first
    read_result r = read_links(links);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.objects[1]->get_parent(), r.objects[0].get());
    EXPECT_EQ(r.objects.back()->get_parent(), r.objects[20000].get());
    EXPECT_EQ(r.objects[0]->get_children().size(), 1u);
}
