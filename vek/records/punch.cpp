// Record classes of the punch systems. Each line binds a key to its structure's member; the order is the text's.
#include "vek/records/punch.hpp"

#include "vek/records/private/containerField.hpp"
#include "vek/records/private/nestedRecords.hpp"
#include "vek/records/private/record.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

#include <string_view>

namespace vek {

struct punchSystem_t : record_t<PunchSystem> {
    using record_t::record_t;
    static constexpr std::string_view about = "A punch system and the places of its units.";

    doubleField_t wCenter{*this, "W_CENTER", structure.center.width};
    doubleField_t hCenter{*this, "H_CENTER", structure.center.height};
    doubleField_t minFilmFeed{*this, "MIN_FILM_FEED", structure.minFilmFeed};
    doubleField_t pitch{*this, "PITCH", structure.pitch};
    stringField_t position{*this, "POSITION", structure.position};
    stringField_t system{*this, "SYSTEM", structure.system};
    longField_t index{*this, "INDEX", structure.index};
    longField_t numOfUnits{*this, "NUM_OF_UNITS", structure.numOfUnits};
    listField_t<doubleField_t> wUnitLocation{*this, "W_UNIT_LOCATION", structure.wUnitLocation, structure.numOfUnits};
    listField_t<doubleField_t> hUnitLocation{*this, "H_UNIT_LOCATION", structure.hUnitLocation, structure.numOfUnits};
};

struct punchArray_t : record_t<PunchArray> {
    using record_t::record_t;
    static constexpr std::string_view about = "All punch systems.";

    containerField_t<punchSystem_t> arrayPunch{*this, "ARRAY_PUNCH", structure};
};

template struct conversionOf<PunchSystem, punchSystem_t>;
template struct conversionOf<PunchArray, punchArray_t>;

} // namespace vek
