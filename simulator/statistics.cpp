#include "simulator/statistics.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace velclp_sim {

namespace {

constexpr std::size_t logLimit = 10000;
constexpr std::size_t objectLimit = 512;
constexpr const char* unknown = "(unknown)";

/// Counted names come from models, which may hold any character.
void appendJsonString(std::string& out, const std::string& text) {
    out += '"';
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
            out += escape.data();
        } else {
            if (c == '"' || c == '\\') {
                out += '\\';
            }
            out += c;
        }
    }
    out += '"';
}

} // namespace

void Statistics::count(const std::string& operation, const std::string& method,
                       const std::string& subject) {
    const std::string name = subject.empty() ? unknown : subject;
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto add = [&](Counter& counter) {
        ++counter.total;
        ++counter.classes[name];
    };
    ++total_;
    add(operations_[operation.empty() ? unknown : operation]);
    if (!method.empty()) {
        add(methods_[method]);
    }
}

void Statistics::log(const std::string& operation, std::string_view object, int outcome) {
    std::string line = operation;
    line.append(1, ' ').append(object.substr(0, objectLimit));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, '?');
    line.append(1, ' ').append(std::to_string(outcome)).append(1, '\n');
    const std::lock_guard<std::mutex> lock(mutex_);
    log_.push_back(std::move(line));
    if (log_.size() > logLimit) {
        log_.pop_front();
    }
}

void Statistics::appendJson(std::string& out, const Counters& counters) {
    const char* separator = "";
    out += '{';
    for (const auto& [name, counter] : counters) {
        out += separator;
        appendJsonString(out, name);
        out += ":{\"total\":" + std::to_string(counter.total) + ",\"classes\":{";
        const char* inner = "";
        for (const auto& [subject, number] : counter.classes) {
            out += inner;
            appendJsonString(out, subject);
            out += ':' + std::to_string(number);
            inner = ",";
        }
        out += "}}";
        separator = ",";
    }
    out += '}';
}

std::string Statistics::toJson() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string out = "{\"total\":" + std::to_string(total_) + ",\"operations\":";
    appendJson(out, operations_);
    out += ",\"methods\":";
    appendJson(out, methods_);
    return out + "}\n";
}

std::string Statistics::toLog() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string out;
    for (const std::string& line : log_) {
        out += line;
    }
    return out;
}

void Statistics::reset() {
    const std::lock_guard<std::mutex> lock(mutex_);
    total_ = 0;
    operations_.clear();
    methods_.clear();
}

void Statistics::resetLog() {
    const std::lock_guard<std::mutex> lock(mutex_);
    log_.clear();
}

} // namespace velclp_sim
