#include "velclp/core.h"

#include "core/cimconnect.h"
#include "core/defaulttarget.h"
#include "velclp/assertion.h"
#include "velclp/cdcommand.h"
#include "velclp/clpsession.h"
#include "velclp/clpstring.h"
#include "velclp/coutputer.h"
#include "velclp/createcommand.h"
#include "velclp/deletecommand.h"
#include "velclp/dumpcommand.h"
#include "velclp/helpcommand.h"
#include "velclp/joberror.h"
#include "velclp/loadcommand.h"
#include "velclp/locations.h"
#include "velclp/log.h"
#include "velclp/message.h"
#include "velclp/parser.h"
#include "velclp/processingerror.h"
#include "velclp/resetcommand.h"
#include "velclp/setcommand.h"
#include "velclp/showcommand.h"
#include "velclp/startcommand.h"
#include "velclp/stopcommand.h"
#include "velclp/token.h"
#include "velclp/transport.h"
#include "velclp/versioncommand.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>

namespace velmora_clp {

namespace {

enum Privilege : unsigned short { PRIVILEGE_NONE = 0, PRIVILEGE_READ = 1, PRIVILEGE_ALL = 511 };

const char* const TEXT_FORMAT = "2";
const char BLANK = ' ';

bool contains(const char* const* begin, const char* const* end, const std::string& word) {
    return std::find(begin, end, word) != end;
}

bool onlyRenders(const CLPToken& token) {
    return token.hasOption("-examine") || token.hasOption("-help") || token.hasOption("-version");
}

// What stands behind the word that the text begins with, in any case; false when the text begins
// with another word.
bool startsWithWord(const std::string& text, const std::string& word, std::string& rest) {
    if (lowerString(text.substr(0, word.size())) != word)
        return false;
    rest = text.substr(word.size());
    return rest.empty() || rest[0] == BLANK;
}

void logMessages(const char* function, const CommandStatus& stat) {
    for (std::size_t i = 0; i < stat.messages.size(); ++i) {
        VELCLP_ASSERT(stat.messages[i] != nullptr, "stat->messages[i]");
        VELCLP_LOG_FAILURE(function, "message[%d]=[%s]", static_cast<int>(i),
                           stat.messages[i]->getMessage().c_str());
    }
}

// The response of a command that is not run.
void render(CLPCommand& command) {
    const char* const function = "CLP.CLPCore.run";
    try {
        command.setCommandStatus(CommandStatus::COMMAND_COMPLETED);
        command.display();
    } catch (const std::exception& failure) {
        VELCLP_LOG_FAILURE(function, "catch exception=[%s]", failure.what());
    }
}

using Maker = CLPCommand* (*)(const std::string& host, const std::string& port,
                              const std::string& login, Transport& transport,
                              const boost::shared_ptr<CLPToken>& token);

template<typename Verb>
CLPCommand* make(const std::string& host, const std::string& port, const std::string& login,
                 Transport& transport, const boost::shared_ptr<CLPToken>& token) {
    return new Verb(host, port, login, transport, token);
}

const struct {
    const char* verb;
    Maker maker;
} VERBS[] = {
    {"cd", make<CLPCdCommand>},         {"help", make<CLPHelpCommand>},
    {"load", make<CLPLoadCommand>},     {"dump", make<CLPDumpCommand>},
    {"create", make<CLPCreateCommand>}, {"show", make<CLPShowCommand>},
    {"set", make<CLPSetCommand>},       {"start", make<CLPStartCommand>},
    {"stop", make<CLPStopCommand>},     {"reset", make<CLPResetCommand>},
    {"delete", make<CLPDeleteCommand>}, {"version", make<CLPVersionCommand>},
};

} // namespace

CLPCore::CLPCore(const std::string& host, const std::string& port, Transport& transport)
    : m_host(host), m_port(port), m_privileges(0), m_transport(&transport) {
    const char* const function = "CLP.CLPCore.CLPCore";
    VELCLP_TRACE(function);
    login();
    m_client = connectCim(m_host, m_port, m_token);
    if (!m_client) {
        VELCLP_LOG_FAILURE(function, "failed to connect to cimserver!");
        throw std::string("failed to connect to cimserver!");
    }
    openSession();
    VELCLP_LOG_VALUE(function, "Start Job manager");
}

void CLPCore::login() {
    const char* const user = std::getenv("USER");
    const char* const privileges = std::getenv("privileges");
    if (user == nullptr || privileges == nullptr)
        throw std::string("Have not setup login USER and privileges environment");
    m_privileges = static_cast<unsigned short>(std::strtol(privileges, nullptr, 10));
    char mask[5];
    std::snprintf(mask, sizeof mask, "%04x", static_cast<unsigned>(m_privileges));
    m_token = std::string(user) + mask;
}

void CLPCore::openSession() {
    sSessionParams params;
    params.host = m_host;
    params.port = m_port;
    params.local = m_host == LOCAL_HOST;
    CLPSession::createInstance(&params);
    CLPSession::getInstance()->setCurrentDefaultTarget(ROOT_TARGET);
    CLPSession::getInstance()->setOutputFormat(TEXT_FORMAT);
}

CLPCore::~CLPCore() {
    VELCLP_TRACE("CLP.CLPCore.~CLPCore");
}

int CLPCore::run(const std::string& line) {
    const char* const function = "CLP.CLPCore.run";
    VELCLP_TRACE(function);
    VELCLP_LOG_VALUE(function, "line=[%s]", line.c_str());
    const std::size_t begin = line.find_first_not_of(BLANK);
    if (begin == std::string::npos || passThrough(line.substr(begin)))
        return 0;
    return runParsed(line);
}

bool CLPCore::passThrough(const std::string& line) {
    const struct {
        const char* word;
        const std::string& program;
    } programs[] = {
        {"tolmax", Locations::get().tolmaxProgram},
        {"console", Locations::get().connectProgram},
    };
    for (const auto& entry : programs) {
        std::string rest;
        if (!startsWithWord(line, entry.word, rest))
            continue;
        m_transport->flush();
        m_transport->RestoreTTY();
        run_command((entry.program + rest).c_str());
        m_transport->RawTTY();
        return true;
    }
    return false;
}

int CLPCore::runParsed(const std::string& line) {
    auto token = boost::make_shared<CLPToken>();
    token->_Options.addNode({"option"});
    CLPParser parser;
    ProcessingError error;
    if (parser.parse(line, token.get(), &error) != 0) {
        report(token, error);
        return 0;
    }
    if (token->_Verb != "exit") {
        runToken(token);
        return 0;
    }
    if (!onlyRenders(*token))
        return -1;
    COutputer(m_client.get(), m_transport).exit_output(token);
    return 0;
}

void CLPCore::runToken(boost::shared_ptr<CLPToken> token) {
    const char* const function = "CLP.CLPCore.run";
    std::unique_ptr<CLPCommand> command(commandFor(token));
    if (!command)
        return;
    if (onlyRenders(*token)) {
        render(*command);
        return;
    }
    command->start();
    // The option is taken and changes nothing: the wait is always for the command's end.
    VELCLP_LOG_VALUE(function, "wait=[%d]", static_cast<int>(token->hasOption("-wait")));
    if (command->wait(-1) == 1) {
        *m_transport << "Command spawned, running in background\n";
        // Its thread frees it.
        static_cast<void>(command.release());
    }
}

CLPCommand* CLPCore::commandFor(boost::shared_ptr<CLPToken> token) {
    const char* const function = "CLP.CLPCore.run";
    ProcessingError::error code = ProcessingError::COMMAND_ERROR_UNSPECIFIED;
    try {
        if (checkingPrivilege(token) != 0) {
            code = ProcessingError::MISSING_REQUIRED_CLP_PRIVILEGE;
        } else if (CLPCommand* const command = createCommand(token)) {
            return command;
        } else {
            code = ProcessingError::COMMAND_NOT_SUPPORTED;
        }
    } catch (JobError* error) {
        delete error;
    } catch (CommandStatus* status) {
        const std::unique_ptr<CommandStatus> stat(status);
        logMessages(function, *stat);
    }
    report(token, ProcessingError(code));
    return nullptr;
}

void CLPCore::report(boost::shared_ptr<CLPToken> token, ProcessingError error) {
    COutputer(m_client.get(), m_transport).pe_output(token, &error);
}

CLPCommand* CLPCore::createCommand(boost::shared_ptr<CLPToken> token) {
    const char* const function = "CLP.CLPCore.createCommand";
    VELCLP_TRACE(function);
    VELCLP_LOG_VALUE(function, "verb=[%s]", token->_Verb.c_str());
    const auto found = std::find_if(std::begin(VERBS), std::end(VERBS),
                                    [&](const auto& entry) { return token->_Verb == entry.verb; });
    if (found == std::end(VERBS))
        return nullptr;
    return found->maker(m_host, m_port, m_token, *m_transport, token);
}

int CLPCore::checkingPrivilege(boost::shared_ptr<CLPToken> token) {
    VELCLP_TRACE("CLP.CLPCore.checkingPrivilege");
    static const char* const readers[] = {"cd", "help", "show", "version"};
    if (m_privileges == PRIVILEGE_NONE)
        return -1;
    if (m_privileges != PRIVILEGE_READ)
        return 0;
    return contains(std::begin(readers), std::end(readers), token->_Verb) ? 0 : -1;
}

std::string CLPCore::CDT() {
    VELCLP_TRACE("CLP.CLPCore.CDT");
    return currentDefaultTarget();
}

} // namespace velmora_clp
