// The small sentences that all response forms are made of, written to a transport: lines, keyword
// lines, and elements of clpxml. Nothing is escaped here. What is written leaves in few pieces, at
// the latest when the writer goes.
#ifndef VELCLP_OUTPUT_WRITER_H
#define VELCLP_OUTPUT_WRITER_H

#include "velclp/transport.h"
#include "velclp/vocabulary.h"

#include <string>

namespace velmora_clp {

class Writer {
public:
    explicit Writer(Transport& out) : m_out(out) {}
    ~Writer() { flush(); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void flush() const { m_out.flush(); }

    template<typename... Pieces>
    const Writer& raw(const Pieces&... pieces) const {
        (static_cast<void>(m_out << pieces), ...);
        return *this;
    }
    // As Transport::endl, which lets every line leave by itself.
    const Writer& endl() const { return raw("\r\n"); }

    template<typename... Pieces>
    const Writer& line(const Pieces&... pieces) const {
        return raw(pieces...).endl();
    }

    // A line of the keyword form: key, "=", value.
    template<typename... Pieces>
    const Writer& pair(char const* key, const Pieces&... value) const {
        return line(key, KEYWORD_EQ, value...);
    }
    const Writer& begingroup(char const* group) const { return pair(T_BEGINGROUP, group); }
    const Writer& endgroup() const { return line(T_ENDGROUP); }
    const Writer& endoutput() const { return line(T_ENDOUTPUT); }

    // Tags of the clpxml form.
    const Writer& open(char const* tag) const { return raw(XML_TAG_L, tag, XML_TAG_R); }
    const Writer& close(char const* tag) const { return raw(XML_TAG_LS, tag, XML_TAG_R); }
    template<typename... Pieces>
    const Writer& element(char const* tag, const Pieces&... text) const {
        return open(tag).raw(text...).close(tag);
    }
    const Writer& close_response() const { return close(T_RESPONSE).endl(); }

private:
    Transport& m_out;
};

} // namespace velmora_clp

#endif
