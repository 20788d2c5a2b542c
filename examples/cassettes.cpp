// A host that edits the cassettes of a device: reads them if nothing in them would be ignored, changes, adds and
// removes some, and sends them back.
#include "vek/api/vekParams2ASCII.hpp"

#include <algorithm>
#include <iostream>

int main() {
    const auto cassettes = vek::parseStrictly<vek::CassetteArray>(
        "@@4101   169 7 41 "
        "{ARRAY_CASSETTE={{NAME=Plates;IS_INSTALLED=TRUE;NUM_AVAILABLE_PUNCH_SYS=1;PUNCH_SYS_NAME={Pin "
        "425,};VERSION={TYPE=mediaPlate_e;};},{NAME=Films;},};}!!");

    vek::Cassette &plates = *(*cassettes)[0];
    plates.media.size = {.width = 1030.0, .height = 790.0};
    plates.punchSysName.add("Pin 780");
    plates.numAvailablePunchSys = plates.punchSysName.count();

    vek::Cassette &proofs = cassettes->add(plates); // a copy, with what was changed
    proofs.name = "Proofs";
    proofs.media.type = VEK_MEDIA_PROOF;
    cassettes->erase(std::ranges::find(*cassettes, 0, &vek::Cassette::isInstalled)); // the films

    for (const vek::Cassette *cassette : *cassettes)
        std::cout << cassette->name << " holds " << vek::nameOf(cassette->media.type) << '\n';
    std::cout << vek::print(*cassettes) << '\n';
}
