#include "replydocument.h"

#include "replyscan.h"
#include "status.h"
#include "text.h"

#include <cstring>

namespace cimclient {

namespace {

constexpr unsigned parseFlags = pugi::parse_cdata | pugi::parse_escapes |
                                pugi::parse_wconv_attribute | pugi::parse_eol |
                                pugi::parse_ws_pcdata_single;

pugi::xml_node elementOrFail(pugi::xml_node parent, const char* name) {
    const pugi::xml_node child = parent.child(name);
    if (!child)
        throw Failure{CMPI_RC_ERR_FAILED, std::string("Unexpected reply: no ") + name};
    return child;
}

pugi::xml_node elementOrNone(pugi::xml_node node) {
    while (node && node.type() != pugi::node_element)
        node = node.next_sibling();
    return node;
}

// DSP0201, 5.2.6.6. A code that is no number, or 0, is still a failure.
[[noreturn]] void throwError(pugi::xml_node error) {
    const int code = numberFrom<int>(trimmed(error.attribute("CODE").value())).value_or(0);
    std::string description = error.attribute("DESCRIPTION").value();
    if (description.empty())
        description = "The server reported CIM error " + std::to_string(code);
    throw Failure{code == 0 ? CMPI_RC_ERR_FAILED : code, std::move(description)};
}

} // namespace

ReplyDocument::ReplyDocument(std::string& text) {
    scanReply(text);
    const auto result = m_document.load_buffer_inplace(text.data(), text.size(), parseFlags);
    if (!result)
        throw Failure{CMPI_RC_ERR_FAILED, std::string("Malformed reply: ") + result.description()};
}

pugi::xml_node ReplyDocument::response(const char* element) const {
    const pugi::xml_node message = elementOrFail(elementOrFail(m_document, "CIM"), "MESSAGE");
    const pugi::xml_node response = elementOrFail(elementOrFail(message, "SIMPLERSP"), element);
    if (const pugi::xml_node error = response.child("ERROR"))
        throwError(error);
    return response;
}

pugi::xml_node ReplyDocument::returnValue() const {
    return response("IMETHODRESPONSE").child("IRETURNVALUE");
}

bool is(pugi::xml_node element, const char* name) {
    return std::strcmp(element.name(), name) == 0;
}

pugi::xml_node firstElement(pugi::xml_node parent) {
    return elementOrNone(parent.first_child());
}

pugi::xml_node nextElement(pugi::xml_node element) {
    return elementOrNone(element.next_sibling());
}

} // namespace cimclient
