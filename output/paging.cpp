#include "output/paging.h"

#include "velclp/token.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace velmora_clp {

namespace {

constexpr char const* OPT_NUMBER = "-output:number";
constexpr char const* OPT_START = "-output:number:start";
constexpr char const* OPT_STOP = "-output:number:end";
constexpr char const* OPT_COUNT = "-output:count";
constexpr char const* OPT_BEGIN = "-output:begin";
constexpr char const* OPT_END = "-output:end";
constexpr char const* OPT_ORDER = "-output:order";

std::string textOption(const CLPToken& line, char const* option) {
    std::string value;
    line.getOption(option, value);
    return value;
}

// At least 0; text that is no number is 0, one that is too long the largest.
long number(const CLPToken& line, char const* option) {
    return std::max(0L, std::strtol(textOption(line, option).c_str(), nullptr, 10));
}

// Numbers count from 1, both included.
Page numbered(const CLPToken& line, long count) {
    const long first = number(line, OPT_START);
    const long start = std::min(count, first > 0 ? first - 1 : 0);
    return {start, std::max(start, std::min(count, number(line, OPT_STOP)))};
}

Page firstOnes(const CLPToken& line, long count) {
    return {0, std::min(count, number(line, OPT_COUNT))};
}

Page lastOnes(const CLPToken& line, long count) {
    return {std::max(0L, count - number(line, OPT_COUNT)), count};
}

bool meansAll(const CLPToken& line) {
    const std::string value = textOption(line, OPT_COUNT);
    return value.empty() || value.front() == 'a' || value.front() == 'A';
}

} // namespace

bool hasPaging(const CLPToken& line) {
    return line.hasOption(OPT_NUMBER) || line.hasOption(OPT_COUNT) || line.hasOption(OPT_BEGIN) ||
           line.hasOption(OPT_END);
}

Page textPage(const CLPToken& line, long count) {
    if (line.hasOption(OPT_NUMBER))
        return numbered(line, count);
    if (!hasPaging(line) || meansAll(line))
        return {0, count};
    const bool fromEnd = line.hasOption(OPT_END) && !line.hasOption(OPT_BEGIN);
    return fromEnd ? lastOnes(line, count) : firstOnes(line, count);
}

Page treePage(const CLPToken& line, long count) {
    if (line.hasOption(OPT_NUMBER))
        return numbered(line, count);
    if (!line.hasOption(OPT_COUNT))
        return {0, count};
    if (line.hasOption(OPT_BEGIN))
        return firstOnes(line, count);
    return line.hasOption(OPT_END) ? lastOnes(line, count) : Page{0, count};
}

bool isReverse(const CLPToken& line) {
    return textOption(line, OPT_ORDER) == "reverse";
}

} // namespace velmora_clp
