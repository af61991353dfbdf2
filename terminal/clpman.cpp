#include "velclp/clpman.h"

#include "config/aim_config.h"
#include "velclp/log.h"
#include "velclp/stdstream.h"
#include "velclp/transport.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <vector>

std::ifstream* ManFile = nullptr;
char ser_str_console_command[256];

namespace {

const int NO_TOPIC_FILE = 2;
constexpr char const* SERIAL_FUNCTION = "CLP.initForSerial";
const char* (*s_ttyName)(int) = nullptr;

// The one or two names of a topic head; none when the line is no head.
std::vector<std::string> headNames(const std::string& line) {
    std::vector<std::string> names;
    const std::size_t brace = line.find_first_not_of(" \t");
    if (brace == std::string::npos || line[brace] != '{')
        return names;
    const std::size_t first = brace + 1;
    const std::size_t firstEnd = line.find_first_of("|,}", first);
    std::string name = line.substr(first, firstEnd - first);
    if (name.empty())
        return names;
    names.push_back(std::move(name));
    if (firstEnd == std::string::npos || line[firstEnd] != '|')
        return names;
    const std::size_t second = firstEnd + 1;
    name = line.substr(second, line.find('}', second) - second);
    if (!name.empty())
        names.push_back(std::move(name));
    return names;
}

bool findHead(const std::string& topic) {
    for (std::string line; std::getline(*ManFile, line);)
        for (const std::string& name : headNames(line))
            if (name == topic)
                return true;
    return false;
}

void readText(std::string& text) {
    for (std::string line; std::getline(*ManFile, line);) {
        if (!line.empty() && line[0] == '{' && line.find('}') != std::string::npos)
            return;
        if (!text.empty())
            text += '\n';
        text += line;
    }
}

const char* ttyNameOf(int fd) {
    return s_ttyName != nullptr ? s_ttyName(fd) : ttyname(fd);
}

bool onSerialLine() {
    if (isatty(0) == 0)
        return false;
    const char* const name = ttyNameOf(0);
    return name != nullptr && std::strstr(name, "ttyS") != nullptr;
}

// The operator is told, and so is the log.
void report(const char* text) {
    VELCLP_LOG_FAILURE(SERIAL_FUNCTION, "%s", text);
    std::puts(text);
}

bool consoleEnabled() {
    bool enable = false;
    if (!aim_config_get_bool("ser_bool_console_enable", &enable)) {
        report("Get serial console enable configruation failed");
        return false;
    }
    if (!enable)
        report("serial console is disabled");
    return enable;
}

void setIdleTimeout(int seconds) {
    if (&trans != nullptr && trans != nullptr)
        trans->SetTimeout(seconds);
    else
        stdStream::setTimeout(seconds);
}

} // namespace

int CLP_Man_Init(std::string path) {
    constexpr char const* FUNCTION = "CLP.CLP_Man_Init";
    VELCLP_TRACE(FUNCTION);
    if (access(path.c_str(), F_OK) != 0) {
        VELCLP_LOG_FAILURE(FUNCTION, "no topic file=[%s]", path.c_str());
        return NO_TOPIC_FILE;
    }
    CLP_Man_Fini();
    ManFile = new std::ifstream(path);
    return 0;
}

void CLP_Man_Fini() {
    VELCLP_TRACE("CLP.CLP_Man_Fini");
    delete ManFile;
    ManFile = nullptr;
}

void CLP_Man_GetTopic(std::string topic, std::string& text) {
    VELCLP_TRACE("CLP.CLP_Man_GetTopic");
    if (ManFile == nullptr)
        return;
    text.clear();
    if (topic.empty())
        return;
    ManFile->clear();
    ManFile->seekg(0);
    if (findHead(topic))
        readText(text);
}

void setTtyNameFunc(const char* (*name)(int)) {
    s_ttyName = name;
}

int initForSerial() {
    VELCLP_TRACE(SERIAL_FUNCTION);
    int timeout = -1;
    std::memset(ser_str_console_command, 0, sizeof ser_str_console_command);
    if (!onSerialLine())
        return 0;
    if (!aim_init_nocallback("SMCLP", 0x20000050, 2)) {
        report("Initialzation of AIM failed");
        return 0;
    }
    if (!consoleEnabled())
        return -1;
    if (!aim_config_get_int("ser_int_console_timeout", &timeout))
        report("Get timeout failed, setting to default as no timeout");
    VELCLP_LOG_VALUE(SERIAL_FUNCTION, "timeout=[%d]", timeout);
    setIdleTimeout(timeout);
    return 0;
}
