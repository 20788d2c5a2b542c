// Record classes that are nested in records of other families. Those of a family's own messages are in its .cpp file.
#pragma once

#include "vek/records/enumerations.hpp"
#include "vek/records/media.hpp"
#include "vek/records/private/record.hpp"
#include "vek/records/punch.hpp"
#include "vek/text/enumField.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

#include <string_view>

namespace vek {

struct mediaParams_t : record_t<MediaParams> {
    using record_t::record_t;
    static constexpr std::string_view about = "The media parameters of an exposure job.";

    enumField_t mediaType{*this, "MEDIA_TYPE", structure.mediaType, mediaTypeNames};
    longField_t unloadMediaType{*this, "UNLOAD_MEDIA_TYPE", structure.unloadMediaType};
    longField_t unloadPolicy{*this, "UNLOAD_POLICY", structure.unloadPolicy};
    doubleField_t filmFeed{*this, "FILM_FEED", structure.filmFeed};
    fixedTextField_t<32> cassetteName{*this, "CASSETTE_NAME", structure.cassetteName};

    static void setDefaults(MediaParams &defaults) {
        defaults.unloadMediaType = -1;
        defaults.unloadPolicy = -1;
        defaults.filmFeed = -1.0;
    }
};

struct punchParams_t : record_t<PunchParams> {
    using record_t::record_t;

    countField_t<10> numSystems{*this, "NUM_SYSTEMS", structure.numSystems};
    longField_t align{*this, "ALIGN", structure.align};
    roomField_t<longField_t, 10, counting_t::byMember> activeSystems{*this, "ACTIVE_SYSTEMS", structure.activeSystems,
                                                                     structure.numSystems};
};

} // namespace vek
