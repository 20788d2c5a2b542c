// A simulated device: takes messages, changes its state, answers, and refuses what it can't take.
//
//     simulator         runs the script below: what comes in begins with "<", what goes out with ">"
//     simulator -       is on a line: takes the bytes of standard input as they come, and answers on standard output;
//                       socat TCP-LISTEN:4001,reuseaddr,fork EXEC:'simulator -' gives it a network
#include "vek/api/framer.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

namespace {

constexpr const char *script = R"(@@4118    38 7 41 {DEVICE_STATE=1;}!!
@@4112    62 8 42 {MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}!!
@@4112    63 9 43 {MEDIA_NAME=Violet;FOCUS_VALUE=-7.000000;}!!
@@4100    65 10 44 {NAME=Plates;VERSION={TYPE=mediaPlate_e;};}!!
@@4161    71 11 45 {STATUS=3;LOW_STATUS=17
@@4160    32 12 46 {ID=4101;}!!
@@4160    32 13 47 {ID=4097;}!!
)";

class device_t {
public:
    device_t() {
        info_.deviceName = "Simulated drum";
        info_.deviceSerialNum = "SIM-1";
        focus_.mediaName = "Thermal";
        focus_.focusValue = 1.5;
    }

    /// Takes one message and gives the answer, which always has the message's echo tag.
    vek::messageText_t receive(std::string_view text) {
        switch (vek::messageId(text)) {
        case VEK_MSG_DEVICE_STATE:
            return take<vek::DeviceState>(text, &device_t::setState);
        case VEK_MSG_FOCUS_VALUE:
            return take<vek::FocusValue>(text, &device_t::setFocus);
        case VEK_MSG_CASSETTE:
            return take<vek::Cassette>(text, &device_t::insert);
        case VEK_MSG_ID_RECORD_4160:
            return request(text);
        default:
            return refuse(vek::checkMessage(text, VEK_MSG_ID_RECORD_4160));
        }
    }

    /// The answer to what is no whole message. It never reached the library, whose header numbers are still those of
    /// the one before.
    vek::messageText_t refuse(const vek::problem_t &problem) const {
        return vek::reply(problem.numbers.echoTag, status(3, problem.text));
    }

private:
    // A message that the device takes, or refuses: wrong ones before their content is looked at.
    template <class Structure>
    vek::messageText_t take(std::string_view text, std::string (device_t::*use)(const Structure &)) {
        vek::problem_t problem;
        const auto structure = vek::parse<Structure>(text, problem);
        if (problem)
            return refuse(problem);
        if (const std::string why = (this->*use)(*structure); !why.empty())
            return vek::print(status(2, why)); // the library has the echo tag of a message that it has read
        return vek::print(*structure);
    }

    vek::DeviceStatus status(std::int32_t severity, std::string_view why) const {
        vek::DeviceStatus status{};
        status.status = state_.deviceState;
        status.severity = severity;
        status.numOfMessages = 1;
        vek::setText(status.msgs[0], why);
        return status;
    }

    std::string setState(const vek::DeviceState &wanted) {
        state_ = wanted;
        return {};
    }

    std::string setFocus(const vek::FocusValue &wanted) {
        if (wanted.focusValue < info_.focusValue.minimum())
            return "no focus below " + std::to_string(info_.focusValue.minimum());
        focus_ = wanted;
        return {};
    }

    std::string insert(const vek::Cassette &cassette) {
        if (cassettes_.count() == 4)
            return "all places are taken";
        vek::Cassette &inserted = cassettes_.add(cassette);
        inserted.isInstalled = 1;
        info_.numOfCassette = cassettes_.count();
        return {};
    }

    // An id asks for the message with this id.
    vek::messageText_t request(std::string_view text) {
        vek::problem_t problem;
        const auto wanted = vek::parse<VEK_MSG_ID_RECORD_4160>(text, problem);
        if (problem)
            return refuse(problem);
        switch (wanted->id) {
        case VEK_MSG_DEVICE_INFO:
            return vek::print(info_);
        case VEK_MSG_CASSETTE_ARRAY:
            return vek::print(cassettes_);
        case VEK_MSG_DEVICE_STATE:
            return vek::print(state_);
        case VEK_MSG_FOCUS_VALUE:
            return vek::print(focus_);
        default:
            return vek::print(status(1, "no message " + std::to_string(wanted->id) + " here"));
        }
    }

    vek::DeviceInfo info_;
    vek::DeviceState state_;
    vek::FocusValue focus_;
    vek::CassetteArray cassettes_;
};

void run() {
    device_t device;
    std::istringstream lines(script);
    for (std::string line; std::getline(lines, line);)
        std::cout << "< " << line << "\n> " << device.receive(line) << '\n';
}

void serve() {
    device_t device;
    vek::framer_t framer;
    const auto answer =
        vek::overloaded{[&](std::string_view message) { std::cout << device.receive(message) << std::flush; },
                        [&](const vek::problem_t &problem) { std::cout << device.refuse(problem) << std::flush; }};
    std::ios::sync_with_stdio(false); // what has come is there at once
    while (std::cin.peek() != std::istream::traits_type::eof()) {
        char bytes[4096];
        const std::streamsize size = std::cin.readsome(bytes, sizeof bytes);
        framer.feed({bytes, static_cast<std::size_t>(size)}, answer);
    }
    framer.finish(answer);
}

} // namespace

int main(int count, char **arguments) {
    if (count > 1 && std::string_view(arguments[1]) == "-")
        serve();
    else
        run();
}
