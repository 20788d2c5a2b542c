// A host that places an image on a drum. The structure is plain: the same in C, and zero before it is filled.
#include "vek/api/vekParams2ASCII.hpp"

#include <iostream>

int main() {
    vek::ImageTopLeft image;
    image.drumId = 1;
    image.topLeft = {.height = 80, .width = 120}; // stored height first
    image.imageTopLeft = {.height = 95, .width = 132};
    vek::setText(image.separation, "Cyan");
    if (!vek::setText(image.name, "catalogue_c.tif"))
        std::cout << "The name was cut\n";
    std::cout << vek::print(image) << '\n';
}
