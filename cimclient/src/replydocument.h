// The parsed body of a reply. Nothing in it is trusted: size, number and nesting of elements are
// bounded before the document is built, and what is not CIM-XML (DSP0201) ends the call as a
// Failure with CMPI_RC_ERR_FAILED.
#ifndef CIMCLIENT_REPLYDOCUMENT_H
#define CIMCLIENT_REPLYDOCUMENT_H

#include <pugixml.hpp>

#include <string>

namespace cimclient {

// Elements that are VALUE and KEYVALUE, but were written `<VALUE/>`: no value, where
// `<VALUE></VALUE>` is the empty text. The parser would not tell them apart.
constexpr const char* absentValue = "vALUE";
constexpr const char* absentKeyValue = "kEYVALUE";

class ReplyDocument {
public:
    // Parses in place: the text is spoiled, and has to outlive the document.
    explicit ReplyDocument(std::string& text);
    ReplyDocument(const ReplyDocument&) = delete;
    ReplyDocument& operator=(const ReplyDocument&) = delete;

    pugi::xml_node root() const { return m_document; }

    // IMETHODRESPONSE or METHODRESPONSE; an ERROR in it becomes a Failure with the server's code
    // and words.
    pugi::xml_node response(const char* element) const;
    // IRETURNVALUE of an intrinsic reply; an empty node when there is none.
    pugi::xml_node returnValue() const;

private:
    pugi::xml_document m_document;
};

bool is(pugi::xml_node element, const char* name);

// Elements of a node, without the text between them.
pugi::xml_node firstElement(pugi::xml_node parent);
pugi::xml_node nextElement(pugi::xml_node element);

} // namespace cimclient

#endif
