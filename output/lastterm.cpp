#include "output/lastterm.h"

#include "velclp/addrpath.h"

namespace velmora_clp {

LastTerm lastTermOf(const std::string& address) {
    LastTerm last;
    CLPAddrpath path("/", "/");
    if (address.empty() || !path.setPath("/", address))
        return last;
    const std::vector<std::string> terms = path.getTerms();
    if (terms.empty())
        return last;
    last.term = terms.back();
    last.ufct = path.getUfct(last.term);
    last.ufis = path.getUfis(last.term);
    return last;
}

void ufit_element(const Writer& out, const std::string& address) {
    const LastTerm last = lastTermOf(address);
    out.raw(XML_TAG_L, T_UFIT, " ", T_UFCT, "=\"", last.ufct, "\" ", T_INSTANCE, "=\"", last.ufis,
            "\"", XML_TAG_R);
    out.raw(last.term).close(T_UFIT);
}

} // namespace velmora_clp
