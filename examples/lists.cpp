// Texts, lists and containers of message structures, used as those of the standard library.
#include "vek/api/vekParams2ASCII.hpp"

#include <algorithm>
#include <iostream>
#include <string>
#include <unordered_set>

int main() {
    // Texts: from and to the standard ones, compared, printed, hashed.
    vek::FocusValue focus;
    focus.mediaName = std::string("Violet");
    const std::string_view name = focus.mediaName;
    const std::unordered_set<vek::string_t> known{"Violet", "Thermal"};
    std::cout << focus.mediaName << (known.contains(focus.mediaName) && name == "Violet" ? " is known\n" : "?\n");

    // Lists hold values.
    vek::MediaGroup group;
    group.mediaGroup = {"Violet", "Red", "Thermal"};
    group.mediaGroup.push_back("Green");
    group.mediaGroup.erase(std::ranges::find(group.mediaGroup, "Red"));
    group.mediaGroup.insert(group.mediaGroup.begin(), "Blue");
    std::ranges::sort(group.mediaGroup);
    group.iCount = static_cast<std::int32_t>(group.mediaGroup.size());
    std::cout << vek::print(group) << '\n';

    // Containers own their items, and hand out pointers to them.
    vek::CassetteArray cassettes;
    cassettes.reserve(2);
    cassettes.add().name = "Plates";
    cassettes.push_back(*cassettes[0]);
    cassettes[1]->name = "Films";
    vek::CassetteArray others = cassettes;
    others.erase(others.begin());
    std::cout << others.size() << " of " << cassettes.size() << ", " << (others == cassettes ? "the same" : "others")
              << ": " << others[0]->name << '\n';
}
