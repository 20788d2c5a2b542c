// vekmsg lsp: an editor's eyes, the language server protocol on standard input and output.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/lsp/server.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

namespace vek::tool {

namespace {

struct lspArguments_t {
    bool isStdio = false;

    void declare(argumentList_t &list) {
        list.addFlag(isStdio, "--stdio", "What some editors say: standard input and output, which is so anyway");
    }
};

int runLsp(const lspArguments_t & /*arguments*/) {
    if (isTerminal(0))
        complain(std::string("this is for editors, which start it themselves (docs/editors.md); vekmsg check finds the "
                             "same; ") +
                 endOfTyping);
    rawFile_t input("-");
    lsp::wire_t wire;
    lsp::server_t server(VEK_VERSION, [](std::string_view json) { writeAll(1, lsp::framed(json)); });
    std::string block(std::size_t{1} << 16, '\0');
    constexpr int mostBlocks = 64; // at once, of somebody who does not stop
    for (bool isEnded = false; !isEnded && !server.isOver();) {
        int blocks = 0;
        do {
            const std::size_t size = input.read(block.data(), block.size());
            wire.feed(std::string_view(block).substr(0, size));
            isEnded = size == 0;
        } while (!isEnded && ++blocks < mostBlocks && input.comesUntil(0));
        while (std::optional<lsp::wire_t::received_t> received = wire.next())
            server.take(*received);
        server.work();
    }
    return server.exitCode();
}

const commandOf_t<lspArguments_t> lspCommand(
    {.order = 185,
     .name = "lsp",
     .about = "Show an editor what is wrong as it is typed: a language server on standard input and output",
     .examples = "  vim.lsp.start_client({ cmd = { 'vekmsg', 'lsp' } })   in neovim; others: docs/editors.md"},
    runLsp);

} // namespace

} // namespace vek::tool
