#include "config/aim_config.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <sstream>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr off_t largestFile = off_t{64} * 1024;

struct Store {
    std::mutex mutex;
    std::string path = "/etc/velclp/console.conf";
    std::map<std::string, std::string> values;
};

Store& store() {
    static auto* instance = new Store;
    return *instance;
}

std::string trimmed(const std::string& text) {
    static constexpr char blanks[] = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool readAll(int descriptor, std::string& text) {
    std::array<char, 4096> buffer{};
    while (text.size() <= static_cast<std::size_t>(largestFile)) {
        const ssize_t n = read(descriptor, buffer.data(), buffer.size());
        if (n == 0)
            return true;
        if (n < 0 && errno != EINTR)
            return false;
        if (n > 0)
            text.append(buffer.data(), static_cast<std::size_t>(n));
    }
    return false;
}

bool readFile(const std::string& path, std::string& text) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return false;
    struct stat status {};
    const bool fine = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                      status.st_size <= largestFile && readAll(descriptor, text);
    close(descriptor);
    return fine;
}

std::map<std::string, std::string> parse(const std::string& text) {
    std::map<std::string, std::string> values;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line);
        const auto sign = line.find('=');
        if (line.empty() || line.front() == '#' || sign == std::string::npos)
            continue;
        values[trimmed(line.substr(0, sign))] = trimmed(line.substr(sign + 1));
    }
    return values;
}

bool lookUp(const char* key, std::string& value) {
    if (key == nullptr)
        return false;
    Store& from = store();
    const std::lock_guard<std::mutex> lock(from.mutex);
    const auto found = from.values.find(key);
    if (found == from.values.end())
        return false;
    value = found->second;
    return true;
}

bool isOneOf(const std::string& text, const std::array<const char*, 3>& words) {
    return std::any_of(words.begin(), words.end(),
                       [&text](const char* word) { return strcasecmp(text.c_str(), word) == 0; });
}

} // namespace

bool aim_init_nocallback(const char* client, unsigned /*flags*/, int /*mode*/) {
    if (client == nullptr)
        return false;
    Store& into = store();
    const std::lock_guard<std::mutex> lock(into.mutex);
    std::string text;
    if (!readFile(into.path, text))
        return false;
    into.values = parse(text);
    return true;
}

bool aim_config_get_bool(const char* key, bool* value) {
    std::string text;
    if (value == nullptr || !lookUp(key, text))
        return false;
    const bool yes = isOneOf(text, {"true", "yes", "on"});
    if (!yes && !isOneOf(text, {"false", "no", "off"}))
        return false;
    *value = yes;
    return true;
}

bool aim_config_get_int(const char* key, int* value) {
    std::string text;
    if (value == nullptr || !lookUp(key, text))
        return false;
    int number = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end)
        return false;
    *value = number;
    return true;
}

void aim_config_use_file(const std::string& path) {
    Store& into = store();
    const std::lock_guard<std::mutex> lock(into.mutex);
    into.path = path;
    into.values.clear();
}
