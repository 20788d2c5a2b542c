#include "vek/inspect/message/valueAt.hpp"

#include "vek/inspect/message/scalars.hpp"

namespace vek::inspect {

const envelopeNumber_t *headerNumberAt(const envelopeParts_t &envelope, std::string_view path) {
    return path == "@id"       ? &envelope.id
           : path == "@length" ? &envelope.length
           : path == "@echo"   ? &envelope.echoTag
           : path == "@seq"    ? &envelope.sequenceNumber
                               : nullptr;
}

std::string valueOf(const tree_t &tree, const node_t &node) {
    if (!node.isBody)
        return scalarText(tree, node);
    return wideText(tree, node).value_or(std::string(tree.value(node)));
}

std::optional<std::string> valueAt(const tree_t &tree, std::string_view path) {
    if (const envelopeNumber_t *number = headerNumberAt(tree.envelope(), path))
        return number->isThere ? std::optional(std::to_string(number->value)) : std::nullopt;
    const node_t *node = tree.find(path);
    return node != nullptr && node->hasValue ? std::optional(valueOf(tree, *node)) : std::nullopt;
}

} // namespace vek::inspect
