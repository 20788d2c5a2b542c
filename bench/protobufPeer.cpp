// Protocol buffers' text format, with messages whose types are made from the contents' tables. The message is the
// structure: it is filled once, and converted whole.
#include "bench/peer.hpp"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/descriptor.pb.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/text_format.h>

#include <set>

namespace bench {

namespace {

namespace pb = google::protobuf;
using codes_t = std::vector<std::int16_t>;

// One more message type for each list of lists, which the format lacks.
constexpr const char *codesType = "Codes";

pb::FieldDescriptorProto::Type fieldType(kind_t kind) {
    switch (kind) {
    case kind_t::real:
    case kind_t::reals:
        return pb::FieldDescriptorProto::TYPE_DOUBLE;
    case kind_t::integer:
    case kind_t::codes:
        return pb::FieldDescriptorProto::TYPE_INT32;
    case kind_t::flag:
        return pb::FieldDescriptorProto::TYPE_BOOL;
    case kind_t::name:
        return pb::FieldDescriptorProto::TYPE_ENUM;
    case kind_t::text:
    case kind_t::texts:
        return pb::FieldDescriptorProto::TYPE_STRING;
    default:
        return pb::FieldDescriptorProto::TYPE_MESSAGE;
    }
}

bool isList(kind_t kind) {
    return kind == kind_t::reals || kind == kind_t::texts || kind == kind_t::codes || kind == kind_t::codeLists ||
           kind == kind_t::objects;
}

class types_t {
public:
    types_t() {
        file_.set_name("messages.proto");
        file_.set_syntax("proto2");
        pb::FieldDescriptorProto &codes = addField(*addType(codesType), "CODE", kind_t::codes, 1);
        codes.set_label(pb::FieldDescriptorProto::LABEL_REPEATED);
    }

    const pb::Descriptor *build(const objectType_t &type) {
        add(type);
        return pool_.BuildFile(file_)->FindMessageTypeByName(std::string(type.name));
    }

private:
    pb::DescriptorProto *addType(const char *name) {
        pb::DescriptorProto *const type = file_.add_message_type();
        type->set_name(name);
        return type;
    }

    static pb::FieldDescriptorProto &addField(pb::DescriptorProto &type, std::string_view key, kind_t kind,
                                              int number) {
        pb::FieldDescriptorProto *const field = type.add_field();
        field->set_name(std::string(key));
        field->set_number(number);
        field->set_type(fieldType(kind));
        field->set_label(isList(kind) ? pb::FieldDescriptorProto::LABEL_REPEATED
                                      : pb::FieldDescriptorProto::LABEL_OPTIONAL);
        return *field;
    }

    void add(const objectType_t &type) {
        if (!added_.insert(&type).second)
            return;
        pb::DescriptorProto made;
        made.set_name(std::string(type.name));
        for (const member_t &member : type.members) {
            const int number = made.field_size() + 1;
            pb::FieldDescriptorProto &field = addField(made, member.key, member.kind, number);
            if (member.kind == kind_t::codeLists) {
                field.set_type_name(codesType);
            } else if (member.type != nullptr) {
                field.set_type_name(std::string(member.type->name));
                add(*member.type);
            } else if (member.kind == kind_t::name) {
                // Names of one enumeration may recur in a type, so each member has an enumeration and a scope.
                pb::DescriptorProto *const scope = made.add_nested_type();
                scope->set_name("Of" + std::to_string(number));
                pb::EnumDescriptorProto *const names = scope->add_enum_type();
                names->set_name("Names");
                for (const std::string_view name : member.names) {
                    pb::EnumValueDescriptorProto *const value = names->add_value();
                    value->set_name(std::string(name));
                    value->set_number(names->value_size() - 1);
                }
                field.set_type_name("." + made.name() + "." + scope->name() + ".Names");
            }
        }
        *file_.add_message_type() = made;
    }

    pb::FileDescriptorProto file_;
    pb::DescriptorPool pool_;
    std::set<const objectType_t *> added_;
};

void fill(pb::Message &message, const objectType_t &type, const void *object);

void fillCodes(pb::Message &message, const pb::FieldDescriptor *field, const codes_t &codes) {
    for (const std::int16_t code : codes)
        message.GetReflection()->AddInt32(&message, field, code);
}

void fillMember(pb::Message &message, const pb::FieldDescriptor *field, const member_t &member, const void *object) {
    const pb::Reflection &reflection = *message.GetReflection();
    const char *const place = &member.in<char>(object);
    switch (member.kind) {
    case kind_t::real:
        return reflection.SetDouble(&message, field, member.in<double>(object));
    case kind_t::integer:
        return reflection.SetInt32(&message, field, member.in<std::int32_t>(object));
    case kind_t::flag:
        return reflection.SetBool(&message, field, member.in<bool>(object));
    case kind_t::name:
        return reflection.SetEnumValue(&message, field, member.in<std::int32_t>(object));
    case kind_t::text:
        return reflection.SetString(&message, field, member.in<std::string>(object));
    case kind_t::reals:
        for (const double value : member.in<std::vector<double>>(object))
            reflection.AddDouble(&message, field, value);
        return;
    case kind_t::texts:
        for (const std::string &text : member.in<std::vector<std::string>>(object))
            reflection.AddString(&message, field, text);
        return;
    case kind_t::codes:
        return fillCodes(message, field, member.in<codes_t>(object));
    case kind_t::codeLists:
        for (const codes_t &codes : member.in<std::vector<codes_t>>(object)) {
            pb::Message *const list = reflection.AddMessage(&message, field);
            fillCodes(*list, list->GetDescriptor()->field(0), codes);
        }
        return;
    case kind_t::object:
        return fill(*reflection.MutableMessage(&message, field), *member.type, place);
    case kind_t::objects:
        for (std::size_t at = 0; at < member.bytes(place).size(); at += member.type->size)
            fill(*reflection.AddMessage(&message, field), *member.type, member.bytes(place).data() + at);
        return;
    }
}

void fill(pb::Message &message, const objectType_t &type, const void *object) {
    for (std::size_t i = 0; i < type.members.size(); ++i)
        fillMember(message, message.GetDescriptor()->field(static_cast<int>(i)), type.members[i], object);
}

class protobuf_t : public peer_t {
public:
    explicit protobuf_t(const row_t &row) : prototype_(factory_.GetPrototype(types_.build(*row.contents[0].type))) {
        for (const content_t &content : row.contents) {
            fill(*messages_.emplace_back(prototype_->New()), *content.type, content.get());
            texts_.push_back(text(texts_.size()));
            std::string again;
            pb::TextFormat::PrintToString(*parsed(texts_.size() - 1), &again);
            check("protobuf text", row, texts_.back(), again);
        }
    }

    void read(std::size_t index) override { parsed(index); }
    void write(std::size_t index) override { text(index); }
    std::string text(std::size_t index) override {
        std::string text;
        pb::TextFormat::PrintToString(*messages_[index], &text);
        return text;
    }

private:
    std::unique_ptr<pb::Message> parsed(std::size_t index) const {
        std::unique_ptr<pb::Message> message(prototype_->New());
        pb::TextFormat::ParseFromString(texts_[index], message.get());
        return message;
    }

    types_t types_;
    pb::DynamicMessageFactory factory_;
    const pb::Message *prototype_;
    std::vector<std::unique_ptr<pb::Message>> messages_;
    std::vector<std::string> texts_;
};

} // namespace

std::unique_ptr<peer_t> makeProtobuf(const row_t &row) {
    return std::make_unique<protobuf_t>(row);
}

} // namespace bench
