// Target addresses as typed: whatever comes in is refused, or comes into a normal form that stays
// what it is, has no empty term, and takes apart into tags and suffixes. The first line is the
// default target, the rest what was typed.
#include "tests/fuzz/require.h"
#include "velclp/addrpath.h"

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using velmora_clp::CLPAddrpath;

void checkTerm(const CLPAddrpath& path, const std::string& term, bool last) {
    require(!term.empty() && std::isalpha(static_cast<unsigned char>(term.front())) != 0);
    require(std::isdigit(static_cast<unsigned char>(term.back())) != 0 ||
            (last && term.back() == '*'));
    const std::string tag = path.getUfct(term);
    const std::string suffix = path.getUfis(term);
    require(!tag.empty() && term.compare(0, tag.size(), tag) == 0);
    require(suffix == "*" || tag + suffix == term);
}

void checkNormalForm(const CLPAddrpath& path) {
    const std::string address = path.getResultantAddress();
    require(!address.empty() && address.front() == '/');
    require(address == "/" || address.back() != '/');
    const std::vector<std::string> terms = path.getTerms();
    std::string joined;
    for (std::size_t i = 0; i < terms.size(); ++i) {
        checkTerm(path, terms[i], i + 1 == terms.size());
        joined += "/" + terms[i];
    }
    require((joined.empty() ? "/" : joined) == address);
    const bool isClass = !terms.empty() && terms.back().back() == '*';
    require(path.getType() == (isClass ? 1 : 0));
    require(isClass == (path.getResultantTarget() != address));

    CLPAddrpath again("/", "/");
    require(again.setPath("/", address));
    require(again.getResultantAddress() == address && again.getType() == path.getType());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t line = input.find('\n');
    const std::string cdt = line == std::string::npos ? "/admin1" : input.substr(0, line);
    const std::string typed = line == std::string::npos ? input : input.substr(line + 1);
    CLPAddrpath path("/admin1", "/admin1/system*");
    // A default target is an address in normal form already; only what is typed may have "\\".
    if (cdt.empty() || cdt.find('\\') != std::string::npos || typed == "SESSION")
        return 0;
    if (!path.setPath(cdt, typed))
        require(path.getResultantAddress() == "/" && path.getType() == 0);
    else if (typed.empty())
        require(path.getResultantAddress() == cdt);
    else
        checkNormalForm(path);
    return 0;
}
