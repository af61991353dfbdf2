#include "simulator/faults.h"

#include "simulator/words.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <utility>

namespace velclp_sim {

namespace {

constexpr std::uint64_t always = std::numeric_limits<std::uint64_t>::max();

constexpr std::array<std::pair<const char*, Fault::Kind>, 8> kinds = {{
    {"error", Fault::Kind::error},
    {"drop", Fault::Kind::drop},
    {"delay", Fault::Kind::delay},
    {"cut", Fault::Kind::cut},
    {"malformed", Fault::Kind::malformed},
    {"reply", Fault::Kind::reply},
    {"http", Fault::Kind::http},
    {"return", Fault::Kind::methodReturn},
}};

Fault::Kind readKind(const std::string& word) {
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [&](const auto& kind) { return word == kind.first; });
    if (found == kinds.end()) {
        throw std::invalid_argument("unknown kind " + word);
    }
    return found->second;
}

void setField(Fault& fault, const std::string& key, const std::string& value) {
    if (key == "operation") {
        fault.operation = value;
    } else if (key == "class") {
        fault.className = value;
    } else if (key == "nth") {
        const std::uint64_t nth = parseNumber(value, key);
        if (nth == 0) {
            throw std::invalid_argument("nth counts from 1");
        }
        fault.skip = nth - 1;
    } else if (key == "skip") {
        fault.skip = parseNumber(value, key);
    } else if (key == "count") {
        fault.count = value == "always" ? always : parseNumber(value, key);
    } else if (key == "code" || key == "status") {
        fault.code = static_cast<int>(std::min<std::uint64_t>(parseNumber(value, key), 65535));
    } else if (key == "text" || key == "value") {
        fault.text = value;
    } else if (key == "ms" || key == "bytes") {
        fault.amount = parseNumber(value, key);
    } else {
        throw std::invalid_argument("unknown word " + key);
    }
}

Fault readFault(std::string_view line) {
    Fault fault;
    bool hasKind = false;
    for (const std::string& word : splitWords(line)) {
        const auto equals = word.find('=');
        if (equals == std::string::npos) {
            throw std::invalid_argument("not key=value: " + word);
        }
        const std::string key = word.substr(0, equals);
        const std::string value = word.substr(equals + 1);
        if (key == "kind") {
            fault.kind = readKind(value);
            hasKind = true;
        } else {
            setField(fault, key, value);
        }
    }
    if (!hasKind) {
        throw std::invalid_argument("a fault needs a kind");
    }
    return fault;
}

std::string describe(const Fault& fault) {
    const auto kind = std::find_if(kinds.begin(), kinds.end(),
                                   [&](const auto& each) { return each.second == fault.kind; });
    const bool numbered = fault.kind == Fault::Kind::error || fault.kind == Fault::Kind::http;
    std::string line =
        "id=" + std::to_string(fault.id) + " kind=" + kind->first +
        " operation=" + quoteWord(fault.operation) + " class=" + quoteWord(fault.className) +
        " skip=" + std::to_string(fault.skip) +
        " count=" + (fault.count == always ? "always" : std::to_string(fault.count)) +
        " hits=" + std::to_string(fault.hits);
    if (numbered) {
        line += " code=" + std::to_string(fault.code);
    }
    if (fault.kind == Fault::Kind::delay || fault.kind == Fault::Kind::cut) {
        line +=
            (fault.kind == Fault::Kind::cut ? " bytes=" : " ms=") + std::to_string(fault.amount);
    }
    if (!fault.text.empty() && fault.kind != Fault::Kind::reply) {
        line += " text=" + quoteWord(fault.text);
    }
    return line + "\n";
}

bool matches(const Fault& fault, std::string_view operation, bool intrinsic, const Class* cls) {
    const bool sameOperation = fault.operation == "*" || sameName(fault.operation, operation) ||
                               (!intrinsic && sameName(fault.operation, "InvokeMethod"));
    return sameOperation && (fault.className == "*" || (cls && cls->isA(fault.className)));
}

} // namespace

std::vector<unsigned> FaultTable::plant(std::string_view text) {
    std::vector<Fault> planted;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.find_first_not_of(" \t") == std::string_view::npos) {
            continue;
        }
        planted.push_back(readFault(line));
        if (planted.back().kind == Fault::Kind::reply) {
            planted.back().text = text;
            text = {};
        }
    }
    std::vector<unsigned> ids;
    const std::lock_guard<std::mutex> lock(mutex_);
    for (Fault& fault : planted) {
        fault.id = nextId_++;
        ids.push_back(fault.id);
        faults_.push_back(std::move(fault));
    }
    return ids;
}

std::string FaultTable::list() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string text;
    for (const Fault& fault : faults_) {
        text += describe(fault);
    }
    return text;
}

void FaultTable::clear(unsigned id) {
    const std::lock_guard<std::mutex> lock(mutex_);
    faults_.erase(std::remove_if(faults_.begin(), faults_.end(),
                                 [id](const Fault& fault) { return id == 0 || fault.id == id; }),
                  faults_.end());
}

std::vector<Fault> FaultTable::hit(std::string_view operation, bool intrinsic, const Class* cls) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<Fault> result;
    for (Fault& fault : faults_) {
        if (fault.count == 0 || !matches(fault, operation, intrinsic, cls)) {
            continue;
        }
        if (fault.skip > 0) {
            --fault.skip;
            continue;
        }
        if (fault.count != always) {
            --fault.count;
        }
        ++fault.hits;
        result.push_back(fault);
    }
    return result;
}

} // namespace velclp_sim
