#include "simulator/objectpath.h"

#include "simulator/cimerror.h"
#include "simulator/names.h"

#include <algorithm>

namespace velclp_sim {

namespace {

/// Reads a path's text from left to right.
class PathReader {
public:
    explicit PathReader(std::string_view text) : text_(text) {}

    ObjectPath read() {
        std::string nameSpace = readNamespace();
        std::string className = readName(".");
        std::vector<KeyBinding> keys;
        if (!atEnd()) {
            do {
                ++at_;
                std::string name = readName("=");
                expect('=');
                keys.push_back({std::move(name), readValue()});
            } while (!atEnd() && text_[at_] == ',');
        }
        if (!atEnd() || className.empty()) {
            fail();
        }
        return {std::move(nameSpace), std::move(className), std::move(keys)};
    }

private:
    bool atEnd() const { return at_ >= text_.size(); }

    [[noreturn]] void fail() const {
        throw CimError(CimStatus::invalidParameter, "not an object path: " + std::string(text_));
    }

    void expect(char c) {
        if (atEnd() || text_[at_] != c) {
            fail();
        }
        ++at_;
    }

    std::string readNamespace() {
        const auto colon = text_.substr(0, text_.find_first_of(".\"=")).find(':');
        if (colon == std::string_view::npos) {
            return {};
        }
        std::string_view name = text_.substr(0, colon);
        if (name.substr(0, 2) == "//") {
            const auto slash = name.find('/', 2);
            name = slash == std::string_view::npos ? std::string_view() : name.substr(slash);
        }
        at_ = colon + 1;
        return std::string(trimNamespace(name));
    }

    std::string readName(std::string_view stops) {
        const auto end = std::min(text_.find_first_of(stops, at_), text_.size());
        std::string name(text_.substr(at_, end - at_));
        at_ = end;
        return name;
    }

    Value readValue() {
        if (!atEnd() && text_[at_] == '"') {
            return readString();
        }
        const std::string word = readName(",");
        if (sameName(word, "true") || sameName(word, "false")) {
            return sameName(word, "true");
        }
        if (word.find('.') != std::string::npos) {
            return scalarFromText(word, CimType::real64, "a key");
        }
        const bool negative = !word.empty() && word[0] == '-';
        return scalarFromText(word, negative ? CimType::sint64 : CimType::uint64, "a key");
    }

    Value readString() {
        std::string value;
        for (++at_; !atEnd() && text_[at_] != '"'; ++at_) {
            if (text_[at_] == '\\') {
                ++at_;
            }
            if (atEnd()) {
                break;
            }
            value += text_[at_];
        }
        expect('"');
        return value;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

void appendQuoted(std::string& out, const std::string& text) {
    out += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        out += c;
    }
    out += '"';
}

} // namespace

bool KeyBinding::operator==(const KeyBinding& other) const {
    return sameName(name, other.name) && value == other.value;
}

const Value& ObjectPath::key(std::string_view name) const {
    static const Value none;
    const auto found = std::find_if(keys_.begin(), keys_.end(),
                                    [&](const KeyBinding& k) { return sameName(k.name, name); });
    return found == keys_.end() ? none : found->value;
}

std::string ObjectPath::toText() const {
    return (nameSpace_.empty() ? "" : nameSpace_ + ":") + localText();
}

std::string ObjectPath::localText() const {
    std::string text;
    text.reserve(128);
    text += className_;
    char separator = '.';
    for (const KeyBinding& binding : keys_) {
        text.append(1, separator).append(binding.name).append("=");
        const std::string value = scalarToText(binding.value, CimType::real64);
        if (binding.value.isString() || binding.value.isPath()) {
            appendQuoted(text, value);
        } else {
            text += value;
        }
        separator = ',';
    }
    return text;
}

ObjectPath ObjectPath::fromText(std::string_view text) {
    return PathReader(text).read();
}

bool ObjectPath::operator==(const ObjectPath& other) const {
    return sameName(nameSpace_, other.nameSpace_) && sameName(className_, other.className_) &&
           keys_ == other.keys_;
}

} // namespace velclp_sim
