// What the tests of the renderer share: parsed lines, and the bytes that a response writes.
#ifndef VELCLP_TESTS_UNIT_OUTPUT_SUPPORT_H
#define VELCLP_TESTS_UNIT_OUTPUT_SUPPORT_H

#include "velclp/clpstatus.h"
#include "velclp/commandstatus.h"
#include "velclp/joberror.h"
#include "velclp/parser.h"
#include "velclp/processingerror.h"
#include "velclp/token.h"
#include "velclp/transport.h"

#include <boost/make_shared.hpp>

#include <iostream>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace output_test {

// The line as the engine hands it to a verb; also one that the parser refuses.
inline boost::shared_ptr<CLPToken> parsed(const std::string& line) {
    auto token = boost::make_shared<CLPToken>();
    token->_Options.addNode({"option"});
    velmora_clp::ProcessingError error;
    velmora_clp::CLPParser().parse(line, token.get(), &error);
    return token;
}

// Takes the place of standard output while it lives.
class Capture {
public:
    Capture() : m_memory(memfd_create("response", 0)), m_saved(dup(STDOUT_FILENO)) {
        std::cout.flush();
        dup2(m_memory, STDOUT_FILENO);
    }
    ~Capture() {
        std::cout.flush();
        dup2(m_saved, STDOUT_FILENO);
        close(m_saved);
        close(m_memory);
    }
    std::string text() const {
        std::cout.flush();
        std::string bytes(static_cast<std::size_t>(lseek(m_memory, 0, SEEK_END)), '\0');
        const ssize_t count = pread(m_memory, &bytes[0], bytes.size(), 0);
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return bytes;
    }

private:
    int m_memory;
    int m_saved;
};

// The bytes that the function writes to the transport that it is given.
template<typename Writes>
std::string bytesOf(const Writes& writes) {
    Transport transport("std", 0);
    const Capture capture;
    writes(transport);
    return capture.text();
}

// The outcome of a command, as its display hands it over.
struct Outcome {
    explicit Outcome(velmora_clp::CommandStatus::status code, int job = 7) : status(code) {
        record = {&status, nullptr, job};
    }
    Outcome& failed(velmora_clp::JobError::error code, velmora_clp::JobError::stat cimStatus,
                    velmora_clp::JobError::severity severity) {
        error.setCode(code, cimStatus, severity);
        record.error = &error;
        return *this;
    }

    velmora_clp::CommandStatus status;
    velmora_clp::JobError error;
    velmora_clp::_CLPStatus record;
};

inline constexpr char const* XML_BEGIN =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    "<response xmlns=\"http://schemas.dmtf.org/smash/commandresponse/1.0.0/dsp0224.xsd\" \n"
    "           xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" \n"
    "           xsi:schemaLocation=\"http://schemas.dmtf.org/smash/commandresponse/1.0.0/"
    "dsp0224.xsd smclp_command_response.xsd\">";

} // namespace output_test

#endif
