// A gateway: eight lines, a thread for each, answer messages at the same time. Every answer has the echo tag of its own
// line's message, and the sequence number behind it, because each line has its numbers in a vek::line_t.
#include "vek/api/vekParams2ASCII.hpp"

#include <array>
#include <cstdint>
#include <iostream>
#include <string>
#include <thread>

namespace {

constexpr std::int32_t messagesALine = 5000;

// What a device on this line sends.
std::string sent(std::int32_t echoTag, std::int32_t sequenceNumber) {
    vek::line_t device{echoTag, sequenceNumber - 1};
    return device.print(vek::DeviceState());
}

// Takes a message, gives the answer.
vek::messageText_t answer(vek::line_t &line, const std::string &text) {
    vek::problem_t problem;
    const auto state = line.parse<vek::DeviceState>(text, problem);
    if (!problem)
        return line.print(*state);
    line.echoTag = problem.numbers.echoTag;
    vek::DeviceStatus refusal{};
    refusal.numOfMessages = 1;
    vek::setText(refusal.msgs[0], problem.text);
    return line.print(refusal);
}

// How many answers had another line's numbers.
std::int32_t wrongOn(std::int32_t number) {
    vek::line_t line;
    std::int32_t wrong = 0;
    for (std::int32_t i = 0; i < messagesALine; ++i) {
        const std::int32_t echoTag = number * messagesALine + i;
        std::string text = sent(echoTag, 2 * echoTag);
        const bool isDamaged = i % 100 == 99;
        if (isDamaged)
            text += "cut off"; // refused, and answered all the same: its sequence number does not count
        const vek::envelopeNumbers_t numbers = vek::messageNumbers(answer(line, text));
        const std::int32_t next = 2 * echoTag + (isDamaged ? 0 : 1);
        wrong += numbers.echoTag == echoTag && numbers.sequenceNumber == next ? 0 : 1;
    }
    return wrong;
}

} // namespace

int main() {
    std::array<std::int32_t, 8> wrong{};
    {
        std::array<std::jthread, wrong.size()> threads;
        for (std::size_t i = 0; i < threads.size(); ++i)
            threads[i] = std::jthread([&wrong, i] { wrong[i] = wrongOn(static_cast<std::int32_t>(i)); });
    }
    std::int32_t all = 0;
    for (const std::int32_t ofLine : wrong)
        all += ofLine;
    std::cout << "8 lines, " << 8 * messagesALine << " answers, " << all << " of them with wrong numbers\n";
    return all == 0 ? 0 : 1;
}
