// The reader of the schema file. The file is an engineered part of the firmware: every fault in it
// ends the process, and a schema is never partial.
#include <algorithm>
#include <array>
#include <cstring>

#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/locations.h"
#include "velclp/log.h"
#include "velclp/schema.h"
#include "velclp/threadguard.h"

namespace velmora_clp {

namespace {

constexpr std::size_t MAX_LINE = 1024;
using LineBuffer = std::array<char, MAX_LINE + 1>;

// A line over the limit sets the stream's fail state.
const char* readLine(std::ifstream& config, LineBuffer& buf) {
    buf.fill('\0');
    config.getline(buf.data(), static_cast<std::streamsize>(buf.size()));
    return buf.data();
}

// The next line inside a section: a file that ends in here is cut off.
std::string readInside(std::ifstream& config) {
    LineBuffer buf;
    std::string line = readLine(config, buf);
    VELCLP_ASSERT(!config.fail(), "!config.fail()");
    VELCLP_ASSERT(!config.eof(), "!config.eof()");
    return line;
}

struct Element {
    std::string name;
    std::string value;
};

Element splitElement(const std::string& line) {
    const auto pos = line.find('=');
    VELCLP_ASSERT(pos != std::string::npos, "pos!=string::npos");
    auto tmp = splitString(line, "=");
    VELCLP_ASSERT(static_cast<int>(tmp.size()) == 2, "static_cast<int>(tmp.size())==2");
    return {std::move(tmp[0]), std::move(tmp[1])};
}

// Adds what is missing of the path's parents, so that its last key can be added.
void addParents(MapTree<std::string, std::string>& tree, const std::vector<std::string>& path) {
    for (auto end = path.begin() + 1; end < path.end(); ++end) {
        const std::vector<std::string> partial(path.begin(), end);
        if (!tree.hasNode(partial))
            tree.addNode(partial);
    }
}

// The class tag of a head such as "(sp_1)" or "(oem_fan_1)"; the last field has no meaning here.
std::string tagOfHead(const std::string& line) {
    const auto tmp = splitString(line.substr(1, line.size() < 2 ? 0 : line.size() - 2), "_");
    const auto n = tmp.size();
    VELCLP_ASSERT(n <= 3 && n >= 2, "n<=3&&n>=2");
    return n == 3 ? tmp[0] + "_" + tmp[1] : tmp[0];
}

} // namespace

std::atomic<CLPSchema*> CLPSchema::instance_{nullptr};
pthread_mutex_t CLPSchema::instance_lock_ = PTHREAD_MUTEX_INITIALIZER;

CLPSchema* CLPSchema::getInstance() {
    CLPSchema* instance = instance_.load(std::memory_order_acquire);
    if (instance)
        return instance;
    const ThreadGuard guard(&instance_lock_);
    instance = instance_.load(std::memory_order_relaxed);
    if (!instance) {
        instance = new CLPSchema();
        instance_.store(instance, std::memory_order_release);
    }
    return instance;
}

CLPSchema::CLPSchema() {
    VELCLP_TRACE("CLP.CLPSchema.CLPSchema");
    std::ifstream config(Locations::get().schemaFile);
    VELCLP_ASSERT(!config.fail() && config.is_open(), "!config.fail()&&config.is_open()");
    LineBuffer buf;
    while (!config.fail()) {
        if (readLine(config, buf)[0] == '[') {
            initClass(config, buf.data());
            VELCLP_ASSERT(!config.fail(), "!config.fail()");
        }
    }
    prepare();
}

CLPSchema::~CLPSchema() = default;

void CLPSchema::initClass(std::ifstream& config, const char* buf) {
    const char* const function = "CLP.CLPSchema.initClass";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(config.good() && buf, "config.good()&&buf");
    VELCLP_ASSERT(buf[0] == '[' && buf[std::strlen(buf) - 1] == ']',
                  "buf[0]=='['&&buf[strlen(buf)-1]==']'");
    const std::string key = lowerString(std::string(buf + 1, std::strlen(buf) - 2));
    VELCLP_LOG_VALUE(function, "class=[%s]", key.c_str());
    auto tree = std::make_unique<Tree>();
    for (std::string line = lowerString(readInside(config)); line != "[end]";
         line = lowerString(readInside(config))) {
        if (line[0] == '(')
            addClassUfct(config, key, line, tree.get());
        else
            addClassElement(line, key, tree.get());
    }
    VELCLP_ASSERT(m_classTree.find(key) == m_classTree.end(),
                  "m_classTree.find(key)==m_classTree.end()");
    m_classTree.emplace(key, std::move(tree));
}

void CLPSchema::addClassElement(const std::string& line, const std::string& key, Tree* _class) {
    VELCLP_TRACE("CLP.CLPSchema.addClassElement");
    VELCLP_ASSERT(_class && !line.empty(), "_class&&!line.empty()");
    const Element element = splitElement(line);
    if (element.name == "alias") {
        for (const std::string& alias : splitString(element.value, ":")) {
            VELCLP_ASSERT(m_aliasIndex.find(alias) == m_aliasIndex.end(),
                          "m_aliasIndex.find(alias[i])==m_aliasIndex.end()");
            m_aliasIndex.emplace(alias, key);
        }
        return;
    }
    addElement(splitString(element.name, ":"), element.value, "_class->hasNode(path)==false",
               *_class);
}

void CLPSchema::addClassUfct(std::ifstream& config, const std::string& key, const std::string& line,
                             Tree* _class) {
    VELCLP_TRACE("CLP.CLPSchema.addClassUfct");
    VELCLP_ASSERT(_class && !key.empty() && !line.empty(), "_class&&!key.empty()&&!line.empty()");
    const std::string ufct = tagOfHead(line);
    VELCLP_ASSERT(m_ufctIndex.find(ufct) == m_ufctIndex.end(),
                  "m_ufctIndex.find(ufct)==m_ufctIndex.end()");
    m_ufctIndex.emplace(ufct, key);
    const std::vector<std::string> path{"ufct", ufct};
    addParents(*_class, path);
    VELCLP_ASSERT(_class->hasNode(path) == false, "_class->hasNode(path)==false");
    _class->addNode(path);
    for (;;) {
        std::string element = readInside(config);
        // Property names go to the server in the case in which they stand here.
        if (element.rfind("properties=", 0) != 0)
            element = lowerString(element);
        if (element == "(end)")
            return;
        addUfctElement(element, ufct, _class);
    }
}

void CLPSchema::addUfctElement(const std::string& line, const std::string& ufct, Tree* _class) {
    VELCLP_TRACE("CLP.CLPSchema.addUfctElement");
    VELCLP_ASSERT(_class && !line.empty() && !ufct.empty(), "_class&&!line.empty()&&!ufct.empty()");
    const Element element = splitElement(line);
    std::vector<std::string> path{"ufct", ufct};
    const auto keys = splitString(element.name, ":");
    path.insert(path.end(), keys.begin(), keys.end());
    addElement(path, element.value, "_class->hasNode(path_tmp)==false", *_class);
}

void CLPSchema::addElement(const std::vector<std::string>& path, const std::string& value,
                           const char* unique, Tree& tree) {
    VELCLP_ASSERT(!path.empty(), "!p1.empty()");
    addParents(tree, path);
    VELCLP_ASSERT(tree.hasNode(path) == false, unique);
    tree.addNode(path, value);
}

} // namespace velmora_clp
