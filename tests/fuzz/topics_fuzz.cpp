// Any bytes as a help topic file, asked for any topic (the first line) and for every word in
// braces: a text stands in the file as it is given, and holds no other topic's head.
#include "tests/fuzz/require.h"
#include "velclp/clpman.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace {

void ask(const std::string& topic, const std::string& file) {
    std::string text = "of the last topic";
    velmora_clp::CLP_Man_GetTopic(topic, text);
    require(file.find(text) != std::string::npos);
    require(!topic.empty() || text.empty());
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        require(line.empty() || line[0] != '{' || line.find('}') == std::string::npos);
    std::string again;
    velmora_clp::CLP_Man_GetTopic(topic, again);
    require(again == text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const int descriptor = memfd_create("topics", 0);
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t line = std::min(input.find('\n'), size);
    const std::string file = input.substr(std::min(line + 1, size));
    if (ftruncate(descriptor, 0) != 0 ||
        pwrite(descriptor, file.data(), file.size(), 0) != static_cast<ssize_t>(file.size()))
        return 0;
    require(velmora_clp::CLP_Man_Init("/proc/self/fd/" + std::to_string(descriptor)) == 0);
    ask(input.substr(0, line), file);
    // Each topic costs a reading of the file.
    std::size_t at = 0;
    for (int asked = 0; asked < 32 && (at = file.find('{', at)) != std::string::npos; ++asked) {
        const std::size_t end = file.find_first_of("|,}\n", ++at);
        ask(file.substr(at, end - at), file);
    }
    velmora_clp::CLP_Man_Fini();
    return 0;
}
