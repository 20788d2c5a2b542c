// containerField_t: a message's list of items that its structure, a Container, points to.
#pragma once

#include "vek/records/container.hpp"
#include "vek/text/fieldArray.hpp"
#include "vek/text/private/listFields.hpp"

#include <cstdint>

namespace vek {

/// Elements that a container points to. A null pointer prints as an element with its structure's declared defaults.
template <class Element, class Item>
class containerElements_t {
public:
    containerElements_t(pass_t pass, Container<Item> &items) : items_(items) {
        if (pass == pass_t::parse)
            items.clear();
    }

    Element element(std::int32_t index, pass_t pass) const { return Element(pass, *items_.at(index)); }
    bodyWriter_t write(std::int32_t index, bodyWriter_t out) const {
        const Item *item = items_.at(index);
        return item != nullptr ? writeElementOf<Element>(*item, out) : writeElementOf<Element>(Item(), out);
    }
    std::int32_t printed() const { return items_.count(); }
    std::int32_t allocated() const { return items_.count(); }
    void append() { items_.add(); }
    bool appendBlank() { return blanks_.appendTo(items_); }
    void reserve(std::int32_t) {}
    void describe(fieldDescription_t &description) const {
        describeElement<Element, Item>(description);
        description.bindTo(items_);
        const auto elements = [](const void *items) -> elementRun_t {
            return {static_cast<const Container<Item> *>(items)->begin(),
                    static_cast<const Container<Item> *>(items)->count()};
        };
        description.list = {.kind = listKind_t::container, .elements = elements};
    }

private:
    Container<Item> &items_;
    blanks_t blanks_;
};

/// The list of a container message. `Element` is the record class of an item.
template <class Element>
using containerField_t = fieldArray_t<containerElements_t<Element, typename Element::value_t>>;

} // namespace vek
