#include "core/defaulttarget.h"

#include "velclp/addrpath.h"
#include "velclp/clpsession.h"
#include "velclp/log.h"

namespace velmora_clp {

namespace {
bool isObjectAddress(const std::string& text) {
    if (text.empty() || text[0] != '/')
        return false;
    CLPAddrpath probe("/", "/");
    return probe.setPath(ROOT_TARGET, text) && probe.getType() == 0;
}
} // namespace

std::string currentDefaultTarget() {
    std::string target = ROOT_TARGET;
    CLPSession::getInstance()->getCurrentDefaultTarget(target);
    if (isObjectAddress(target))
        return target;
    VELCLP_LOG_FAILURE("CLP.currentDefaultTarget", "no address=[%s]", target.c_str());
    return ROOT_TARGET;
}

} // namespace velmora_clp
