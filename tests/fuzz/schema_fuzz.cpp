// Any bytes as a schema file: it loads and answers every query, or the process would end with the
// text of one of the loader's assertions.
#include "velclp/locations.h"
#include "velclp/schema.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace {

struct Fault {
    std::string text;
};

} // namespace

// In place of the library's own, so that one input after another can fail.
namespace velmora_clp {
[[noreturn]] void assertionFailed(const char* text, const char*, int) {
    throw Fault{text};
}
} // namespace velmora_clp

namespace {

using velmora_clp::CLPSchema;

const char* const FAULTS[] = {"config.good()&&buf",
                              "buf[0]=='['&&buf[strlen(buf)-1]==']'",
                              "!config.fail()",
                              "!config.eof()",
                              "m_classTree.find(key)==m_classTree.end()",
                              "_class&&!line.empty()",
                              "pos!=string::npos",
                              "static_cast<int>(tmp.size())==2",
                              "m_aliasIndex.find(alias[i])==m_aliasIndex.end()",
                              "_class->hasNode(path)==false",
                              "_class&&!key.empty()&&!line.empty()",
                              "n<=3&&n>=2",
                              "m_ufctIndex.find(ufct)==m_ufctIndex.end()",
                              "_class&&!line.empty()&&!ufct.empty()",
                              "_class->hasNode(path_tmp)==false",
                              "!p1.empty()"};

void requireKnown(const Fault& fault) {
    if (std::find(std::begin(FAULTS), std::end(FAULTS), fault.text) == std::end(FAULTS))
        std::abort();
}

// Asks for a word as a tag and as a class; what must be known may fail.
void ask(const CLPSchema& schema, const std::string& word) {
    schema.getCIMClass(word);
    schema.getRealUfct(word);
    schema.getVertualUfcts(word);
    schema.getRequiredProperties(word);
    schema.getOptionMap(word, "start");
    schema.getNS(word);
    for (const std::string& assoc : schema.getAddrAssoc(word))
        schema.getRefs(word, assoc);
    for (const std::string& ufct : schema.getChildren_ufcts(word))
        schema.getFilter(ufct);
    try {
        if (schema.hasCIMClass(word))
            schema.getParent(word) + schema.getType(word);
        schema.getDefaultUfct(word);
        schema.getUfit(word);
    } catch (const Fault&) {
    }
}

void load(const std::string& content) {
    const CLPSchema schema;
    std::istringstream words(content);
    for (std::string word; std::getline(words, word, '\n');) {
        ask(schema, word);
        if (word.size() > 2)
            ask(schema, word.substr(1, word.size() - 2));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const int file = memfd_create("schema", 0);
    velmora_clp::Locations locations;
    locations.schemaFile = "/proc/self/fd/" + std::to_string(file);
    velmora_clp::Locations::set(locations);
    if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size))
        return 0;
    try {
        load(std::string(reinterpret_cast<const char*>(data), size));
    } catch (const Fault& fault) {
        requireKnown(fault);
    }
    return 0;
}
