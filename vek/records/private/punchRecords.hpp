// Record classes of the punch systems. Each line binds a key to its structure's member; the order is the text's.
#pragma once

#include "vek/records/private/containerField.hpp"
#include "vek/records/private/record.hpp"
#include "vek/records/punch.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

namespace vek {

class punchSystem_t : public record_t<PunchSystem> {
public:
    using record_t::record_t;

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

class punchArray_t : public record_t<PunchArray> {
public:
    using record_t::record_t;

    containerField_t<punchSystem_t> arrayPunch{*this, "ARRAY_PUNCH", structure};
};

class punchParams_t : public record_t<PunchParams> {
public:
    using record_t::record_t;

    countField_t<10> numSystems{*this, "NUM_SYSTEMS", structure.numSystems};
    longField_t align{*this, "ALIGN", structure.align};
    roomField_t<longField_t, 10, counting_t::byMember> activeSystems{*this, "ACTIVE_SYSTEMS", structure.activeSystems,
                                                                     structure.numSystems};
};

} // namespace vek
